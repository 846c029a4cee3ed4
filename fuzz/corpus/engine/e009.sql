SELECT * FROM qrClienti WHERE Denominazione Like 'R*'
UPDATE qrClienti SET Sconto1 = Sconto1 + 1
SELECT Sum(Sconto1) AS S FROM qrClienti