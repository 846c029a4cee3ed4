#include "sales/screens/frmDocumenti.h"

#include <QCheckBox>
#include <QColor>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QTabWidget>
#include <QVBoxLayout>

#include "core/diritti.h"
#include "core/dialogs.h"
#include "core/documenti.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "payments/primanota.h"
#include "payments/saldo.h"
#include "sales/documenti.h"
#include "sales/numerazione.h"
#include "sales/screens/frmDocumentiCerca.h"
#include "sales/screens/frmDocumentiEdita.h"
#include "sales/screens/SchedaScadenze.h"
#include "sales/screens/frmMovimentiEdita.h"
#include "sales/totali.h"
#include "ui/Dettaglio.h"
#include "ui/Dialoghi.h"
#include "ui/VBars.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/VetraGrid.h"

namespace {

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
    sTab->addTab(Movimenti, "&Righe");
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
    // The counterparty beside the list; below it the tabs, with the totals and the grouping beside them.
    ui::VBars* cliente = aggiungiPannello();
    const int gruppo = cliente->aggiungiGruppo(clienti ? "Cliente" : "Fornitore");
    cliente->aggiungiCampo(gruppo, clienti ? "Denominazione" : "DescFornitore", core::Didascalia("s101"));
    const std::pair<const char*, const char*> anagrafica[] = {{"Indirizzo", "s102"}, {"Cap", "s103"},
                                                              {"Citta", "s104"},     {"Provincia", "s105"},
                                                              {"Telefono", "s200"},  {"Fax", "s108"},
                                                              {"DescPagamento", "s46"}};
    for (const auto& [campo, chiave] : anagrafica) cliente->aggiungiCampo(gruppo, campo, core::Didascalia(chiave));
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
    auto* sotto = new QHBoxLayout;
    sotto->addWidget(sTab, 1);
    sotto->addLayout(lato);
    static_cast<QVBoxLayout*>(layout())->insertLayout(2, sotto, 1);
    aggiungiComando("btnRicerca", "&Ricerca...", 0, [this] { CercaDocumenti(); });
    aggiungiComando("btnSelezionaTutto", "Seleziona &tutto", 0, [this] { SelezionaTutto(); });
    if (tipo_ == core::TipoPreventivo) aggiungiComando("btnConverti", "Converi in fattura", 0, [this] { Converti(); });
    resize(1100, 720);
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
}

void frmDocumenti::SelezionaTutto() {
    Criteri = sales::CriteriDocumenti{};
    Criteri.tipo = tipo_;
    txtCerca->clear();
    Grid->setSorgente(SorgenteTipo());
    Grid->Aggiorna();
}

std::string frmDocumenti::SorgenteTipo() const { return "Select * from qrDocumenti where Tipo=" + std::to_string(tipo_); }

// A settled or partly paid document is changed only when the user says so.
std::optional<Apertura> frmDocumenti::aperturaPer(ui::Elenco&, Modalita modalita) {
    if (modalita == Modalita::Modifica) {
        const std::string motivo = payments::MotivoBloccoDocumento(Grid->idCorrente());
        if (!motivo.empty() && core::MsgBox(motivo + core::Testo("s265"), core::vbYesNo | core::vbQuestion) != core::vbYes)
            return std::nullopt;
    }
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

void frmDocumenti::DopoCambioRiga() {
    if (Scadenze) Scadenze->Carica(Grid->haRigaCorrente() ? Grid->idCorrente() : 0);
}

// The journal rows whose payment went with the document.
void frmDocumenti::DopoEliminato(long) { payments::PulisciPrimaNota(); }
