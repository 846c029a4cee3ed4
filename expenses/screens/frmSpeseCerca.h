// The search of the expense register: dates, supplier, kind, class, paid or not.
#pragma once

#include <optional>

#include "expenses/spese.h"
#include "ui/DialogoCerca.h"

class QComboBox;
namespace ui {
class VetraCombo;
}  // namespace ui

class frmSpeseCerca : public ui::DialogoCerca {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmSpeseCerca";
    // Opens with the register's last criteria.
    explicit frmSpeseCerca(const expenses::CriteriSpese& criteri, QWidget* parent = nullptr);

    // Shows modally; the criteria confirmed, or nothing when cancelled.
    std::optional<expenses::CriteriSpese> Cerca();

    QCheckBox *chkDest, *chkTipoSpesa, *chkClassificazione;
    ui::VetraCombo *cbDest, *cbTipoSpesa, *cbClassificazione;
    QComboBox* OpPagate;   // "Entrambi", "Pagati", "Non Pagati"

private:
    // Command1, "Trova".
    bool Conferma() override;

    expenses::CriteriSpese criteri_;
};
