// A row of the cash journal. A row typed by hand is wholly editable; a row mirroring a payment keeps
// its type and amount, which change only in the payment, and carries its description, date and
// means of payment back to it.
#pragma once

#include "ui/EditorBase.h"

class QComboBox;
class QLabel;
namespace ui {
class VText;
class VetraPicker;
}  // namespace ui

class frmPrimaNotaEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmPrimaNotaEdita";
    // destinazione: what a new row takes, the register's.
    explicit frmPrimaNotaEdita(QWidget* parent = nullptr, long destinazione = 0);

    ui::VText* VText1;          // Importo
    ui::VetraPicker* pkData;
    ui::VText* txtDescrizione;
    ui::VText* txtPagamento;    // TipoPagamento
    ui::VText* txtCC;
    QComboBox* cbTipo;          // "Entrata", "Uscita": Tipo by position
    QLabel* lblTipo;
    QComboBox* cbDest;          // "Banca", "Cassa", "Altro": Destinazione by position

protected:
    bool Valida() override;
    void DopoCarica() override;
    void PrimaDiAggiornare(store::Recordset& rs) override;
    void DopoSalvato(long id) override;

private:
    long destinazione_;
    long pagamento_ = 0;   // the payment the row mirrors; 0 for a row typed here
};
