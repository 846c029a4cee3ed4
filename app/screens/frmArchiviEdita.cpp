#include "app/screens/frmArchiviEdita.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/dialogs.h"
#include "core/esercizi.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "payments/primanota.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VText.h"
#include "ui/VetraPicker.h"

frmArchiviEdita::frmArchiviEdita(QWidget* parent) : QDialog(parent) {
    setObjectName(Nome);
    setWindowTitle("Nuovo Esercizio");
    setMinimumWidth(420);
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);
    auto* campi = new QFormLayout;
    VText1 = new ui::VText(this);
    VText1->setObjectName("VText1");
    VText1->setDataField("Nome");
    VText1->setMaxLength(50);
    pkData = new ui::VetraPicker(this);
    pkData->setObjectName("pkData");
    pkData->setDataField("Dal");
    campi->addRow("Descrizione", VText1);
    campi->addRow("Inizio esercizio", pkData);
    colonna->addLayout(campi);
    pBar = new QProgressBar(this);
    pBar->setObjectName("pBar");
    pBar->setRange(0, 100);
    pBar->setVisible(false);
    colonna->addWidget(pBar);
    colonna->addWidget(ui::confermaAnnulla(this, btnConferma, btnAnnulla));
    connect(btnConferma, &QPushButton::clicked, this, [this] { ui::protetto([this] { Conferma(); }); });
    connect(btnAnnulla, &QPushButton::clicked, this, &QDialog::reject);
}

void frmArchiviEdita::Edita(long, bool nuovo, long azienda, double data, bool riporto) {
    azienda_ = azienda;
    riporto_ = riporto;
    if (nuovo) pkData->setValore(store::Value::Date(store::DateSerial(store::SplitDate(store::Oggi()).year, 1, 1)));
    if (data != 0) pkData->setValore(store::Value::Date(data));
}

void frmArchiviEdita::Conferma() {
    const std::string nome = VText1->testo();
    if (auto errore = core::ControllaNuovoEsercizio(azienda_, nome, pkData->testo())) {
        core::MsgBox(errore->messaggio, core::vbExclamation);
        if (errore->campo == 0)
            VText1->setFocus();
        else
            pkData->casella()->setFocus();
        return;
    }
    const double dal = store::CDate(pkData->valore());
    if (!riporto_) {
        creato_ = core::CreaEsercizioVuoto(azienda_, nome, dal);
    } else {
        // The balances of the period being left, up to two days before the new start: the day
        // before it stays out, as the journal has always counted it.
        core::SaldiIniziali saldi;
        if (core::session().dbArchivio) saldi = {payments::SaldoPrecedente(dal - 1, 0), payments::SaldoPrecedente(dal - 1, 1)};
        pBar->setVisible(true);
        btnConferma->setEnabled(false);
        btnAnnulla->setEnabled(false);
        struct Riabilita {
            frmArchiviEdita* s;
            ~Riabilita() {
                s->btnConferma->setEnabled(true);
                s->btnAnnulla->setEnabled(true);
            }
        } riabilita{this};
        creato_ = core::CreaEsercizioConRiporto(azienda_, nome, dal, saldi, [this](const std::string& titolo, int percento) {
            pBar->setValue(percento);
            pBar->setFormat(QString::fromStdString(titolo) + " %p%");
            QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        });
    }
    accept();
    core::AnnunciaNovita(core::Novita::Aziende);
}

std::optional<long> frmArchiviEdita::NuovoEsercizioVuoto(long azienda, QWidget* parent) {
    frmArchiviEdita schermo(parent);
    schermo.Edita(0, true, azienda, 0, false);
    ui::eseguiModale(&schermo, [&schermo] { return schermo.exec() == QDialog::Accepted; });
    return schermo.creato_;
}

std::optional<long> frmArchiviEdita::NuovoEsercizioConRiporto(long azienda, QWidget* parent) {
    frmArchiviEdita schermo(parent);
    schermo.Edita(0, true, azienda, 0, true);
    ui::eseguiModale(&schermo, [&schermo] { return schermo.exec() == QDialog::Accepted; });
    return schermo.creato_;
}
