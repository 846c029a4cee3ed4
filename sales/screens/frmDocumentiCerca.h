// The search of a register of documents: dates, customer, paid or not, number ranges.
#pragma once

#include <optional>

#include "sales/documenti.h"
#include "ui/DialogoCerca.h"

class QComboBox;
class QLineEdit;
namespace ui {
class VetraCombo;
}  // namespace ui

class frmDocumentiCerca : public ui::DialogoCerca {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmDocumentiCerca";
    // Opens with the register's last criteria.
    frmDocumentiCerca(const sales::CriteriDocumenti& criteri, QWidget* parent = nullptr);

    // Shows modally; the criteria confirmed, or nothing when closed without change.
    std::optional<sales::CriteriDocumenti> Cerca();
    const sales::CriteriDocumenti& criteri() const { return criteri_; }

    QCheckBox *chkDest, *chkNumDal, *chkNumAl;
    ui::VetraCombo* cbDest;
    QComboBox* OpPagate;
    ui::VetraCombo *cbPrefissoDal, *cbPrefissoAl, *cbSuffissoDal, *cbSuffissoAl;
    QLineEdit *txtNumDal, *txtNumAl;

private:
    bool Conferma() override;

    sales::CriteriDocumenti criteri_;
};
