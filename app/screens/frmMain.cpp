#include "app/screens/frmMain.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QKeyEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>
#include <QToolBox>
#include <QUrl>
#include <QVBoxLayout>

#include "core/avvio.h"
#include "core/dialogs.h"
#include "core/esercizi.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "core/registro_schermi.h"
#include "app/screens/frmArchiviEdita.h"
#include "app/screens/frmSelPeriodo.h"
#include "core/session.h"
#include "payments/registri.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraPicker.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

QPointer<frmMain>& pannelloAttuale() {
    static QPointer<frmMain> p;
    return p;
}

// The commands the panel runs itself rather than by opening a screen.
bool ComandoInterno(const std::string& nome) {
    return nome == "mnuEsci" || nome == "mChiusuraEsercizio" || nome == "mModificaPeriodo" || nome == "mGuida";
}

bool Disponibile(const std::string& nome) {
    if (ComandoInterno(nome)) return true;
    const core::ComandoPannello* c = core::CercaComando(nome);
    return c && core::ComandoDisponibile(*c);
}

const core::ComandoPannello* Rapido(const std::string& chiave) {
    for (const auto& c : core::ComandiRapidi())
        if (c.nome == chiave) return &c;
    return nullptr;
}

void AbilitaVoce(QListWidgetItem* voce, bool abilitata) {
    voce->setFlags(abilitata ? (voce->flags() | Qt::ItemIsEnabled) : (voce->flags() & ~Qt::ItemIsEnabled));
}

std::string Chiave(QListWidgetItem* voce) { return voce->data(Qt::UserRole).toString().toStdString(); }

template <class F>
auto Protetto(F f) {
    return [f] { ui::protetto(f); };
}

}  // namespace

frmMain::frmMain(QWidget* parent) : QMainWindow(parent) {
    setObjectName(Nome);
    setWindowTitle("Brevano - Pannello Principale");
    setWindowIcon(ui::icona("go-home"));
    resize(1180, 700);
    CostruisciMenu();
    auto* centro = new QWidget(this);
    auto* righe = new QHBoxLayout(centro);
    ui::impostaSpaziatura(righe);
    righe->addWidget(CostruisciListe());
    setCentralWidget(centro);
    statusBar()->addPermanentWidget(lblVersione = new QLabel(this));
    lblVersione->setObjectName("lblVersione");

    ui::protetto([this] {
        lblVersione->setText(Q(core::Didascalia("s52") + " " + store::DateText(core::DataEseguibile())));
        txtUtente->setText(Q(core::session().NomeUtente));
        lblCartellaDati->setText(Q(core::LeggiIni("Azienda", "PATH")));
        Abilita(core::session().dbArchivio != nullptr);
        CaricaComboDati();
        AggiornaAvvisi();
        MostraEsercizio();
    });
    mInfo->setEnabled(true);
    mStrumenti->setEnabled(true);
}

frmMain::~frmMain() = default;

frmMain* frmMain::istanza() { return pannelloAttuale().data(); }

void frmMain::Apri() {
    if (frmMain* vecchio = istanza()) {
        vecchio->sostituito_ = true;
        vecchio->close();
        vecchio->deleteLater();
    }
    auto* p = new frmMain;
    p->setAttribute(Qt::WA_DeleteOnClose);
    pannelloAttuale() = p;
    ui::impostaFinestraPrincipale(p);
    p->show();
}

// ---- building ---------------------------------------------------------------------------------

void frmMain::CostruisciMenu() {
    struct Menu { QMenu** menu; const char* nome; const char* titolo; };
    const Menu menu[] = {{&mAnagrafiche, "mAnagrafiche", "&Anagrafiche"},
                         {&mContabilita, "mContabilita", "&Contabilità"},
                         {&mStrumenti, "mStrumenti", "&Strumenti"},
                         {&mInfo, "mInfo", "&?"}};
    std::map<std::string, QMenu*> perNome;
    for (const Menu& m : menu) {
        *m.menu = menuBar()->addMenu(QString::fromUtf8(m.titolo));
        (*m.menu)->setObjectName(m.nome);
        perNome[m.nome] = *m.menu;
    }
    QMenu* scadenze = nullptr;
    for (const core::ComandoPannello& c : core::ComandiMenu()) {
        QMenu* dove = perNome[c.menu];
        if (c.menu == "mScadenze") {
            if (!scadenze) {
                scadenze = mContabilita->addMenu(ui::icona("appointment-new"), "Scadenze");
                scadenze->setObjectName("mScadenze");
            }
            dove = scadenze;
        }
        if (c.nome == "mnuEsci" || c.nome == "mAziende" || c.nome == "mPrimaNota" || c.nome == "mBackup")
            dove->addSeparator();
        QAction* a = dove->addAction(ui::icona(c.icona.c_str()), Q(c.titolo));
        a->setObjectName(Q(c.nome));
        a->setEnabled(Disponibile(c.nome));
        const std::string nome = c.nome;
        connect(a, &QAction::triggered, this, Protetto([this, nome] { Comando(nome); }));
        azioni_[nome] = a;
    }
    if (scadenze) {
        bool qualcuna = false;
        for (QAction* a : scadenze->actions()) qualcuna = qualcuna || a->isEnabled();
        scadenze->menuAction()->setEnabled(qualcuna);
    }
    azioni_["mnuEsci"]->setShortcut(QKeySequence::Quit);
    azioni_["mGuida"]->setShortcut(QKeySequence::HelpContents);
}

QListWidget* frmMain::NuovaLista(const char* nome) {
    auto* lista = new QListWidget(this);
    lista->setObjectName(nome);
    lista->setIconSize(QSize(22, 22));
    lista->setSpacing(2);
    lista->installEventFilter(this);
    return lista;
}

QWidget* frmMain::CostruisciTestata() {
    auto* testata = new QGroupBox("Azienda ed esercizio", this);
    auto* g = new QGridLayout(testata);
    cbAzienda = new QComboBox(testata);
    cbAzienda->setObjectName("cbAzienda");
    cbEsercizio = new QComboBox(testata);
    cbEsercizio->setObjectName("cbEsercizio");
    txtUtente = new QLineEdit(testata);
    txtUtente->setObjectName("txtUtente");
    txtUtente->setReadOnly(true);
    btnCambiaUtente = new QPushButton(ui::icona("system-users"), "Cambia utente", testata);
    btnCambiaUtente->setObjectName("btnCambiaUtente");
    lblCartellaDati = new QLabel(testata);
    lblCartellaDati->setObjectName("lblCartellaDati");
    lblCartellaDati->setTextInteractionFlags(Qt::TextSelectableByMouse);
    Command1 = new QPushButton(ui::icona("folder-open"), "Cambia", testata);
    Command1->setObjectName("Command1");
    g->addWidget(new QLabel("Azienda", testata), 0, 0);
    g->addWidget(cbAzienda, 0, 1, 1, 2);
    g->addWidget(new QLabel("Esercizio", testata), 1, 0);
    g->addWidget(cbEsercizio, 1, 1, 1, 2);
    g->addWidget(new QLabel("Utente", testata), 2, 0);
    g->addWidget(txtUtente, 2, 1);
    g->addWidget(btnCambiaUtente, 2, 2);
    g->addWidget(new QLabel("Cartella dati", testata), 3, 0);
    g->addWidget(lblCartellaDati, 3, 1);
    g->addWidget(Command1, 3, 2);
    g->setColumnStretch(1, 1);
    connect(cbAzienda, &QComboBox::currentIndexChanged, this, Protetto([this] { CambiaAzienda(); }));
    connect(cbEsercizio, &QComboBox::currentIndexChanged, this, Protetto([this] { CambiaEsercizio(); }));
    connect(btnCambiaUtente, &QPushButton::clicked, this, Protetto([this] { CambiaUtente(); }));
    connect(Command1, &QPushButton::clicked, this, Protetto([this] { CambiaCartella(); }));
    return testata;
}

QWidget* frmMain::CostruisciEsercizio() {
    auto* riquadro = new QGroupBox("Esercizio corrente", this);
    auto* g = new QGridLayout(riquadro);
    lblDal = new QLabel(riquadro);
    lblDal->setObjectName("lblDal");
    lblAl = new QLabel(riquadro);
    lblAl->setObjectName("lblAl");
    lblFileArchivio = new QLabel(riquadro);
    lblFileArchivio->setObjectName("lblFileArchivio");
    lblFileArchivio->setTextInteractionFlags(Qt::TextSelectableByMouse);
    g->addWidget(new QLabel("Dal", riquadro), 0, 0);
    g->addWidget(lblDal, 0, 1);
    g->addWidget(new QLabel("Al", riquadro), 0, 2);
    g->addWidget(lblAl, 0, 3);
    g->addWidget(new QLabel("Archivio", riquadro), 1, 0);
    g->addWidget(lblFileArchivio, 1, 1, 1, 4);
    g->setColumnMinimumWidth(1, 120);
    g->setColumnStretch(4, 1);
    return riquadro;
}

void frmMain::MostraEsercizio() {
    const core::DescrizioneEsercizio e = core::EsercizioCorrente();
    lblDal->setText(Q(e.dal));
    lblAl->setText(Q(e.al));
    lblFileArchivio->setText(Q(e.file));
}

QWidget* frmMain::CostruisciListe() {
    auto* contenitore = new QWidget(this);
    auto* righe = new QHBoxLayout(contenitore);
    righe->setContentsMargins(0, 0, 0, 0);
    righe->setSpacing(ui::Spaziatura * 2);

    ListBar = new QToolBox(this);
    ListBar->setObjectName("ListBar");
    ListBar->setFixedWidth(280);
    for (const core::SezioneLista& sezione : core::SezioniListBar()) {
        QListWidget* lista = NuovaLista(sezione.chiaveTesto == "s13" ? "ListBarContabilita" : "ListBarAnagrafiche");
        for (const core::VoceLista& v : sezione.voci) {
            const core::ComandoPannello* c = core::CercaComando(v.chiave);
            const std::string titolo = core::Didascalia(!v.chiaveTesto.empty() ? v.chiaveTesto : v.titolo.empty() && c ? c->titolo : v.titolo);
            auto* voce = new QListWidgetItem(ui::icona(c ? c->icona.c_str() : "text-x-generic"), Q(titolo), lista);
            voce->setData(Qt::UserRole, Q(v.chiave));
        }
        auto esegui = [this](QListWidgetItem* voce) { ui::protetto([this, voce] { Comando(Chiave(voce)); }); };
        connect(lista, &QListWidget::itemActivated, this, esegui);
        connect(lista, &QListWidget::itemClicked, this, esegui);
        ListBar->addItem(lista, ui::icona(sezione.chiaveTesto == "s13" ? "x-office-document" : "system-users"),
                         Q(core::Didascalia(sezione.chiaveTesto.empty() ? sezione.titolo : sezione.chiaveTesto)));
    }
    righe->addWidget(ListBar);

    auto* centro = new QVBoxLayout;
    centro->addWidget(CostruisciTestata());
    centro->addWidget(CostruisciEsercizio());
    auto* titolo = new QLabel("<h1>Brevano</h1><p>Contabilità e fatturazione</p>", this);
    titolo->setAlignment(Qt::AlignCenter);
    centro->addWidget(titolo, 1);
    righe->addLayout(centro, 1);

    auto* destra = new QVBoxLayout;
    auto* rapido = new QGroupBox(Q(core::Didascalia("s36")), this);
    auto* rapidoL = new QVBoxLayout(rapido);
    MenuRapidi = NuovaLista("MenuRapidi");
    for (const core::ComandoPannello& c : core::ComandiRapidi()) {
        auto* voce = new QListWidgetItem(ui::icona(c.icona.c_str()), Q(c.didascalia()),
                                         MenuRapidi);
        voce->setData(Qt::UserRole, Q(c.nome));
    }
    rapidoL->addWidget(MenuRapidi);
    auto rapidoEsegui = [this](QListWidgetItem* voce) {
        ui::protetto([this, voce] { ComandoRapido(Chiave(voce)); });
    };
    connect(MenuRapidi, &QListWidget::itemActivated, this, rapidoEsegui);
    connect(MenuRapidi, &QListWidget::itemClicked, this, rapidoEsegui);
    auto* avvisi = new QGroupBox("Avvisi di oggi", this);
    auto* avvisiL = new QVBoxLayout(avvisi);
    BarAvvisi = NuovaLista("BarAvvisi");
    avvisiL->addWidget(BarAvvisi);
    auto avvisoEsegui = [this](QListWidgetItem* voce) { ui::protetto([this, voce] { Avviso(Chiave(voce)); }); };
    connect(BarAvvisi, &QListWidget::itemActivated, this, avvisoEsegui);
    connect(BarAvvisi, &QListWidget::itemClicked, this, avvisoEsegui);
    destra->addWidget(rapido, 3);
    destra->addWidget(avvisi, 1);
    auto* colonnaDestra = new QWidget(this);
    colonnaDestra->setLayout(destra);
    colonnaDestra->setFixedWidth(280);
    destra->setContentsMargins(0, 0, 0, 0);
    righe->addWidget(colonnaDestra);
    return contenitore;
}

QAction* frmMain::azione(const std::string& nome) const {
    auto it = azioni_.find(nome);
    return it == azioni_.end() ? nullptr : it->second;
}

// ---- enabling ----------------------------------------------------------------------------------

void frmMain::Abilita(bool abilitato) {
    mAnagrafiche->menuAction()->setEnabled(abilitato);
    mContabilita->menuAction()->setEnabled(abilitato);
    AbilitaChiusura(abilitato);
    for (int p = 0; p < ListBar->count(); ++p) {
        auto* lista = static_cast<QListWidget*>(ListBar->widget(p));
        for (int i = 0; i < lista->count(); ++i)
            AbilitaVoce(lista->item(i), abilitato && Disponibile(Chiave(lista->item(i))));
    }
    for (int i = 0; i < MenuRapidi->count(); ++i) {
        const core::ComandoPannello* c = Rapido(Chiave(MenuRapidi->item(i)));
        AbilitaVoce(MenuRapidi->item(i), abilitato && c && core::schermoRegistrato(c->schermo));
    }
    for (int i = 0; i < BarAvvisi->count(); ++i)
        AbilitaVoce(BarAvvisi->item(i), abilitato && core::schermoRegistrato("frmScadenze"));
}

void frmMain::AbilitaChiusura(bool abilitata) { azioni_["mChiusuraEsercizio"]->setEnabled(abilitata); }

void frmMain::DisabilitaSenzaEsercizio() {
    Abilita(false);
    core::session().dbArchivio.reset();
    BarAvvisi->clear();
    MostraEsercizio();
}

// ---- combos ------------------------------------------------------------------------------------

namespace {
void Riempi(QComboBox* cb, const std::vector<core::VoceCombo>& voci, long corrente) {
    QSignalBlocker blocco(cb);
    cb->clear();
    for (const auto& v : voci) cb->addItem(Q(v.testo), QVariant::fromValue<qlonglong>(v.id));
    cb->setCurrentIndex(core::PosizioneDi(voci, corrente));
}
long IdScelto(QComboBox* cb) { return cb->currentIndex() < 0 ? 0 : static_cast<long>(cb->currentData().toLongLong()); }
}  // namespace

void frmMain::CaricaAziende() {
    Riempi(cbAzienda, core::ElencoAziende(), core::session().IDAzienda);
}

void frmMain::CaricaCBEsercizi() {
    Riempi(cbEsercizio, core::ElencoEsercizi(core::session().IDAzienda), core::session().IDEsercizio);
}

void frmMain::CaricaComboDati() {
    const bool prima = Caricamento;
    Caricamento = true;
    CaricaAziende();
    const auto esercizi = core::ElencoEsercizi(core::session().IDAzienda);
    Riempi(cbEsercizio, esercizi, core::session().IDEsercizio);
    {
        QSignalBlocker blocco(cbEsercizio);
        cbEsercizio->setCurrentIndex(core::ScegliEsercizioCorrente(esercizi));
    }
    AbilitaChiusura(core::ChiusuraAbilitataSenzaFine());
    Caricamento = prima;
}

void frmMain::Novita(core::Novita novita) {
    if (novita == core::Novita::Aziende) CaricaAziende();
    else CaricaComboDati();
}

void frmMain::CambiaAzienda() {
    if (Caricamento || cbAzienda->currentIndex() < 0) return;
    const long id = IdScelto(cbAzienda);
    core::ImpostaAzienda(id);
    CaricaCBEsercizi();
    if (cbEsercizio->count() == 0) {
        DisabilitaSenzaEsercizio();
        core::ScriviIni("Archivio", "ID", "0");
        if (core::MsgBox(core::Testo("s60"), core::vbYesNo + core::vbQuestion) == core::vbYes) {
            frmArchiviEdita::NuovoEsercizioVuoto(id, this);
            CaricaCBEsercizi();
        }
    } else {
        Abilita(true);
        cbEsercizio->setCurrentIndex(cbEsercizio->count() - 1);   // runs the change of period
        core::ScriviIni("Archivio", "ID", std::to_string(core::session().IDEsercizio));
        AbilitaChiusura(core::ChiusuraAbilitataSenzaData());
    }
    core::ScriviIni("Azienda", "ID", std::to_string(id));
}

void frmMain::CambiaEsercizio() {
    if (Caricamento || cbEsercizio->currentIndex() < 0) return;
    core::Session& s = core::session();
    s.IDEsercizio = IdScelto(cbEsercizio);
    ChiudiAltriSchermi();
    core::MostraModale("frmLogin");
    if (s.NomeUtente.empty()) {
        // The login was cancelled: no period until one is chosen again.
        QSignalBlocker blocco(cbEsercizio);
        cbEsercizio->setCurrentIndex(-1);
        DisabilitaSenzaEsercizio();
        return;
    }
    core::ApriEsercizio(s.IDEsercizio);
    Abilita(true);
    AbilitaChiusura(core::ChiusuraAbilitataSenzaData());
    txtUtente->setText(Q(s.NomeUtente));
    AggiornaAvvisi();
    MostraEsercizio();
    if (s.Privilegi.empty()) QApplication::exit(0);
}

// ---- commands ----------------------------------------------------------------------------------

void frmMain::Comando(const std::string& nome) {
    if (nome == "mnuEsci") {
        QApplication::exit(0);
    } else if (nome == "mChiusuraEsercizio") {
        ChiusuraEsercizio();
    } else if (nome == "mModificaPeriodo") {
        ModificaPeriodo();
    } else if (nome == "mGuida") {
        Guida();
    } else if (const core::ComandoPannello* c = core::CercaComando(nome); c && core::ComandoDisponibile(*c)) {
        core::EseguiComando(*c);
    }
}

void frmMain::ComandoRapido(const std::string& chiave) {
    const core::ComandoPannello* c = Rapido(chiave);
    if (!c || !core::schermoRegistrato(c->schermo) || !core::PrivilegioConcesso(c->privilegio)) return;
    core::Session& s = core::session();
    s.IDRecordEdit = 0;
    if (c->modo >= 0) core::ImpostaModoSchermo(c->schermo, c->modo);
    core::MostraModale(c->schermo);
    // After a new fattura or expense, its lines follow one after another until one is cancelled.
    // The line editor finds the record it belongs to as its mode.
    const std::string& righe = c->righe;
    if (righe.empty() || !core::schermoRegistrato(righe)) return;
    const long record = s.IDRecordEdit;
    while (record != 0 && s.IDRecordEdit != 0) {
        core::ImpostaModoSchermo(righe, static_cast<int>(record));
        if (!core::MostraModale(righe)) break;
    }
}

void frmMain::Avviso(const std::string& chiave) {
    if (!core::schermoRegistrato("frmScadenze")) return;
    core::ChiudiFormAperta("frmScadenze");
    // The side of the reminder, on the instalments whose reminder is today.
    const int lato = chiave == "ScadenzeAttive" ? payments::ScadenzeAttive : payments::ScadenzePassive;
    core::ImpostaModoSchermo("frmScadenze", lato + payments::ConAvvisiDiOggi);
    core::MostraPannello("frmScadenze");
}

void frmMain::AggiornaAvvisi() {
    BarAvvisi->clear();
    for (const core::Avviso& a : core::AvvisiDiOggi()) {
        auto* voce = new QListWidgetItem(ui::icona("appointment-soon"), Q(a.titolo), BarAvvisi);
        voce->setData(Qt::UserRole, Q(a.chiave));
        AbilitaVoce(voce, core::schermoRegistrato("frmScadenze"));
    }
}

void frmMain::CambiaUtente() {
    core::MostraModale("frmLogin");
    txtUtente->setText(Q(core::session().NomeUtente));
}

void frmMain::CambiaCartella() {
    core::MostraModale("frmConfigurazione");
    // Start-up again from its first step, in this process: it opens a fresh panel in place of
    // this one, or ends the program.
    if (core::Main() == core::EsitoAvvio::Termina) QApplication::exit(0);
}

bool frmMain::FinePeriodo(bool modifica) {
    core::session().PeriodoAl = 0;
    frmSelPeriodo scelta(this);
    if (!modifica) scelta.pkDataDal->setEnabled(false);
    if (auto al = core::FineProposta(modifica)) scelta.pkDataAl->setValore(store::Value::Date(*al));
    ui::eseguiModale(&scelta, [&scelta] { return scelta.exec() == QDialog::Accepted; });
    if (core::session().PeriodoAl == 0 || !core::ScriviFinePeriodo(core::session().PeriodoAl)) return false;
    MostraEsercizio();
    return true;
}

void frmMain::ChiusuraEsercizio() {
    if (FinePeriodo(false)) AbilitaChiusura(false);
}

void frmMain::ModificaPeriodo() {
    if (FinePeriodo(true)) AbilitaChiusura(false);
}

bool frmMain::NuovoEsercizio() {
    core::Session& s = core::session();
    if (s.NomeUtente.empty()) {
        core::MostraModale("frmLogin");
        if (s.NomeUtente.empty()) return false;
    }
    while (true) {
        auto rs = s.dbAziende->OpenRecordset("Select * from Esercizi where Azienda=" + std::to_string(s.IDAzienda) +
                                             " and Isnull(Al)");
        if (rs->Eof()) break;
        const long id = store::CLng(rs->get("ID"));
        const std::string domanda = core::Testo("s56") + store::CStr(rs->get("Nome")) + core::Testo("s57") +
                                    store::ShortDate(store::CDate(rs->get("Dal"))) + ". " + core::Testo("s58");
        rs->Close();
        if (core::MsgBox(domanda, core::vbYesNo + core::vbQuestion) != core::vbYes) return false;
        if (id != s.IDEsercizio) {
            cbEsercizio->setCurrentIndex(cbEsercizio->findData(QVariant::fromValue<qlonglong>(id)));
            if (s.IDEsercizio != id || s.NomeUtente.empty()) return false;
        }
        // A closure given up leaves the period open: the command stops rather than asking again.
        if (!FinePeriodo(false)) return false;
        AbilitaChiusura(false);
    }
    const auto nuovo = frmArchiviEdita::NuovoEsercizioConRiporto(s.IDAzienda, this);
    CaricaCBEsercizi();
    if (!nuovo) return false;
    // The new period becomes the current one as any change of period does: screens closed, login.
    const int posizione = cbEsercizio->findData(QVariant::fromValue<qlonglong>(*nuovo));
    {
        QSignalBlocker blocco(cbEsercizio);
        cbEsercizio->setCurrentIndex(-1);
    }
    cbEsercizio->setCurrentIndex(posizione);
    core::ScriviIni("Archivio", "ID", std::to_string(*nuovo));
    return true;
}

void frmMain::Guida() {
    const QString guida = Q(core::PercorsoProgramma("guida/index.html"));
    if (!QFileInfo::exists(guida)) {
        core::MsgBox("Guida non trovata: " + guida.toStdString(), core::vbExclamation);
        return;
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(guida));
}

void frmMain::ChiudiAltriSchermi() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w != this && w->isVisible() && w->objectName().startsWith("frm")) w->close();
}

bool frmMain::eventFilter(QObject* oggetto, QEvent* evento) {
    auto* lista = qobject_cast<QListWidget*>(oggetto);
    if (lista && evento->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(evento)->key() == Qt::Key_Space &&
        lista->currentItem() && (lista->currentItem()->flags() & Qt::ItemIsEnabled)) {
        emit lista->itemActivated(lista->currentItem());
        return true;
    }
    return QMainWindow::eventFilter(oggetto, evento);
}

void frmMain::closeEvent(QCloseEvent* e) {
    e->accept();
    if (sostituito_) return;
    ChiudiAltriSchermi();
    QApplication::exit(0);
}
