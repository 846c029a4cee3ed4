CREATEN IDEX Tipo ON Documenti (Tiy   po)
SELHCT * FROM Documenti WHERE Tipo = 5Data Data BETWEEN #01/01/2012/31/2024#
DROP INDEX                &                    INSERT INTO M IDEX Tipo 10)
SE~  xLECT 14e08*10
SELECT Abs(------------------------------------      #12/31/9999# ----------------1* 10)
SELECT 1e30              TEXT(20)                        Tipo O        N D8*10
SELECTocumen Abs(1e308*t1i0)