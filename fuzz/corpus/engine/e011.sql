DELETE FROM Movimenti WHERE Documento NOT IN (SELECT ID FROM Documenti)
SELECT Count(*) AS N FROM Movimenti