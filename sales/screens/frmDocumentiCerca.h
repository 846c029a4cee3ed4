// The search of a register of documents: dates, customer, paid or not, number ranges.
#pragma once

#include <QDialog>
#include <optional>

#include "sales/documenti.h"

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
namespace ui {
class VetraCombo;
class VetraPicker;
}  // namespace ui

class frmDocumentiCerca : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmDocumentiCerca";
    // Opens with the register's last criteria.
    frmDocumentiCerca(const sales::CriteriDocumenti& criteri, QWidget* parent = nullptr);

    // Shows modally; the criteria confirmed, or nothing when closed without change.
    std::optional<sales::CriteriDocumenti> Cerca();
    const sales::CriteriDocumenti& criteri() const { return criteri_; }

    QCheckBox *chkDataDal, *chkDataAl, *chkDest, *chkNumDal, *chkNumAl;
    ui::VetraPicker *pkDataDal, *pkDataAl;
    ui::VetraCombo* cbDest;
    QComboBox* OpPagate;
    ui::VetraCombo *cbPrefissoDal, *cbPrefissoAl, *cbSuffissoDal, *cbSuffissoAl;
    QLineEdit *txtNumDal, *txtNumAl;
    QPushButton *Command1, *Command2;

private:
    void Conferma();

    sales::CriteriDocumenti criteri_;
    bool confermato_ = false;
};
