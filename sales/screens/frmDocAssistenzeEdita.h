// A fattura made from the visits of a period: the document's header, the period and the two rates
// on top, and the visits to charge below. Saving a new one writes the visits' lines; a fattura
// opened again keeps its lines and its period.
#pragma once

#include "sales/screens/frmDocumentiEdita.h"
#include "sales/visite.h"

namespace ui {
class VetraGrid;
}  // namespace ui

class frmDocAssistenzeEdita : public frmDocumentiEditaBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmDocAssistenzeEdita";
    // tipo 0: a fattura.
    explicit frmDocAssistenzeEdita(QWidget* parent = nullptr, long tipo = 0);

    ui::VetraPicker* pkDal;
    ui::VetraPicker* pkAl;
    ui::VText* txtCostoOra;
    ui::VText* txtCostoKm;
    ui::VetraCombo* cbIva;
    ui::VetraGrid* GridAssistenze;

    // The visits of the customer and period chosen, read again.
    void CaricaAssistenze();

protected:
    bool Valida() override;
    void DopoCarica() override;
    void DopoSalvato(long id) override;

private:
    bool generare_ = false;   // the record is new: its save writes the visits' lines
    sales::Tariffe tariffe_;
};
