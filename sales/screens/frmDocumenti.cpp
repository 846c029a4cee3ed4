#include "sales/screens/frmDocumenti.h"

#include <QCheckBox>
#include <QColor>
#include <QFormLayout>
#include <QFrame>
#include <QLabel>
#include <QPlainTextEdit>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

#include <tuple>

#include "core/diritti.h"
#include "core/dialogs.h"
#include "core/documenti.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "payments/primanota.h"
#include "payments/saldo.h"
#include "sales/documenti.h"
#include "sales/numerazione.h"
#include "sales/stampa_documenti.h"
#include "sales/screens/frmDocumentiCerca.h"
#include "sales/screens/frmDocumentiEdita.h"
#include "sales/screens/SchedaScadenze.h"
#include "sales/screens/frmMovimentiEdita.h"
#include "sales/totali.h"
#include "ui/Dettaglio.h"
#include "ui/Stile.h"
#include "ui/Dialoghi.h"
#include "ui/VBars.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/VetraGrid.h"

namespace {

// A settled or partly paid document is changed only when the user says so.
bool confermaModificaDocumento(long id) {
    const std::string motivo = payments::MotivoBloccoDocumento(id);
    return motivo.empty() ||
           core::MsgBox(motivo + core::Testo("s265"), core::vbYesNo | core::vbQuestion) == core::vbYes;
}

// A label that shows a field of the current row.
QLabel* valore(QWidget* parent, const char* nome, const char* campo, const char* maschera = "") {
    auto* l = new QLabel(parent);
    l->setObjectName(nome);
    l->setProperty("DataField", campo);
    l->setProperty("Maschera", maschera);
    l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return l;
}

QHBoxLayout* riga(std::initializer_list<QWidget*> w) {
    auto* r = new QHBoxLayout;
    r->setSpacing(ui::Spaziatura);
    for (QWidget* x : w) r->addWidget(x);
    r->addStretch(1);
    return r;
}

QLabel* didascalia(QWidget* parent, const std::string& chiave) {
    return ui::didascalia(QString::fromStdString(core::Didascalia(chiave)), parent);
}

long tipoDelRegistro(long tipo) {
    if (tipo != 0) return tipo;
    const long modo = core::ModoSchermo(frmDocumenti::Nome);
    return modo != 0 ? modo : core::TipoFatturaEmessa;
}

struct Righe {
    const char* griglia;
    const char* vista;
    const char* descrizione;   // the field the delete question names
    const char* domanda;       // its language key
    const char* comandi[3];    // new, change, delete
};

// The rows of the current document in a list of their own, with the document's rights.
ui::DefinizioneDettaglio righe(const Righe& r) {
    ui::DefinizioneDettaglio d;
    d.nome = r.griglia;
    const std::string sorgente = std::string("Select * from ") + r.vista + " where ";
    d.righe = [sorgente](long id) { return sorgente + "Documento=" + std::to_string(id); };
    d.vuota = sorgente + "ID<0";
    d.campoPadre = "Documento";
    d.ordinamento = "ID";
    d.diritti = {core::DocumentiVedere, core::DocumentiModificare, core::DocumentiModificare,
                 core::DocumentiModificare};
    const std::string campo = r.descrizione, chiave = r.domanda;
    d.domandaElimina = [campo, chiave](store::Recordset& rs) {
        return core::Testo(chiave) + " '" + store::ConcatText(rs.get(campo)) + "' ?";
    };
    d.nomeNuovo = r.comandi[0];
    d.nomeModifica = r.comandi[1];
    d.nomeElimina = r.comandi[2];
    d.primaDelComando = confermaModificaDocumento;
    return d;
}

}  // namespace

frmDocumenti::frmDocumenti(QWidget* parent, long tipo) : RegistroBase(Nome, parent), tipo_(tipoDelRegistro(tipo)) {
    const bool clienti = core::TipoVersoCliente(tipo_);
    Criteri.tipo = tipo_;
    Definizione d;
    d.titolo = core::TitoloTipoDocumento(tipo_);
    d.sorgente = SorgenteTipo();
    d.ordinamento = "Data";
    d.campi = &sales::CampiDocumenti();
    d.colonne = {"Data", "Prefisso", "Numero", "Suffisso", "ImportoTotale", "DescEstrattoConto"};
    d.ricerca = {clienti ? "Denominazione" : "DescFornitore", "Numero", "Prefisso", "Suffisso"};
    // An unpaid document stands out in red.
    d.colori = {{"Pagato", [](const store::Value& v) { return !v.isNull() && !store::CBool(v); }, QColor(Qt::red),
                 QColor(Qt::white)}};
    d.diritti = {core::DocumentiVedere, core::DocumentiModificare, core::DocumentiModificare,
                 core::DocumentiModificare};
    const long t = tipo_;
    if (clienti) d.editor = [t](QWidget* parent) { return std::make_unique<frmDocumentiEdita>(parent, t); };
    else d.editor = [t](QWidget* parent) { return std::make_unique<frmDocumentiFornitoriEdita>(parent, t); };

    ui::DefinizioneDettaglio mov = righe({"GridMov", "qrMovimenti", "DescMovimento", "s266",
                                          {"btnNuovoMov", "btnModificaMov", "btnEliminaMov"}});
    mov.campi = &sales::CampiMovimenti();
    mov.colonne = {"DescMovimento", "Quantita", "PrezzoUnitario", "Sconto1", "Sconto2", "DescIva", "Importo"};
    mov.editor = [](QWidget* parent) { return std::make_unique<frmMovimentiEdita>(parent); };
    ui::DefinizioneDettaglio spese = righe({"GridSpese", "qrSpeseDocumenti", "DescSpesa", "s268",
                                            {"btnNuovaSpesa", "btnModificaSpesa", "btnEliminaSpesa"}});
    spese.campi = &sales::CampiSpeseDocumenti();
    spese.colonne = {"DescSpesa", "Imponibile", "DescIva"};
    spese.editor = [](QWidget* parent) { return std::make_unique<frmSpeseDocumentiEdita>(parent); };
    Movimenti = aggiungiDettaglio(mov);
    Spese = aggiungiDettaglio(spese);
    sTab = new QTabWidget(this);
    sTab->setObjectName("sTab");
    sTab->addTab(paginaRighe(), "&Righe");
    sTab->addTab(Spese, "&Spese");

    ui::DefinizioneDettaglio iva;
    iva.nome = "GridIva";
    iva.righe = [](long id) { return sales::SqlRiepilogoIvaDocumento(id); };
    iva.vuota = sales::SqlRiepilogoIvaDocumento(-1);
    iva.campi = &sales::CampiRiepilogoIva();
    iva.colonne = {"DescIva", "Imponibile", "Imposta"};
    iva.diritti.vedere = core::DocumentiVedere;
    Iva = aggiungiDettaglio(iva);
    sTab->addTab(Iva, "Riepilogo &IVA");

    if (tipo_ != core::TipoPreventivo) {
        Scadenze = new SchedaScadenze(tipo_, Criteri, [this] { Grid->Aggiorna(); }, this);
        sTab->addTab(Scadenze, "Scad&enze");
    }
    // Who the document is for beside the list; below it the header, the tabs, the totals and the grouping.
    ui::VBars* cliente = aggiungiPannello();
    const int gruppo = cliente->aggiungiGruppo("Cliente");
    cliente->aggiungiCampo(gruppo, clienti ? "Denominazione" : "DescFornitore", core::Didascalia("s101"));
    cliente->aggiungiCampo(gruppo, "PartitaIva", core::Didascalia("s106"));
    cliente->aggiungiCampo(gruppo, "CodiceFiscale", core::Didascalia("s147"));
    fmTestata = testata();
    BarTotali = new ui::VBars(this);
    BarTotali->setObjectName("BarTotali");
    const int totali = BarTotali->aggiungiGruppo("Totali");
    for (const char* campo : {"Imponibile", "TotNetto", "TotSpese", "TotIva", "TotRitenutaAcconto", "ImportoTotale"})
        BarTotali->aggiungiCampo(totali, campo, core::Didascalia(sales::CampiDocumenti()[campo].didascalia), "#,0.00");
    Grid->aggiungiSeguace(BarTotali);
    chkRaggruppa = new QCheckBox("&Raggruppa", this);
    chkRaggruppa->setObjectName("chkRaggruppa");
    auto* lato = new QVBoxLayout;
    lato->addWidget(chkRaggruppa);
    lato->addWidget(BarTotali);
    lato->addStretch(1);
    auto* schede = new QVBoxLayout;
    schede->setSpacing(ui::Spaziatura);
    schede->addWidget(fmTestata);
    schede->addWidget(sTab, 1);
    auto* sotto = new QHBoxLayout;
    sotto->addLayout(schede, 1);
    sotto->addLayout(lato);
    static_cast<QVBoxLayout*>(layout())->insertLayout(2, sotto, 1);
    aggiungiComando("btnRicerca", "Ricerca... (F3)", 0, [this] { CercaDocumenti(); });
    aggiungiComando("btnSelezionaTutto", "Seleziona &tutto", 0, [this] { SelezionaTutto(); });
    if (tipo_ == core::TipoPreventivo) aggiungiComando("btnConverti", "Converi in fattura", 0, [this] { Converti(); });
    if (tipo_ != core::TipoNotaCreditoRicevuta) {
        aggiungiComando("btnStampa", "Stampa", 0, [this] { Stampa(); });
        aggiungiComando("btnStampaRitenuta", "Stampa ritenuta", 0, [this] { StampaRitenuta(); });
    }
    d.vociMenu = {{"btnNuovo", "s282"}, {"btnModifica", "s283"}};
    resize(1100, 720);
    // Grouped by the counterpart's name, the list is read a counterpart at a time.
    Grid->collegaGruppo({"Denominazione", "qrClienti", "Cliente"});
    Grid->collegaGruppo({"DescFornitore", "Fornitori", "Fornitore"});
    carica(std::move(d));
    chkRaggruppa->setChecked(true);
    Raggruppa();
    connect(chkRaggruppa, &QCheckBox::toggled, this, [this] { ui::protetto([this] { Raggruppa(); }); });
}

void frmDocumenti::Raggruppa() {
    Grid->pulisciGruppi();
    if (chkRaggruppa->isChecked()) Grid->aggiungiGruppo(core::TipoVersoCliente(tipo_) ? "Denominazione" : "DescFornitore");
    Grid->Aggiorna();
}

// No copy: the quote's lines, charges, terms and totals are the fattura's from now on, and the
// row leaves the list of quotes.
void frmDocumenti::Converti() {
    if (!Grid->haRigaCorrente()) {
        core::MsgBox("Selezionara un preventivo!", core::vbExclamation);
        return;
    }
    const double oggi = store::Oggi();
    const long numero = sales::ProssimoNumeroDocumento(core::TipoFatturaEmessa, "", "");
    store::Recordset* rs = Grid->Recordset();
    rs->Edit();
    rs->set("Tipo", store::Value::Long(core::TipoFatturaEmessa));
    rs->set("Data", store::Value::Date(oggi));
    rs->set("Numero", store::Value::Long(static_cast<std::int32_t>(numero)));
    rs->Update();
    Grid->Aggiorna();
    core::MsgBox("Generata la fattura n." + std::to_string(numero) + " del " + store::DateText(oggi),
                 core::vbInformation);
}

void frmDocumenti::CercaDocumenti() {
    frmDocumentiCerca cerca(Criteri, this);
    const auto criteri = cerca.Cerca();
    if (!criteri) return;
    Criteri = *criteri;
    Grid->setSorgente(sales::IstruzioneRicercaDocumenti(Criteri));
    Grid->Aggiorna();
    if (Scadenze) Scadenze->AggiornaResocontoTutti();
}

void frmDocumenti::SelezionaTutto() {
    Criteri = sales::CriteriDocumenti{};
    Criteri.tipo = tipo_;
    txtCerca->clear();
    Grid->setSorgente(SorgenteTipo());
    Grid->Aggiorna();
    if (Scadenze) Scadenze->AggiornaResocontoTutti();
}

std::string frmDocumenti::SorgenteTipo() const { return "Select * from qrDocumenti where Tipo=" + std::to_string(tipo_); }

std::optional<Apertura> frmDocumenti::aperturaPer(ui::Elenco&, Modalita modalita) {
    if (modalita == Modalita::Modifica && !confermaModificaDocumento(Grid->idCorrente())) return std::nullopt;
    return Apertura{modalita, 0, Grid};
}

// The question, then the lines, charges, instalments and payments; the grid deletes the row itself.
bool frmDocumenti::PrimaDiEliminare(long id) {
    const std::string domanda = core::Testo("s263") + store::ConcatText(Grid->valore("Numero")) + core::Testo("s264");
    if (core::MsgBox(domanda, core::vbYesNo | core::vbQuestion) != core::vbYes) return false;
    sales::EliminaRigheDocumento(id);
    return true;
}

void frmDocumenti::DopoRigheCambiate() {
    if (!Grid->haRigaCorrente()) return;
    sales::CalcolaTotaliDocumento(Grid->idCorrente(), Grid->Recordset());
    Grid->AggiornaRiga();
    if (Scadenze) Scadenze->AggiornaStatoScadenza();
}

// The document changed in its editor: the state of the instalment in front.
void frmDocumenti::DopoSalvato(long) {
    if (Scadenze) Scadenze->AggiornaStatoScadenza();
}

// The journal rows whose payment went with the document.
void frmDocumenti::DopoEliminato(long) { payments::PulisciPrimaNota(); }

void frmDocumenti::Ricerca() { CercaDocumenti(); }

// The list as filtered, the current document and its lines, and the selection in words.
void frmDocumenti::Stampa() {
    core::Stampa(sales::StampaDocumenti(Criteri, Grid->idCorrente(), Grid->istruzione()));
}

void frmDocumenti::StampaRitenuta() { core::Stampa(sales::StampaRitenutaDocumento(Grid->idCorrente())); }

// The instalments and payments of the row; the period of the services a document was made from,
// over its lines, hidden for other documents.
void frmDocumenti::DopoCambioRiga() {
    if (Scadenze) Scadenze->Carica(Grid->haRigaCorrente() ? Grid->idCorrente() : 0);
    const std::tuple<QLabel*, const char*, const char*> periodo[] = {{lblDataDal, "DataDal", "Dal "},
                                                                     {lblDataAl, "DataAl", "Al "}};
    for (const auto& [etichetta, campo, prima] : periodo) {
        const store::Value v = Grid->valore(campo);
        const bool data = !v.isNull() && store::CDbl(v) != 0;
        etichetta->setText(data ? QString::fromStdString(prima + store::DateText(store::CDbl(v))) : QString());
        etichetta->setVisible(data);
    }
}

QWidget* frmDocumenti::paginaRighe() {
    auto* pagina = new QWidget(this);
    auto* colonna = new QVBoxLayout(pagina);
    colonna->setContentsMargins(0, 0, 0, 0);
    colonna->setSpacing(ui::Spaziatura);
    lblDataDal = new QLabel(pagina);
    lblDataDal->setObjectName("lblDataDal");
    lblDataAl = new QLabel(pagina);
    lblDataAl->setObjectName("lblDataAl");
    lblDataDal->hide();
    lblDataAl->hide();
    colonna->addLayout(riga({lblDataDal, lblDataAl}));
    colonna->addWidget(Movimenti, 1);
    return pagina;
}

// The header of the current document: the counterparty's address and payment term, the
// discounts, surcharge, withholding, parcels and notes, all read from the row.
QFrame* frmDocumenti::testata() {
    auto* f = new QFrame(this);
    f->setObjectName("fmTestata");
    f->setFrameShape(QFrame::StyledPanel);
    auto* sinistra = new QFormLayout;
    sinistra->setSpacing(ui::Spaziatura);
    sinistra->addRow(didascalia(f, "s101"), valore(f, "lblDestinatario", "Denominazione"));
    sinistra->addRow(didascalia(f, "s102"), valore(f, "lblIndirizzo", "Indirizzo"));
    sinistra->addRow(didascalia(f, "s104"), riga({valore(f, "lblCap", "Cap"), valore(f, "lblCitta", "Citta"),
                                                  valore(f, "lblProv", "Provincia")}));
    sinistra->addRow(didascalia(f, "s200"), riga({valore(f, "lblTel", "Telefono"), didascalia(f, "s108"),
                                                  valore(f, "lblFax", "Fax")}));
    sinistra->addRow(didascalia(f, "s46"), valore(f, "lblPagamento", "DescPagamento"));
    auto* destra = new QFormLayout;
    destra->setSpacing(ui::Spaziatura);
    destra->addRow(didascalia(f, "Sconti %"),
                   riga({valore(f, "Sconto1", "Sconto1"), valore(f, "Sconto2", "Sconto2"),
                         valore(f, "Sconto3", "Sconto3"), valore(f, "Sconto4", "Sconto4")}));
    destra->addRow(didascalia(f, "Maggiorazione %"), valore(f, "Maggiorazione", "Maggiorazione"));
    destra->addRow(didascalia(f, "Ritenuta d'acconto %"), valore(f, "RitenutaAcconto", "RitenutaAcconto"));
    destra->addRow(didascalia(f, "Colli"), valore(f, "Colli", "Colli"));
    auto* note = new QPlainTextEdit(f);
    note->setObjectName("txtNote");
    note->setProperty("DataField", "Note");
    note->setReadOnly(true);
    note->setTabChangesFocus(true);
    note->setMaximumHeight(note->fontMetrics().lineSpacing() * 4 + 2 * ui::Spaziatura);
    auto* righe = new QHBoxLayout(f);
    righe->setContentsMargins(ui::Margine, ui::Spaziatura, ui::Margine, ui::Spaziatura);
    righe->setSpacing(ui::Margine * 2);
    righe->addLayout(sinistra, 3);
    righe->addLayout(destra, 2);
    righe->addWidget(note, 2);
    for (QWidget* w : f->findChildren<QWidget*>())
        if (w->property("DataField").isValid()) Grid->aggiungiSeguace(w);
    return f;
}
