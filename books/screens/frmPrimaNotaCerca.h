// The search of the cash journal: dates (or a month that fills both), entrate, uscite or both, and
// the bank account. Confirmed, the register reads the statement within its destination.
#pragma once

#include <optional>

#include "books/prima_nota.h"
#include "ui/DialogoCerca.h"

class QComboBox;
class QLineEdit;
namespace ui {
}  // namespace ui

class frmPrimaNotaCerca : public ui::DialogoCerca {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmPrimaNotaCerca";
    // Opens with the register's last choices.
    explicit frmPrimaNotaCerca(const books::CriteriPrimaNota& criteri, QWidget* parent = nullptr);

    // Shows modally; the choices confirmed, or nothing when cancelled.
    std::optional<books::CriteriPrimaNota> Cerca();

    // cbMese: the first entry is the fiscal period up to today, the others the months of this year.
    void ScegliMese(int indice);

    QCheckBox* chkCC;
    QComboBox* OpPagate;   // "Entrata", "Uscita", "Entrambi"
    QComboBox* cbMese;
    QLineEdit* txtCC;

private:
    bool Conferma() override;

    books::CriteriPrimaNota criteri_;
};
