#include "app/screens/frmArchiviEdita.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/dialogs.h"
#include "core/esercizi.h"
#include "core/registro_schermi.h"
#include "core/session.h"
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
    // The carry-over of the last period's data into the new archive is not part of this screen
    // yet: every period made here starts empty.
    creato_ = core::CreaEsercizioVuoto(azienda_, nome, store::CDate(pkData->valore()));
    accept();
    core::AnnunciaNovita(core::Novita::Aziende);
}

std::optional<long> frmArchiviEdita::NuovoEsercizioVuoto(long azienda, QWidget* parent) {
    frmArchiviEdita schermo(parent);
    schermo.Edita(0, true, azienda, 0, false);
    ui::eseguiModale(&schermo, [&schermo] { return schermo.exec() == QDialog::Accepted; });
    return schermo.creato_;
}
