// The withholding certificates: the documents that carry a withholding, open ones standing out
// until their certificate is marked as received, each printable on its own.
#pragma once

#include <optional>

#include "expenses/certificazioni.h"
#include "ui/DialogoCerca.h"
#include "ui/RegistroBase.h"

class QCheckBox;
class QComboBox;
namespace ui {
class VetraCombo;
class VetraPicker;
}  // namespace ui

class frmCertificazioniAcconto : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmCertificazioniAcconto";
    explicit frmCertificazioniAcconto(QWidget* parent = nullptr);

    expenses::CriteriCertificazioni Criteri;   // the register's filter, as the last search left it

    // btnRicevuta: the current row's certificate received, or no longer.
    void Ricevuta();
    // btnStampa: the certificate of the current row.
    void StampaCertificazione();
    // Command1: the base statement again.
    void SelezionaTutto();
    // F3: frmCertificazioniAccontoCerca over the last criteria; its statement becomes the source.
    void CercaCertificazioni();

protected:
    void Ricerca() override { CercaCertificazioni(); }
    // The rows are documents: nothing is deleted from here.
    bool PrimaDiEliminare(long) override { return false; }
};

// The search of the certificates: due dates of the withholding, customer, received or not.
class frmCertificazioniAccontoCerca : public ui::DialogoCerca {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmCertificazioniAccontoCerca";
    explicit frmCertificazioniAccontoCerca(const expenses::CriteriCertificazioni& criteri, QWidget* parent = nullptr);

    // Shows modally; the criteria confirmed, or nothing when cancelled.
    std::optional<expenses::CriteriCertificazioni> Cerca();

    QCheckBox *chkDataDal, *chkDataAl, *chkDest;
    ui::VetraPicker *pkDataDal, *pkDataAl;
    ui::VetraCombo* cbDest;
    QComboBox* OpRicevute;   // "Entrambe", "Ricevute", "Da ricevere"

private:
    bool Conferma() override;

    expenses::CriteriCertificazioni criteri_;
};
