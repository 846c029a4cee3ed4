#include "sales/screens/frmClienti.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/archivio_sql.h"
#include "core/diritti.h"
#include "core/dialogs.h"
#include "core/documenti.h"
#include "core/estratto_conto.h"
#include "core/impostazioni.h"
#include "core/session.h"
#include "payments/primanota.h"
#include "sales/campi.h"
#include "sales/screens/frmAssistenzeEdita.h"
#include "sales/screens/frmDocAssistenzeEdita.h"
#include "store/convert.h"
#include "ui/Dettaglio.h"
#include "ui/Dialoghi.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

std::string Id(long id) { return std::to_string(id); }

ui::DefinizioneDettaglio Scheda(const char* nome, int diritto, std::function<std::string(long)> righe,
                                std::string vuota, std::vector<std::string> colonne) {
    return ui::SchedaSolaLettura(nome, diritto, std::move(righe), std::move(vuota), &sales::CampiSchedeCliente(),
                                 std::move(colonne));
}

}  // namespace

frmClienti::frmClienti(QWidget* parent) : RegistroAnagrafica(Nome, parent) {
    costruisciSchede(sales::CampiClienti(),
                     {{"s142", {"Denominazione", "Indirizzo", "Cap", "Citta", "Provincia", "PartitaIva", "CodiceFiscale"}},
                      {"s154", {"Telefono", "Cellulare", "Fax", "Mail", "Web"}},
                      {"s157", {"DescIva", "DescPagamento", "Sconto1", "Sconto2"}},
                      {"s162", {"Banca", "ABI", "CAB", "CIN", "NumeroConto"}},
                      {"s20", {"Note"}}});
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

    // The statement lies in the scratch file, in the order it was made.
    ui::DefinizioneDettaglio estratto =
        Scheda("GridEstratto", core::PrimaNotaVedere, [this](long id) { return GeneraEstratto(id); },
               "Select * from Estratto where ID=-1", {"Data", "Descrizione", "Dare", "Avere", "Saldo"});
    estratto.database = core::session().dbTemp;
    estratto.ordinamento = "ID";
    GridEstratto = aggiungiScheda("Estratto Conto", estratto, [this](ui::Dettaglio* lista) { return schedaEstratto(lista); });
    GridScadenze = aggiungiScheda(
        "Scadenze",
        Scheda("GridScadenze", core::ScadenzeVedere,
               [](long id) { return "Select * from qrScadenzePagamenti where Cliente=" + Id(id) + " and DaPagare>0"; },
               "Select * from qrScadenzePagamenti where ID=-1",
               {"DataScadenza", "DescScadenza", "ImportoScadenza", "Rata", "Rate", "ImportoPagato", "DaPagare"}));
    GridPagamenti = aggiungiScheda(
        "Pagamenti", Scheda("GridPagamenti", core::IncassiVedere,
                            [](long id) { return "Select * from qrPagamentiIncassi where Cliente=" + Id(id); },
                            "Select * from qrPagamentiIncassi where ID=-1",
                            {"DataPagamento", "DescPagamento", "TipoPagamento", "ImportoPagamento"}));
    // Only fatture: the lines the customer was invoiced.
    GridMovimenti = aggiungiScheda(
        "Movimenti", Scheda("GridMovimenti", core::DocumentiVedere,
                            [](long id) { return "SELECT * from qrMovimentiEx WHERE Tipo=5 and Cliente=" + Id(id); },
                            "Select * from qrMovimentiEx where ID=-1",
                            {"Data", "DescNum", "DescMovimento", "Quantita", "PrezzoUnitario", "Importo"}));
    ui::DefinizioneDettaglio visite =
        Scheda("GridAssistenze", 0, [this](long id) { return sales::SorgenteAssistenze(id, cbMese->currentIndex()); },
               sales::SorgenteAssistenze(0, 0),
               {"Data", "DescServizio", "OraInizio", "OraFine", "TempoIntervento", "Km", "Note"});
    visite.editor = [](QWidget* parent) { return std::make_unique<frmAssistenzeEdita>(parent); };
    visite.nomeNuovo = "btnNuovaAssistenza";
    visite.nomeModifica = "btnModificaAssistenza";
    visite.nomeElimina = "btnEliminaAssistenza";
    visite.domandaElimina = [](store::Recordset&) { return core::Testo("s25"); };
    GridAssistenze = aggiungiScheda("Assistenze", visite, [this](ui::Dettaglio* lista) { return schedaAssistenze(lista); });
    GridAssistenze->griglia()->setOrdinamento("Data", ui::Direzione::Decrescente);
    aggiungiComando("btnStampaEstratto", "Stampa &estratto", core::PrimaNotaVedere, [this] { StampaEstratto(); });
    aggiungiComandiPagamenti();
    aggiungiChiamata();

    carica(std::move(d));
    resize(1180, 640);
}

// The statement is made again for the customer each time the tab reads it: from the open items
// only or from all, between the two dates (an empty picker is no limit).
std::string frmClienti::GeneraEstratto(long cliente) {
    auto data = [](ui::VetraPicker* p) { return p->dataValida() ? store::DateValue(p->valore()) : 0.0; };
    core::GeneraEstratto(cliente, 0, chkPartiteAperte->isChecked(), data(pkEstrattoDal), data(pkEstrattoAl), false);
    return "Select * from Estratto where Tipo=0";
}

void frmClienti::StampaEstratto() {
    if (idCorrente() == 0) return;
    auto campo = [this](const char* nome) { return store::ConcatText(Grid->valore(nome)); };
    core::Stampa(core::StampaEstratto(0, {campo("DescCliente") + " " + campo("DescCliente2"), campo("Indirizzo"),
                                          campo("Cap"), campo("Citta"), campo("Provincia"), campo("PartitaIva")}));
}

// The customer's collections, through the payment editor of the documents (by name: it is the
// payments area's). A delete takes the journal row along and leaves the flags as they are.
void frmClienti::aggiungiComandiPagamenti() {
    auto incassa = [this](const Apertura& apertura) {
        if (!FabbricaEditorDi("frmPagamentiEdita")(this)->Edita(apertura)) return;
        GridScadenze->Carica(idCorrente());
        GridPagamenti->Carica(idCorrente());
    };
    aggiungiComando("btnPagaScadenza", "&Incassa", core::IncassiModificare, [this, incassa] {
        ui::VetraGrid* g = GridScadenze->griglia();
        if (g->haRigaCorrente()) incassa({Modalita::Nuovo, 0, nullptr, "Scadenza", g->idCorrente()});
    });
    aggiungiComando("btnNuovoPagamento", "N&uovo incasso", core::IncassiModificare, [this, incassa] {
        if (idCorrente() > 0) incassa({Modalita::Nuovo, 0, GridPagamenti->griglia(), "Cliente", idCorrente()});
    });
    aggiungiComando("btnModificaPagamento", "Modifica inc&asso", core::IncassiModificare, [this, incassa] {
        ui::VetraGrid* g = GridPagamenti->griglia();
        if (g->haRigaCorrente()) incassa({Modalita::Modifica, 0, g});
    });
    aggiungiComando("btnEliminaPagamento", "Eli&mina incasso", core::IncassiModificare, [this] {
        ui::VetraGrid* g = GridPagamenti->griglia();
        if (!g->haRigaCorrente()) return;
        const std::string domanda = core::Testo("s262");
        if (core::MsgBox(domanda, core::vbYesNo | core::vbQuestion) != core::vbYes) return;
        core::Archivio().Execute("Delete from Pagamenti where ID=" + Id(g->idCorrente()));
        payments::PulisciPrimaNota();
        GridPagamenti->Carica(idCorrente());
    });
}

QWidget* frmClienti::schedaEstratto(ui::Dettaglio* lista) {
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
    l->addWidget(lista, 1);
    auto rileggi = [this, lista] { ui::protetto([this, lista] { lista->Carica(idCorrente()); }); };
    connect(chkPartiteAperte, &QCheckBox::toggled, this, rileggi);
    connect(pkEstrattoDal, &ui::VetraPicker::cambiato, this, rileggi);
    connect(pkEstrattoAl, &ui::VetraPicker::cambiato, this, rileggi);
    return pagina;
}

QWidget* frmClienti::schedaAssistenze(ui::Dettaglio* lista) {
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
    btnGeneraFavAssistenze = new QPushButton("&Genera Fattura", pagina);
    btnGeneraFavAssistenze->setObjectName("btnGeneraFavAssistenze");
    riga->addWidget(btnGeneraFavAssistenze);
    connect(btnGeneraFavAssistenze, &QPushButton::clicked, this, [this] { ui::protetto([this] { GeneraFattura(); }); });
    l->addLayout(riga);
    l->addWidget(lista, 1);
    lista->griglia()->aggiungiGruppo("Mese");
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

// A fattura of the customer's visits, opened new on no list; the visits are read again afterwards.
void frmClienti::GeneraFattura() {
    if (!ui::consentito(core::DocumentiModificare)) return;
    frmDocAssistenzeEdita e(this, core::TipoFatturaEmessa);
    e.Edita({Modalita::Nuovo, 0, nullptr, {}, idCorrente()});
    GridAssistenze->Carica(idCorrente());
}

frmClientiEdita::frmClientiEdita(QWidget* parent)
    : EditorAnagrafica(Nome, "Clienti", core::Testo("s40"), sales::CampiClienti(), "DescCliente", parent) {
    // A discount takes a decimal point as the decimal comma it means, never as thousands.
    auto numero = [](ui::VText* t) {
        t->setNumerico(true);
        t->setPredefinito("0");
        t->setPuntoDecimale(true);
    };

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

    VText20 = casella("VText20", "Sconto1", 80);
    VText21 = casella("VText21", "Sconto2", 80);
    numero(VText20);
    numero(VText21);
    aggiungiCampo("Sconto Base", riga({{"Sconto Base", VText20}, {"Sconto Extra", VText21}}));
    aggiungiBancaENote();
}

bool frmClientiEdita::Valida() { return nomeRichiesto("La denominazione non è stata inserita!"); }
