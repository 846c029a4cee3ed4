// The search of the instalments' register: due dates from and to, the counterpart, paid or not.
#pragma once

#include <optional>

#include "payments/registri.h"
#include "ui/DialogoCerca.h"

class QComboBox;
namespace ui {
class VetraCombo;
}  // namespace ui

class frmScadenzeCerca : public ui::DialogoCerca {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmScadenzeCerca";
    // Opens on the register's stored filter.
    frmScadenzeCerca(int modo, const payments::FiltroScadenze& filtro, QWidget* parent = nullptr);

    // Shows modally; the filter confirmed (the reminder date dropped), nothing when cancelled.
    std::optional<payments::FiltroScadenze> Cerca();

    QCheckBox* chkDest;
    ui::VetraCombo *cbCliente, *cbFornitore;
    QComboBox* OpPagate;   // "Entrambe", "Pagate", "Non Pagate"

private:
    // Command1, "Trova".
    bool Conferma() override;

    payments::FiltroScadenze filtro_;
};
