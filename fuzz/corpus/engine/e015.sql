INSERT INTO CodiciIva (ID, DescIva, AliquotaIva) VALUES (3, '22%', 22)
INSERT INTO CodiciIva (ID, DescIva) SELECT ID + 10, DescIva & '+' FROM CodiciIva