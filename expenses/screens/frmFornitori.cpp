#include "expenses/screens/frmFornitori.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "core/archivio_sql.h"
#include "core/diritti.h"
#include "core/dialogs.h"
#include "core/estratto_conto.h"
#include "core/impostazioni.h"
#include "core/session.h"
#include "expenses/campi.h"
#include "payments/primanota.h"
#include "sales/campi.h"
#include "store/convert.h"
#include "ui/Dettaglio.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

namespace {

std::string Id(long id) { return std::to_string(id); }

// Until the payment editor is in the program, its commands say so.
// The payment editor of the documents, by name: it is the payments area's.
bool ApriPagamento(QWidget* parent, const Apertura& apertura) {
    return FabbricaEditorDi("frmPagamentiEdita")(parent)->Edita(apertura).has_value();
}

}  // namespace

frmFornitori::frmFornitori(QWidget* parent) : RegistroAnagrafica(Nome, parent) {
    costruisciSchede(expenses::CampiFornitori(),
                     {{"s142", {"DescFornitore", "Indirizzo", "Cap", "Citta", "Provincia", "PartitaIva", "CodiceFiscale"}},
                      {"s154", {"Telefono", "Cellulare", "Fax", "Mail", "Web", "Banca", "ABI", "CAB", "CIN",
                                "NumeroConto", "Note"}}});
    Definizione d;
    d.titolo = "s15";
    d.sorgente = "Select * from qrFornitori";
    d.ordinamento = "DescFornitore";
    d.campi = &expenses::CampiFornitori();
    d.colonne = {"DescFornitore", "Citta", "Telefono"};
    d.ricerca = {"DescFornitore", "Indirizzo", "Citta", "Provincia", "Cap",
                 "Telefono", "Cellulare", "Fax", "PartitaIva", "CodiceFiscale"};
    // Expenses are not in the guard: a supplier with expenses only may go, and they keep no name.
    d.guardia = ui::Guardia{"Fornitore", {{"Documenti", "s148"}, {"Pagamenti", "Pagamenti/Incassi"}, {"Scadenze", "Scadenze"}}};
    d.domandaElimina = [](store::Recordset& rs) {
        return "Eliminare il fornitore " + store::ConcatText(rs.get("DescFornitore")) + "?";
    };
    d.editor = [](QWidget* parent) { return std::make_unique<frmFornitoriEdita>(parent); };
    d.sezioneStampa = "Fornitori";

    const core::TabellaCampi* schede = &sales::CampiSchedeCliente();
    GridScadenze = aggiungiScheda(
        "Sca&denze",
        ui::SchedaSolaLettura("GridScadenze", core::ScadenzeVedere,
                              [](long id) { return "Select * from qrScadenzePagamenti where Fornitore=" + Id(id) + " and DaPagare>0"; },
                              "Select * from qrScadenzePagamenti where ID=-1", schede,
                              {"DataScadenza", "DescScadenza", "ImportoScadenza", "Rata", "Rate", "ImportoPagato", "DaPagare"}));
    GridPagamenti = aggiungiScheda(
        "Pag&amenti",
        ui::SchedaSolaLettura("GridPagamenti", core::PagamentiVedere, [this](long id) { return SorgentePagamenti(id); },
                              "Select * from qrPagamentiIncassi where ID=-1", schede,
                              {"DataPagamento", "DescPagamento", "TipoPagamento", "ImportoPagamento"}),
        [this](ui::Dettaglio* lista) { return schedaPagamenti(lista); });
    // The supplier's whole statement, made again in the scratch file each time the tab reads it.
    ui::DefinizioneDettaglio estratto = ui::SchedaSolaLettura(
        "GridEstratto", core::PrimaNotaVedere,
        [](long id) {
            core::GeneraEstratto(id, 1, false, 0, 0, false);
            return std::string("Select * from Estratto where Tipo=1");
        },
        "Select * from Estratto where ID=-1", schede, {"Data", "Descrizione", "Operazione", "Dare", "Avere", "Saldo"});
    estratto.database = core::session().dbTemp;
    estratto.ordinamento = "ID";
    GridEstratto = aggiungiScheda("Estratto C&onto", estratto);

    // On the supplier's side the pay command is guarded by position 13.
    btnPagaScadenza = aggiungiComando("btnPagaScadenza", "&Paga", core::PrimaNotaVedere, [this] {
        ui::VetraGrid* g = GridScadenze->griglia();
        if (!g->haRigaCorrente()) return;
        ApriPagamento(this, {Modalita::Nuovo, 0, nullptr, "Scadenza", g->idCorrente()});
        GridScadenze->Carica(idCorrente());
        GridPagamenti->Carica(idCorrente());
    });
    btnModificaPagamento = aggiungiComando("btnModificaPagamento", "Modifica pa&gamento", core::PagamentiModificare, [this] {
        ui::VetraGrid* g = GridPagamenti->griglia();
        if (g->haRigaCorrente() && ApriPagamento(this, {Modalita::Modifica, 0, g})) GridScadenze->Carica(idCorrente());
    });
    btnEliminaPagamento = aggiungiComando("btnEliminaPagamento", "Elimina pagamen&to", core::PagamentiModificare,
                                          [this] { EliminaPagamento(); });
    aggiungiComando("btnStampaEstratto", "Stampa &estratto", core::PrimaNotaVedere, [this] { StampaEstratto(); });
    aggiungiChiamata();
    carica(std::move(d));
    resize(1180, 640);
}

void frmFornitori::StampaEstratto() {
    if (idCorrente() == 0) return;
    auto campo = [this](const char* nome) { return store::ConcatText(Grid->valore(nome)); };
    core::Stampa(core::StampaEstratto(1, {campo("DescFornitore") + " " + campo("DescFornitore2"), campo("Indirizzo"),
                                          campo("Cap"), campo("Citta"), campo("Provincia"), campo("PartitaIva")}));
}

std::string frmFornitori::SorgentePagamenti(long fornitore) const {
    std::string s = "Select * from qrPagamentiIncassi where Fornitore=" + Id(fornitore);
    if (pkDal->dataValida()) s += " And DateValue(DataPagamento)>=DateValue('" + core::DataSql(store::DateValue(pkDal->valore())) + "')";
    if (pkAl->dataValida()) s += " And DateValue(DataPagamento)<=DateValue('" + core::DataSql(store::DateValue(pkAl->valore())) + "')";
    return s;
}

// The payment's journal row goes with it; the flags of what it paid are refreshed by their own routine.
void frmFornitori::EliminaPagamento() {
    ui::VetraGrid* g = GridPagamenti->griglia();
    if (!g->haRigaCorrente()) return;
    const std::string domanda = "Eliminare il pagamento " + store::ConcatText(g->valore("DescPagamento")) + "?";
    if (core::MsgBox(domanda, core::vbYesNo | core::vbQuestion) != core::vbYes) return;
    const long id = g->idCorrente();
    core::Archivio().Execute("Delete from Pagamenti where ID=" + Id(id));
    payments::PulisciPrimaNota();
    GridPagamenti->Carica(idCorrente());
}

QWidget* frmFornitori::schedaPagamenti(ui::Dettaglio* lista) {
    auto* pagina = new QWidget(this);
    auto* l = new QVBoxLayout(pagina);
    auto* periodo = new QHBoxLayout;
    pkDal = new ui::VetraPicker(pagina);
    pkDal->setObjectName("pkDal");
    pkAl = new ui::VetraPicker(pagina);
    pkAl->setObjectName("pkAl");
    for (auto [testo, data] : {std::pair{"&Dal", pkDal}, std::pair{"A&l", pkAl}}) {
        auto* etichetta = new QLabel(testo, pagina);
        etichetta->setBuddy(data);
        periodo->addWidget(etichetta);
        periodo->addWidget(data);
    }
    periodo->addStretch(1);
    l->addLayout(periodo);
    l->addWidget(lista, 1);
    auto rileggi = [this, lista] { ui::protetto([this, lista] { lista->Carica(idCorrente()); }); };
    connect(pkDal, &ui::VetraPicker::cambiato, this, rileggi);
    connect(pkAl, &ui::VetraPicker::cambiato, this, rileggi);
    return pagina;
}

frmFornitoriEdita::frmFornitoriEdita(QWidget* parent)
    : EditorAnagrafica(Nome, "Fornitori", core::Testo("s15"), expenses::CampiFornitori(), "DescFornitore", parent) {
    aggiungiBancaENote();
}

bool frmFornitoriEdita::Valida() { return nomeRichiesto(core::Testo("s83")); }
