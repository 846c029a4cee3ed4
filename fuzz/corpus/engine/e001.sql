ALTER TABLE Clienti ADD COLUMN Nota TEXT(20)
INSERT INTO Clienti (ID, DescCliente, Nota) VALUES (3, 'Verdi', 'n')
SELECT * FROM Clienti