SELECT TOP 1 * FROM Documenti ORDER BY ImportoTotale DESC
SELECT DescCliente FROM Clienti UNION SELECT DescIva FROM CodiciIva ORDER BY 1