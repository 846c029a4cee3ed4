#include "app/screens/frmConfigurazione.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/aziende.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "app/screens/frmAziendeEdita.h"
#include "app/screens/frmArchiviEdita.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraCombo.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }


QLabel* Avviso(const char* testo, QWidget* parent) {
    auto* l = new QLabel(QString::fromUtf8(testo), parent);
    l->setWordWrap(true);
    return l;
}

// Wraps a handler so that a failure shows in the error box.
template <class F>
auto Protetto(F f) {
    return [f] { ui::protetto(f); };
}

}  // namespace

frmConfigurazione::frmConfigurazione(QWidget* parent) : QDialog(parent) {
    setObjectName(Nome);
    setWindowTitle("Configurazione");
    setWindowIcon(ui::icona("preferences-system"));
    resize(760, 420);
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);

    auto* dati = new QGroupBox("Cartella dei dati", this);
    auto* datiL = new QVBoxLayout(dati);
    datiL->addWidget(Avviso("Se il programma è installato su una postazione CLIENT, selezionare la cartella del "
                            "server in cui risiedono i dati.", dati));
    datiL->addWidget(Avviso("Selezionare la cartella in cui verranno salvati gli archivi", dati));
    auto* riga = new QHBoxLayout;
    txtAziende = new QLineEdit(dati);
    txtAziende->setObjectName("txtAziende");
    txtAziende->setReadOnly(true);
    btnSfoglia = new QPushButton(ui::icona("folder-open"), "Sfoglia...", dati);
    btnSfoglia->setObjectName("btnSfoglia");
    riga->addWidget(txtAziende, 1);
    riga->addWidget(btnSfoglia);
    datiL->addLayout(riga);
    colonna->addWidget(dati);

    auto* scelta = new QGroupBox("Azienda ed esercizio", this);
    auto* griglia = new QGridLayout(scelta);
    cbAziendaClient = new ui::VetraCombo(scelta);
    cbAziendaClient->setObjectName("cbAziendaClient");
    cbEsercizioClient = new ui::VetraCombo(scelta);
    cbEsercizioClient->setObjectName("cbEsercizioClient");
    imgNew3 = ui::immagine("imgNew3", "Nuova azienda", scelta);
    imgEdit3 = ui::immagine("imgEdit3", "Modifica azienda", scelta);
    imgNew2 = ui::immagine("imgNew2", "Nuovo esercizio", scelta);
    imgNew2->setEnabled(false);
    griglia->addWidget(new QLabel(Q(core::Didascalia("s5")), scelta), 0, 0);
    griglia->addWidget(cbAziendaClient, 0, 1);
    griglia->addWidget(imgNew3, 0, 2);
    griglia->addWidget(imgEdit3, 0, 3);
    griglia->addWidget(new QLabel(Q(core::Didascalia("s133")), scelta), 1, 0);
    griglia->addWidget(cbEsercizioClient, 1, 1);
    griglia->addWidget(imgNew2, 1, 2);
    griglia->setColumnStretch(1, 1);
    colonna->addWidget(scelta);
    colonna->addStretch(1);

    colonna->addWidget(ui::confermaAnnulla(this, btnConferma, btnAnnulla));

    connect(btnSfoglia, &QPushButton::clicked, this, Protetto([this] { Sfoglia(); }));
    connect(imgNew3, &QToolButton::clicked, this, Protetto([this] { NuovaAzienda(); }));
    connect(imgEdit3, &QToolButton::clicked, this, Protetto([this] { ModificaAzienda(); }));
    connect(imgNew2, &QToolButton::clicked, this, Protetto([this] { NuovoEsercizio(); }));
    connect(cbAziendaClient, &ui::VetraCombo::valoreCambiato, this, Protetto([this] { AziendaScelta(); }));
    connect(btnConferma, &QPushButton::clicked, this, Protetto([this] { Conferma(); }));
    connect(btnAnnulla, &QPushButton::clicked, this, [this] { Annulla(); });

    ui::protetto([this] {
        txtAziende->setText(Q(core::ApriConfigurazione()));
        RiempiCombo();
    });
}

long frmConfigurazione::aziendaScelta() const {
    const store::Value v = cbAziendaClient->valore();
    return v.isNull() ? 0 : store::CLng(v);
}

void frmConfigurazione::RiempiCombo() {
    const auto& db = core::session().dbAziende;
    cbAziendaClient->setDatabase(db);
    cbAziendaClient->setColonne({{"Denominazione", core::Didascalia("s101"), 3000, ""},
                                 {"Indirizzo", core::Didascalia("s102"), 2500, ""},
                                 {"Cap", core::Didascalia("s103"), 700, ""},
                                 {"Citta", core::Didascalia("s104"), 1800, ""},
                                 {"Provincia", core::Didascalia("s105"), 600, ""},
                                 {"PartitaIva", core::Didascalia("s106"), 1500, ""}});
    cbAziendaClient->setSorgente("Select * from Aziende");
    cbAziendaClient->Aggiorna();
    cbEsercizioClient->setDatabase(db);
    cbEsercizioClient->setColonne({{"Nome", core::Didascalia("s133"), 2500, ""},
                                   {"Dal", core::Didascalia("s115"), 1200, "dd/mm/yyyy"},
                                   {"Al", core::Didascalia("s116"), 1200, "dd/mm/yyyy"}});
    cbEsercizioClient->setSorgente("Select * from Esercizi");
    cbEsercizioClient->Aggiorna();
}

void frmConfigurazione::AziendaScelta() {
    const long id = aziendaScelta();
    cbEsercizioClient->setSorgente("Select * from Esercizi where Azienda=" + std::to_string(id));
    cbEsercizioClient->Aggiorna();
    imgNew2->setEnabled(id != 0);
}

void frmConfigurazione::Sfoglia() {
    std::string inizio = txtAziende->text().toStdString();
    if (inizio.empty()) inizio = core::session().CartellaProgramma;
    auto cartella = core::dialogs().chooseFolder("Cartella dei dati", inizio);
    if (!cartella) return;
    txtAziende->setText(Q(*cartella));
    core::ScegliCartellaDati(*cartella);
    RiempiCombo();
}

void frmConfigurazione::ScegliCreato(ui::VetraCombo* combo, std::optional<long> creato) {
    combo->Aggiorna();
    if (creato) combo->setValore(store::Value::Long(static_cast<std::int32_t>(*creato)));
}

void frmConfigurazione::NuovaAzienda() { ScegliCreato(cbAziendaClient, frmAziendeEdita(this).Edita({Modalita::Nuovo})); }

void frmConfigurazione::ModificaAzienda() {
    const long id = aziendaScelta();
    if (id == 0) {
        core::MsgBox(core::Testo("s203"), core::vbExclamation);
        return;
    }
    ScegliCreato(cbAziendaClient, frmAziendeEdita(this).Edita({Modalita::Modifica, id}));
}

void frmConfigurazione::NuovoEsercizio() {
    ScegliCreato(cbEsercizioClient, frmArchiviEdita::NuovoEsercizioVuoto(aziendaScelta(), this));
}

void frmConfigurazione::Conferma() {
    const store::Value es = cbEsercizioClient->valore();
    if (!core::ConfermaConfigurazione(txtAziende->text().toStdString(), aziendaScelta(),
                                      es.isNull() ? 0 : store::CLng(es)))
        return;
    core::AnnunciaNovita(core::Novita::Esercizi);
    accept();
}

void frmConfigurazione::Annulla() {
    // With no master open, start-up ends: the user chose not to configure.
    core::session().dbAziende.reset();
    QDialog::reject();
}

void frmConfigurazione::reject() { Annulla(); }
