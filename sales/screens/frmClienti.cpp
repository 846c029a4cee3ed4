#include "sales/screens/frmClienti.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QUrl>
#include <QVBoxLayout>

#include "core/diritti.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/varie.h"
#include "sales/campi.h"
#include "store/convert.h"
#include "ui/CompletaComune.h"
#include "ui/Dettaglio.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VBars.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

// A tab's list of a customer's rows: read only, with its own right to see and its empty source.
ui::DefinizioneDettaglio Scheda(const char* nome, int diritto, std::function<std::string(long)> righe,
                                std::string vuota, std::vector<std::string> colonne) {
    ui::DefinizioneDettaglio d;
    d.nome = nome;
    d.righe = std::move(righe);
    d.vuota = std::move(vuota);
    d.campi = &sales::CampiSchedeCliente();
    d.colonne = std::move(colonne);
    d.diritti.vedere = diritto;
    return d;
}

std::string Id(long id) { return std::to_string(id); }

}  // namespace

frmClienti::frmClienti(QWidget* parent) : RegistroBase(Nome, parent) {
    costruisciPannello();
    Definizione d;
    d.titolo = "s10";
    d.sorgente = "Select qrClienti.* from qrClienti";
    d.ordinamento = "DescCliente";
    d.campi = &sales::CampiClienti();
    d.colonne = {"Denominazione"};
    d.ricerca = {"Denominazione", "Indirizzo", "Citta", "Provincia", "Cap",
                 "Telefono", "Cellulare", "Fax", "PartitaIva", "CodiceFiscale"};
    d.guardia = ui::Guardia{"Cliente", {{"Documenti", "s148"}, {"Pagamenti", "s149"}, {"Scadenze", "s25"}}};
    d.domandaElimina = [](store::Recordset& rs) {
        return core::Testo("s328") + " " + store::ConcatText(rs.get("DescCliente")) + "?";
    };
    d.editor = [](QWidget* parent) { return std::make_unique<frmClientiEdita>(parent); };
    d.sezioneStampa = "Clienti";
    costruisciSchede();

    btnChiama = aggiungiComando("btnChiama", "&Chiamata VoIP", 0, [this] {
        mTelefona->popup(btnChiama->mapToGlobal(QPoint(0, btnChiama->height())));
    });
    mTelefona = new QMenu(btnChiama);
    mTelefona->setObjectName("mTelefona");
    QAction* mSuTelefono = mTelefona->addAction("Su Telofono", this, [this] { Chiama("Telefono"); });
    mSuTelefono->setObjectName("mSuTelefono");
    QAction* mCellulare = mTelefona->addAction("Su Cellulare", this, [this] { Chiama("Cellulare"); });
    mCellulare->setObjectName("mCellulare");

    carica(std::move(d));
    resize(1180, 640);
}

long frmClienti::idCorrente() const { return Grid->haRigaCorrente() ? Grid->idCorrente() : 0; }

void frmClienti::Chiama(const char* campo) {
    if (!Grid->haRigaCorrente()) return;
    const std::string numero = store::ConcatText(Grid->valore(campo));
    const QUrl link(Q(sales::LinkChiamata(numero)));
    if (apriLink) apriLink(link);
    else QDesktopServices::openUrl(link);
}

void frmClienti::costruisciPannello() {
    ui::VBars* p = aggiungiPannello();
    const core::TabellaCampi& campi = sales::CampiClienti();
    const std::pair<const char*, std::vector<const char*>> gruppi[] = {
        {"s142", {"Denominazione", "Indirizzo", "Cap", "Citta", "Provincia", "PartitaIva", "CodiceFiscale"}},
        {"s154", {"Telefono", "Cellulare", "Fax", "Mail", "Web"}},
        {"s157", {"DescIva", "DescPagamento", "Sconto1", "Sconto2"}},
        {"s162", {"Banca", "ABI", "CAB", "CIN", "NumeroConto"}},
        {"s20", {"Note"}},
    };
    for (const auto& [titolo, nomi] : gruppi) {
        const int g = p->aggiungiGruppo(core::Testo(titolo));
        for (const char* nome : nomi) {
            const core::Campo& c = campi[nome];
            p->aggiungiCampo(g, c.nome, core::Didascalia(c.didascalia), c.maschera);
        }
    }
}

void frmClienti::costruisciSchede() {
    sTab = new QTabWidget(this);
    sTab->setObjectName("sTab");
    // The side panel is the first tab: the customer's fields.
    for (int i = 0; i < layout()->count(); ++i)
        if (auto* l = qobject_cast<QBoxLayout*>(layout()->itemAt(i)->layout()); l && l->indexOf(Grid) >= 0) {
            l->removeWidget(VisCampi);
            l->addWidget(sTab, 2);
        }
    sTab->addTab(VisCampi, Q(core::Testo("s142")));

    GridEstratto = aggiungiDettaglio(Scheda(
        "GridEstratto", core::PrimaNotaVedere, [](long) { return std::string("Select * from Estratto where Tipo=0"); },
        "Select * from Estratto where ID=-1", {"Data", "Descrizione", "Dare", "Avere", "Saldo"}));
    sTab->addTab(schedaEstratto(), "Estratto Conto");

    GridScadenze = aggiungiDettaglio(Scheda(
        "GridScadenze", core::ScadenzeVedere,
        [](long id) { return "Select * from qrScadenzePagamenti where Cliente=" + Id(id) + " and DaPagare>0"; },
        "Select * from qrScadenzePagamenti where ID=-1",
        {"DataScadenza", "DescScadenza", "ImportoScadenza", "Rata", "Rate", "ImportoPagato", "DaPagare"}));
    sTab->addTab(GridScadenze, "Scadenze");

    GridPagamenti = aggiungiDettaglio(Scheda(
        "GridPagamenti", core::IncassiVedere,
        [](long id) { return "Select * from qrPagamentiIncassi where Cliente=" + Id(id); },
        "Select * from qrPagamentiIncassi where ID=-1",
        {"DataPagamento", "DescPagamento", "TipoPagamento", "ImportoPagamento"}));
    sTab->addTab(GridPagamenti, "Pagamenti");

    // Only fatture: the lines the customer was invoiced.
    GridMovimenti = aggiungiDettaglio(Scheda(
        "GridMovimenti", core::DocumentiVedere,
        [](long id) { return "SELECT * from qrMovimentiEx WHERE Tipo=5 and Cliente=" + Id(id); },
        "Select * from qrMovimentiEx where ID=-1",
        {"Data", "DescNum", "DescMovimento", "Quantita", "PrezzoUnitario", "Importo"}));
    sTab->addTab(GridMovimenti, "Movimenti");

    GridAssistenze = aggiungiDettaglio(Scheda(
        "GridAssistenze", 0, [this](long id) { return sales::SorgenteAssistenze(id, cbMese->currentIndex()); },
        sales::SorgenteAssistenze(0, 0), {"Data", "DescServizio", "OraInizio", "OraFine", "TempoIntervento", "Km", "Note"}));
    GridAssistenze->griglia()->setOrdinamento("Data", ui::Direzione::Decrescente);
    sTab->addTab(schedaAssistenze(), "Assistenze");
}

// The statement is made for the customer by the statement routine, from the open items only or
// from all, between the two dates; until that routine is in, the tab lists what the table holds
// and its options only read the list again.
QWidget* frmClienti::schedaEstratto() {
    auto* pagina = new QWidget(this);
    auto* l = new QVBoxLayout(pagina);
    auto* opzioni = new QHBoxLayout;
    chkPartiteAperte = new QCheckBox("Solo &partite aperte", pagina);
    chkPartiteAperte->setObjectName("chkPartiteAperte");
    pkEstrattoDal = new ui::VetraPicker(pagina);
    pkEstrattoDal->setObjectName("pkEstrattoDal");
    pkEstrattoAl = new ui::VetraPicker(pagina);
    pkEstrattoAl->setObjectName("pkEstrattoAl");
    opzioni->addWidget(chkPartiteAperte);
    for (auto [testo, data] : {std::pair{"&Dal", pkEstrattoDal}, std::pair{"A&l", pkEstrattoAl}}) {
        auto* etichetta = new QLabel(testo, pagina);
        etichetta->setBuddy(data);
        opzioni->addWidget(etichetta);
        opzioni->addWidget(data);
    }
    opzioni->addStretch(1);
    l->addLayout(opzioni);
    l->addWidget(GridEstratto, 1);
    auto rileggi = [this] { ui::protetto([this] { GridEstratto->Carica(idCorrente()); }); };
    connect(chkPartiteAperte, &QCheckBox::toggled, this, rileggi);
    connect(pkEstrattoDal, &ui::VetraPicker::cambiato, this, rileggi);
    connect(pkEstrattoAl, &ui::VetraPicker::cambiato, this, rileggi);
    return pagina;
}

QWidget* frmClienti::schedaAssistenze() {
    auto* pagina = new QWidget(this);
    auto* l = new QVBoxLayout(pagina);
    cbMese = new QComboBox(pagina);
    cbMese->setObjectName("cbMese");
    cbMese->addItem("(Tutti i mesi)");
    for (const char* m : {"Gennaio", "Febbraio", "Marzo", "Aprile", "Maggio", "Giugno", "Luglio", "Agosto",
                          "Settembre", "Ottobre", "Novembre", "Dicembre"})
        cbMese->addItem(m);
    auto* riga = new QHBoxLayout;
    auto* lblMese = new QLabel("&Mese", pagina);
    lblMese->setBuddy(cbMese);
    riga->addWidget(lblMese);
    riga->addWidget(cbMese);
    riga->addStretch(1);
    l->addLayout(riga);
    l->addWidget(GridAssistenze, 1);
    GridAssistenze->griglia()->aggiungiGruppo("Mese");
    connect(cbMese, &QComboBox::currentIndexChanged, this, [this] { ui::protetto([this] { CaricaAssistenze(); }); });
    return pagina;
}

// All months grouped by month; one month without groups.
void frmClienti::CaricaAssistenze() {
    ui::VetraGrid* g = GridAssistenze->griglia();
    g->pulisciGruppi();
    if (cbMese->currentIndex() == 0) g->aggiungiGruppo("Mese");
    GridAssistenze->Carica(idCorrente());
}

frmClientiEdita::frmClientiEdita(QWidget* parent)
    : EditorBase(Nome, "Clienti", core::Testo("s40"), parent) {
    const core::TabellaCampi& campi = sales::CampiClienti();
    auto testo = [this](const char* nome, const char* campo, int larghezza = 0) {
        auto* t = new ui::VText(this);
        t->setObjectName(nome);
        t->setDataField(campo);
        if (larghezza) t->setMaximumWidth(larghezza);
        return t;
    };
    auto riga = [this](std::initializer_list<std::pair<const char*, QWidget*>> controlli) {
        auto* w = new QWidget(this);
        auto* l = new QHBoxLayout(w);
        l->setContentsMargins(0, 0, 0, 0);
        l->setSpacing(ui::Spaziatura);
        bool primo = true;
        for (const auto& [didascalia, c] : controlli) {
            if (!primo) {
                auto* e = new QLabel(Q(core::Didascalia(didascalia)), w);
                e->setBuddy(c);
                l->addWidget(e);
            }
            l->addWidget(c, c->maximumWidth() < QWIDGETSIZE_MAX ? 0 : 1);
            primo = false;
        }
        l->addStretch(0);
        return w;
    };
    // A discount takes a decimal point as the decimal comma it means, never as thousands.
    auto numero = [this](ui::VText* t) {
        t->setNumerico(true);
        t->setPredefinito("0");
        t->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        connect(t, &QLineEdit::textEdited, this, [t](const QString& testo) {
            if (!testo.contains('.')) return;
            const int cursore = t->cursorPosition();
            t->setText(QString(testo).replace('.', ','));
            t->setCursorPosition(cursore);
        });
    };

    VText1 = testo("VText1", "DescCliente");
    VText1->setMinimumWidth(480);
    aggiungiCampo(campi["DescCliente"], VText1);
    VText13 = testo("VText13", "DescCliente2");
    aggiungiCampo(campi["DescCliente2"], VText13);
    VText2 = testo("VText2", "Indirizzo");
    aggiungiCampo(campi["Indirizzo"], VText2);
    VText4 = testo("VText4", "Cap", 70);
    VText5 = testo("VText5", "Citta");
    txtProvincia = testo("txtProvincia", "Provincia", 50);
    aggiungiCampo(Q(core::Testo("s103")), riga({{"s103", VText4}, {"s104", VText5}, {"s105", txtProvincia}}));
    ui::CollegaComuni(VText5, VText4, txtProvincia);
    VText6 = testo("VText6", "PartitaIva", 160);
    VText7 = testo("VText7", "CodiceFiscale", 200);
    aggiungiCampo(Q(core::Testo("s106")), riga({{"s106", VText6}, {"s147", VText7}}));
    VText8 = testo("VText8", "Telefono", 160);
    VText9 = testo("VText9", "Cellulare", 160);
    VText10 = testo("VText10", "Fax", 160);
    aggiungiCampo(Q(core::Testo("s107")), riga({{"s107", VText8}, {"s146", VText9}, {"s108", VText10}}));
    VText11 = testo("VText11", "mail");
    VText12 = testo("VText12", "web");
    aggiungiCampo("E-mail", riga({{"E-mail", VText11}, {"Web", VText12}}));

    VetraCombo4 = new ui::VetraCombo(this);
    VetraCombo4->setObjectName("VetraCombo4");
    VetraCombo4->setSorgente("Select * from CodiciIva order by DescIva");
    VetraCombo4->setColonne({{"DescIva", core::Testo("s77"), 1800}, {"AliquotaIva", core::Testo("s190"), 800}});
    VetraCombo4->setProperty("DataField", "IvaApplicata");
    VetraCombo4->Aggiorna();
    aggiungiCampo(Q(core::Testo("s158")), conImmagini(VetraCombo4, FabbricaEditorDi("frmCodiciIvaEdita")));
    VetraCombo5 = new ui::VetraCombo(this);
    VetraCombo5->setObjectName("VetraCombo5");
    VetraCombo5->setSorgente("Select * from CondizioniPagamento order by DescPagamento");
    VetraCombo5->setColonne({{"DescPagamento", core::Testo("s77"), 2400}});
    VetraCombo5->setProperty("DataField", "CondizioniPagamento");
    VetraCombo5->Aggiorna();
    aggiungiCampo("Pagamento", conImmagini(VetraCombo5, FabbricaEditorDi("frmCondizioniPagamentoEdita")));

    VText20 = testo("VText20", "Sconto1", 80);
    VText21 = testo("VText21", "Sconto2", 80);
    numero(VText20);
    numero(VText21);
    aggiungiCampo("Sconto Base", riga({{"Sconto Base", VText20}, {"Sconto Extra", VText21}}));

    VText16 = testo("VText16", "Banca");
    aggiungiCampo(campi["Banca"], VText16);
    VText17 = testo("VText17", "ABI", 70);
    VText18 = testo("VText18", "CAB", 70);
    VText22 = testo("VText22", "CIN", 40);
    VText19 = testo("VText19", "NumeroConto", 160);
    aggiungiCampo("ABI", riga({{"ABI", VText17}, {"CAB", VText18}, {"CIN", VText22}, {"Conto", VText19}}));

    Text1 = new QPlainTextEdit(this);
    Text1->setObjectName("Text1");
    Text1->setTabChangesFocus(true);
    Text1->setMaximumHeight(80);
    aggiungiCampo(campi["Note"], Text1);
    setMinimumWidth(820);
}

bool frmClientiEdita::Valida() {
    if (!core::Trim(VText1->text().toStdString()).empty()) return true;
    core::MsgBox("La denominazione non è stata inserita!", core::vbExclamation);
    VText1->setFocus();
    return false;
}
