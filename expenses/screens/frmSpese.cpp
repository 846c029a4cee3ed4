#include "expenses/screens/frmSpese.h"

#include <QAbstractItemModel>
#include <QColor>
#include <QDesktopServices>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/diritti.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "core/registro_schermi.h"
#include "core/stampa.h"
#include "expenses/campi.h"
#include "expenses/screens/frmSpeseCerca.h"
#include "expenses/screens/frmSpeseEdita.h"
#include "expenses/spese.h"
#include "expenses/totali_spesa.h"
#include "payments/generazione_scadenze.h"
#include "payments/primanota.h"
#include "payments/saldo.h"
#include "sales/campi.h"
#include "sales/documenti.h"
#include "sales/scadenze_documento.h"
#include "store/convert.h"
#include "store/format.h"
#include "ui/Dettaglio.h"
#include "ui/Dialoghi.h"
#include "ui/Scadenzario.h"
#include "ui/VBars.h"
#include "ui/VetraGrid.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

std::string Id(long id) { return std::to_string(id); }

QString Importo(double v) { return Q(store::Format(store::Value::Double(v), "#,0.00")); }

// An unpaid expense or instalment stands out in red.
ui::RegolaColore NonPagata(QColor colore) {
    return {"Pagata", [](const store::Value& v) { return !v.isNull() && !store::CBool(v); }, colore, QColor(Qt::white)};
}

ui::DefinizioneDettaglio Righe(const char* nome, const std::string& vista, const core::TabellaCampi* campi,
                               std::vector<std::string> colonne, int vedere) {
    ui::DefinizioneDettaglio d;
    d.nome = nome;
    const std::string sorgente = "Select * from " + vista + " where ";
    d.righe = [sorgente](long id) { return sorgente + "Spesa=" + Id(id); };
    d.vuota = sorgente + "ID<0";
    d.campi = campi;
    d.colonne = std::move(colonne);
    d.diritti.vedere = vedere;
    return d;
}

}  // namespace

frmSpese::frmSpese(QWidget* parent) : RegistroBase(Nome, parent) {
    Definizione d;
    d.titolo = "s29";
    d.sorgente = SorgenteBase;
    d.ordinamento = "Numero,Data";
    d.direzione = ui::Direzione::Decrescente;
    d.campi = &expenses::CampiSpese();
    d.colonne = {"Data", "Numero", "DescFornitore", "Imponibile", "TotIva", "TotRitenutaAcconto", "ImportoSpesa",
                 "DescEstrattoConto"};
    d.ricerca = {"DescFornitore", "Numero", "DescTipoSpesa", "DescClassificazione", "Note"};
    d.colori = {NonPagata(QColor(Qt::red))};
    // The right to change is tested after the question about instalments and payments.
    d.diritti = {core::SpeseVedere, core::SpeseModificare, 0, core::SpeseModificare};
    d.editor = [](QWidget* parent) { return std::make_unique<frmSpeseEdita>(parent); };

    ui::DefinizioneDettaglio mov =
        Righe("GridMov", "qrMovimentiSpese", &expenses::CampiMovimentiSpese(), {"DescMovimento", "Importo", "DescIva"},
              core::SpeseVedere);
    mov.campoPadre = "Spesa";
    mov.ordinamento = "ID";
    mov.diritti = {core::SpeseVedere, core::SpeseModificare, core::SpeseModificare, core::SpeseModificare};
    mov.editor = [](QWidget* parent) { return std::make_unique<frmSpeseMovEdita>(parent); };
    mov.domandaElimina = [](store::Recordset& rs) {
        return "Eliminare il movimento '" + store::ConcatText(rs.get("DescMovimento")) + "' ?";
    };
    mov.nomeNuovo = "btnNuovoMov";
    mov.nomeModifica = "btnModificaMov";
    mov.nomeElimina = "btnEliminaMov";
    // Adding or changing a line of an expense with instalments or payments asks first; a delete does not.
    mov.primaDelComando = [this](long) { return ConfermaModificaSpesa(); };
    mov.chiediAncheEliminando = false;
    GridMov = aggiungiDettaglio(mov);

    ui::DefinizioneDettaglio iva;
    iva.nome = "GridIva";
    iva.righe = [](long id) { return expenses::SqlRiepilogoIvaSpesa(id); };
    iva.vuota = expenses::SqlRiepilogoIvaSpesa(-1);
    iva.campi = &expenses::CampiMovimentiSpese();
    iva.colonne = {"DescIva", "Imponibile", "Imposta"};
    iva.diritti.vedere = core::SpeseVedere;
    GridIva = aggiungiDettaglio(iva);

    // Instalments and payments as a document's: the lists, their commands and editors by name.
    GridScadenze = new ui::Dettaglio(
        ui::DettaglioScadenze({"GridScadenze", "qrScadenzePassive", "qrScadenzePassive", "Spesa", "DataScadenza",
                               &sales::CampiScadenzeDocumento(),
                               {"DescScadenza", "DataScadenza", "ImportoScadenza", "Rata", "Rate"},
                               core::ScadenzeVedere, core::ScadenzeModificare, "frmScadenzeSpeseEdita",
                               {"btnNuovaScadenza", "btnModificaScadenza", "btnEliminaScadenza"}}),
        [this](bool nuova) { return spesaPerScadenza(nuova); }, [this] { ui::protetto([this] { AggiornaPagata(); }); },
        this);
    ui::DefinizioneDettaglio pagamenti = ui::DettaglioPagamenti(
        {"GridPagamenti", "qrPagamenti", "qrPagamenti", "Spesa", "DataPagamento", &sales::CampiSchedeCliente(),
         {"DescPagamento", "DataPagamento", "ImportoPagamento", "DescScadenza", "DataScadenza", "ImportoScadenza", "Rata",
          "Rate"},
         core::PagamentiVedere, core::PagamentiModificare, "frmPagamentiSpeseEdita",
         {"btnNuovoPagamento", "btnModificaPagamento", "btnEliminaPagamento"}},
        scadenzaDelPagamento_);
    GridPagamenti = new ui::Dettaglio(pagamenti, [this](bool) { return spesaPerPagamento(); },
                                      [this] { ui::protetto([this] { PagamentiCambiati(); }); }, this);

    sTab = new QTabWidget(this);
    sTab->setObjectName("sTab");
    sTab->addTab(GridMov, "&Righe");
    sTab->addTab(GridIva, "Riepilogo &IVA");
    sTab->addTab(schedaResoconto(), "Scadenze e &pagamenti");
    sTab->addTab(schedaFile(), "F&ile");

    // The supplier beside the list; below it the tabs, with the sums and the notes beside them.
    ui::VBars* fornitore = aggiungiPannello();
    const int gruppo = fornitore->aggiungiGruppo(core::Testo("s41"));
    const core::TabellaCampi& campi = expenses::CampiSpese();
    for (const char* campo : {"DescFornitore", "Indirizzo", "Cap", "Citta", "Provincia", "Telefono", "Fax", "DescPagamento"})
        fornitore->aggiungiCampo(gruppo, campo, core::Didascalia(campi[campo].didascalia));
    BarTotali = new ui::VBars(this);
    BarTotali->setObjectName("BarTotali");
    const int totali = BarTotali->aggiungiGruppo("Totali");
    for (const auto& [campo, titolo] : {std::pair{"Imponibile", "Imponibile"}, std::pair{"TotIva", "Totale Iva"},
                                        std::pair{"TotRitenutaAcconto", "Ritenuta d'acconto"},
                                        std::pair{"ImportoSpesa", "Totale"}})
        BarTotali->aggiungiCampo(totali, campo, titolo, "#,0.00");
    txtNote = new QPlainTextEdit(this);
    txtNote->setObjectName("txtNote");
    txtNote->setReadOnly(true);
    txtNote->setTabChangesFocus(true);
    txtNote->setMaximumHeight(110);
    auto* lato = new QVBoxLayout;
    lato->addWidget(BarTotali);
    auto* lblNote = new QLabel(Q(core::Testo("s20")), this);
    lblNote->setBuddy(txtNote);
    lato->addWidget(lblNote);
    lato->addWidget(txtNote);
    lato->addStretch(1);
    auto* sotto = new QHBoxLayout;
    sotto->addWidget(sTab, 1);
    sotto->addLayout(lato);
    static_cast<QVBoxLayout*>(layout())->insertLayout(2, sotto, 1);

    btnGeneraScadenze = aggiungiComando("btnGeneraScadenze", "&Genera scadenze", core::ScadenzeModificare,
                                        [this] { GeneraScadenze(); });
    // A payment of the expense in front; its flag, instalments, payments and figures read again after it.
    btnPaga = aggiungiComando("btnPaga", "Pa&ga", core::PagamentiModificare, [this] {
        if (!Grid->haRigaCorrente()) return;
        const long id = Grid->idCorrente();
        if (!FabbricaEditorDi("frmPagamentiSpeseEdita")(this)->Edita({Modalita::Nuovo, 0, nullptr, "Spesa", id})) return;
        Grid->Aggiorna();
        Grid->vaiAId(id);
        GridScadenze->Carica(id);
        GridPagamenti->Carica(id);
        if (sTab->currentIndex() == 2) CalcolaResoconto();
    });
    aggiungiComando("btnRicerca", "Ricerc&a... (F3)", 0, [this] { CercaSpese(); });
    aggiungiComando("btnSelezionaTutto", "Seleziona &tutto", 0, [this] { SelezionaTutto(); });
    // The list as it stands, with the last search told in words.
    aggiungiComando("btnStampa", "Stampa", 0,
                    [this] { core::Stampa(expenses::StampaSpese(Criteri, Grid->istruzione())); });
    Grid->aggiungiGruppo("DescClassificazione");
    Grid->aggiungiGruppo("DescTipoSpesa");
    Grid->collegaGruppo({"DescClassificazione", "ClassificazioniSpese", "Classificazione"});
    Grid->collegaGruppo({"DescTipoSpesa", "TipiSpesa", "TipoSpesa"});
    // The sums follow the rows the list holds, after a search, a save or a delete alike.
    auto somme = [this] {
        ui::protetto([this] {
            const expenses::SommeElenco s = expenses::SommaColonneSpese(Grid->sorgente());
            for (const auto& [campo, valore] : {std::pair{"Imponibile", s.imponibile}, std::pair{"TotIva", s.totIva},
                                                std::pair{"TotRitenutaAcconto", s.ritenuta},
                                                std::pair{"ImportoSpesa", s.importoSpesa}})
                BarTotali->setTesto(campo, Importo(valore).toStdString());
        });
    };
    // Worked out once the list is on screen, and once for a burst of changes: on a long list the
    // sums are a scan of every row, which the first screen does not wait for.
    auto* sommeDopo = new QTimer(this);
    sommeDopo->setSingleShot(true);
    sommeDopo->setInterval(0);
    connect(sommeDopo, &QTimer::timeout, this, somme);
    connect(Grid->model(), &QAbstractItemModel::modelReset, sommeDopo, qOverload<>(&QTimer::start));
    connect(Grid->model(), &QAbstractItemModel::dataChanged, sommeDopo, qOverload<>(&QTimer::start));
    connect(sTab, &QTabWidget::currentChanged, this, [this] { ui::protetto([this] { TabCambiata(); }); });
    resize(1180, 760);
    carica(std::move(d));
}

QWidget* frmSpese::schedaResoconto() {
    auto* pagina = new QWidget(this);
    auto* l = new QHBoxLayout(pagina);
    auto* liste = new QVBoxLayout;
    liste->addWidget(GridScadenze, 1);
    liste->addWidget(GridPagamenti, 1);
    l->addLayout(liste, 1);
    auto etichetta = [pagina](const char* nome) {
        auto* e = new QLabel(pagina);
        e->setObjectName(nome);
        e->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        e->setMinimumWidth(110);
        return e;
    };
    lblIncassato = etichetta("lblIncassato");
    lblDaIncassare = etichetta("lblDaIncassare");
    lblImportoTutti = etichetta("lblImportoTutti");
    lblIncassatoTutti = etichetta("lblIncassatoTutti");
    lblDaIncassareTutti = etichetta("lblDaIncassareTutti");
    auto* somme = new QFormLayout;
    somme->addRow("<b>Spesa selezionata</b>", static_cast<QWidget*>(nullptr));
    somme->addRow("Pagato", lblIncassato);
    somme->addRow("Da pagare", lblDaIncassare);
    somme->addRow("<b>Spese della selezione</b>", static_cast<QWidget*>(nullptr));
    somme->addRow("Importo", lblImportoTutti);
    somme->addRow("Pagato", lblIncassatoTutti);
    somme->addRow("Da pagare", lblDaIncassareTutti);
    auto* colonna = new QVBoxLayout;
    colonna->addLayout(somme);
    colonna->addStretch(1);
    l->addLayout(colonna);
    return pagina;
}

QWidget* frmSpese::schedaFile() {
    auto* pagina = new QWidget(this);
    auto* l = new QHBoxLayout(pagina);
    Text1 = new QLineEdit(pagina);
    Text1->setObjectName("Text1");
    Text1->setReadOnly(true);
    btnFile = new QPushButton("Apri &file", pagina);
    btnFile->setObjectName("btnFile");
    l->addWidget(Text1, 1);
    l->addWidget(btnFile, 0, Qt::AlignTop);
    connect(btnFile, &QPushButton::clicked, this, [this] { ui::protetto([this] { ApriFile(); }); });
    return pagina;
}

void frmSpese::TabCambiata() {
    if (sTab->currentIndex() != 2) return;
    CalcolaResoconto();
    CalcolaResocontoSpese();
}

void frmSpese::DopoCambioRiga() {
    const long id = Grid->haRigaCorrente() ? Grid->idCorrente() : 0;
    GridScadenze->Carica(id);
    GridPagamenti->Carica(id);
    txtNote->setPlainText(Q(store::ConcatText(Grid->valore("Note"))));
    Text1->setText(Q(store::ConcatText(Grid->valore("File"))));
    if (sTab->currentIndex() == 2) CalcolaResoconto();
}

void frmSpese::CalcolaResoconto() {
    lblIncassato->clear();
    lblDaIncassare->clear();
    if (!Grid->haRigaCorrente()) return;
    auto rs = core::Apri("Select * from qrSpesePagamenti where ID=" + Id(Grid->idCorrente()));
    if (rs->Eof()) return;
    lblIncassato->setText(Importo(core::NumeroOZero(rs->get("ImportoPagato"))));
    lblDaIncassare->setText(Importo(core::NumeroOZero(rs->get("DaPagare"))));
}

void frmSpese::CalcolaResocontoSpese() {
    const expenses::ResocontoSpese r = expenses::CalcolaResocontoSpese(Criteri);
    lblImportoTutti->setText(Importo(r.importo));
    lblIncassatoTutti->setText(Importo(r.pagato));
    lblDaIncassareTutti->setText(Importo(r.daPagare));
}

void frmSpese::CercaSpese() {
    frmSpeseCerca cerca(Criteri, this);
    const auto criteri = cerca.Cerca();
    if (!criteri) return;
    Criteri = *criteri;
    Grid->setSorgente(expenses::IstruzioneRicercaSpese(Criteri));
    Grid->Aggiorna();
    if (sTab->currentIndex() == 2) CalcolaResocontoSpese();
}

void frmSpese::SelezionaTutto() {
    Criteri = expenses::CriteriSpese{};
    txtCerca->clear();
    Grid->setSorgente(SorgenteBase);
    Grid->Aggiorna();
    if (sTab->currentIndex() == 2) CalcolaResocontoSpese();
}

// The two guards compare the platform's True (-1) with "greater than zero", so they never stop the
// command. The generation screen reads the expense's id among the documents.
void frmSpese::GeneraScadenze() {
    if (!Grid->haRigaCorrente()) return;
    const long id = Grid->idCorrente();
    if (payments::SpesaConScadenzeAperte(id) > 0) {
        core::MsgBox("Impossibile generare scadenze più di una volta! Eliminare prima quelle esistenti.", core::vbExclamation);
        return;
    }
    if (payments::SpesaConPagamenti(id) > 0) {
        core::MsgBox("Impossibile generare scadenze se sono già stati emessi dei pagamenti!", core::vbExclamation);
        return;
    }
    payments::MostraGeneraScadenze(id);
    GridScadenze->Carica(id);
}

// A new instalment on the expense in front; a change only of an instalment with no payment.
std::optional<long> frmSpese::spesaPerScadenza(bool nuova) {
    if (!Grid->haRigaCorrente()) return 0;
    if (!nuova) {
        const std::string rifiuto = sales::RifiutoModificaScadenza(GridScadenze->griglia()->idCorrente());
        if (!rifiuto.empty()) {
            core::MsgBox(rifiuto, core::vbExclamation);
            return std::nullopt;
        }
    }
    return Grid->idCorrente();
}

// The payment editors come with the payments screens; until then the commands say so.
std::optional<long> frmSpese::spesaPerPagamento() {
    if (!Grid->haRigaCorrente()) return 0;
    if (core::schermoRegistrato("frmPagamentiSpeseEdita")) return Grid->idCorrente();
    core::MsgBox(expenses::MsgPagamentiNonDisponibili, core::vbInformation);
    return std::nullopt;
}

// A payment saved or deleted: the expense's and its instalment's flags from what is left, then the
// journal rows that lost their payment.
void frmSpese::PagamentiCambiati() {
    const long scadenza = scadenzaDelPagamento_;
    scadenzaDelPagamento_ = 0;
    if (scadenza > 0) payments::AggiornaPagataScadenza(scadenza);
    AggiornaPagata();
    payments::PulisciPrimaNota();
}

void frmSpese::ApriFile() {
    if (!Grid->haRigaCorrente()) return;
    const QString file = Q(store::ConcatText(Grid->valore("File")));
    if (file.isEmpty() || !QFileInfo::exists(file)) return;
    const QUrl url = QUrl::fromLocalFile(file);
    const bool aperto = apriFile ? apriFile(url) : QDesktopServices::openUrl(url);
    if (!aperto) core::MsgBox("Il file non risulta associato ad alcun programma!", core::vbExclamation);
}

bool frmSpese::ConfermaModificaSpesa() {
    if (payments::SpesaLibera(Grid->idCorrente()) != payments::Falso) return true;
    return core::MsgBox("Attenzione! La spesa contiene scadenze o pagamenti, se si apportano modifiche, potrebbe essere "
                        "necessario modificarli. Proseguire?",
                        core::vbYesNo | core::vbQuestion) == core::vbYes;
}

std::optional<Apertura> frmSpese::aperturaPer(ui::Elenco&, Modalita modalita) {
    if (modalita == Modalita::Modifica && (!ConfermaModificaSpesa() || !ui::consentito(core::SpeseModificare)))
        return std::nullopt;
    return Apertura{modalita, 0, Grid};
}



// The question, then the lines, instalments and payments; the grid deletes the row itself.
bool frmSpese::PrimaDiEliminare(long id) {
    const std::string domanda =
        "Eliminare la spesa " + store::ConcatText(Grid->valore("Numero")) + " e tutti i movimenti ad esso associato?";
    if (core::MsgBox(domanda, core::vbYesNo | core::vbQuestion) != core::vbYes) return false;
    expenses::EliminaRigheSpesa(id);
    return true;
}

// The journal rows of the payments that went with the expense.
void frmSpese::DopoEliminato(long) {
    payments::PulisciPrimaNota();
    if (sTab->currentIndex() == 2) CalcolaResocontoSpese();
    btnElimina->setFocus();
}

// The flags are written on the tables, so the list reads its rows again, staying on the expense.
void frmSpese::AggiornaPagata() {
    if (!Grid->haRigaCorrente()) return;
    payments::AggiornaPagataSpesa(Grid->idCorrente());
    if (GridScadenze->griglia()->haRigaCorrente()) payments::AggiornaPagataScadenza(GridScadenze->griglia()->idCorrente());
    Grid->Aggiorna();
    if (sTab->currentIndex() == 2) TabCambiata();
}

void frmSpese::DopoSalvato(long) { AggiornaPagata(); }

void frmSpese::DopoRigheCambiate() {
    if (!Grid->haRigaCorrente()) return;
    expenses::CalcolaTotaliSpesa(Grid->idCorrente(), Grid->Recordset());
    AggiornaPagata();
}
