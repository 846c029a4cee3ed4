#include "app/screens/frmSelPeriodo.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/dialogs.h"
#include "core/esercizi.h"
#include "core/esercizio.h"
#include "core/impostazioni.h"
#include "core/session.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraPicker.h"

namespace {

const char* const kFinePrimaDellInizio = "La data di fine del periodo non può precedere quella di inizio!";

}  // namespace

frmSelPeriodo::frmSelPeriodo(QWidget* parent) : QDialog(parent) {
    setObjectName(Nome);
    setWindowTitle("Seleziona Periodo");
    setWindowIcon(ui::icona("x-office-calendar"));
    setMinimumWidth(320);
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);
    auto* campi = new QFormLayout;
    pkDataDal = new ui::VetraPicker(this);
    pkDataDal->setObjectName("pkDataDal");
    pkDataAl = new ui::VetraPicker(this);
    pkDataAl->setObjectName("pkDataAl");
    campi->addRow("Dal", pkDataDal);
    campi->addRow("Al", pkDataAl);
    colonna->addLayout(campi);
    colonna->addWidget(ui::confermaAnnulla(this, btnConferma, btnAnnulla));
    connect(btnConferma, &QPushButton::clicked, this, [this] { ui::protetto([this] { Conferma(); }); });
    connect(btnAnnulla, &QPushButton::clicked, this, [this] { Annulla(); });
    ui::protetto([this] { pkDataDal->setValore(store::Value::Date(core::DataInizioEsercizio())); });
}

void frmSelPeriodo::Conferma() {
    if (auto errore = core::ControllaPeriodo(pkDataDal->testo(), pkDataAl->testo())) {
        core::MsgBox(core::Testo(errore->chiave), core::vbExclamation);
        (errore->campo == 0 ? pkDataDal : pkDataAl)->casella()->setFocus();
        return;
    }
    // A period chosen whole cannot end before it starts; a closure's start is fixed and its end is
    // checked when it is written.
    if (pkDataDal->isEnabled() && store::CDate(pkDataAl->valore()) < store::CDate(pkDataDal->valore())) {
        core::MsgBox(kFinePrimaDellInizio, core::vbExclamation);
        pkDataAl->casella()->setFocus();
        return;
    }
    core::session().PeriodoDal = store::CDate(pkDataDal->valore());
    core::session().PeriodoAl = store::CDate(pkDataAl->valore());
    accept();
}

void frmSelPeriodo::Annulla() {
    core::session().PeriodoAl = 0;  // the date of "0.00.00": no choice
    QDialog::reject();
}

void frmSelPeriodo::reject() { Annulla(); }
