INSERT INTO Clienti (ID, DescCliente) VALUES (Null, 'x')
UPDATE Clienti SET ID = Null WHERE ID = 2