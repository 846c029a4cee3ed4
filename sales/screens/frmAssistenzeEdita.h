// A visit to a customer: when, on which service, from what time to what time, how many kilometres,
// and whether it is to be charged.
#pragma once

#include "ui/EditorBase.h"

class QCheckBox;
class QPlainTextEdit;
namespace ui {
class VetraCombo;
class VetraPicker;
class VText;
}  // namespace ui

class frmAssistenzeEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmAssistenzeEdita";
    explicit frmAssistenzeEdita(QWidget* parent = nullptr);

    ui::VetraPicker* pkData;
    ui::VetraCombo* cbClienti;
    ui::VetraCombo* cbServizi;
    ui::VText* VText2;   // OraInizio
    ui::VText* VText3;   // OraFine
    ui::VText* VText1;   // Km
    QCheckBox* Check1;   // Fattura
    QPlainTextEdit* Text1;

protected:
    bool Valida() override;
    void DopoCarica() override;
    void PrimaDiAggiornare(store::Recordset& rs) override;
    bool eventFilter(QObject* oggetto, QEvent* evento) override;
};
