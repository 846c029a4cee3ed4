#include "books/screens/frmPrimaNota.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "books/screens/frmPrimaNotaCerca.h"
#include "books/screens/frmPrimaNotaEdita.h"
#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/diritti.h"
#include "core/esporta_excel.h"
#include "core/esportazione.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "store/clock.h"
#include "store/convert.h"
#include "store/format.h"
#include "ui/Cifra.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraGrid.h"

namespace {

QString Importo(double v) { return QString::fromStdString(store::Format(store::Value::Double(v), "#,0.00")); }

using ui::cifra;

}  // namespace

frmPrimaNota::frmPrimaNota(QWidget* parent) : RegistroBase(Nome, parent) {
    cbDest = new QComboBox(this);
    cbDest->setObjectName("cbDest");
    for (const std::string& d : books::Destinazioni()) cbDest->addItem(QString::fromStdString(d));
    cbDest->setCurrentIndex(0);
    Periodo = books::PeriodoMese(store::Oggi());

    Definizione d;
    d.titolo = "Prima Nota";
    d.sorgente = books::SorgenteMese(0, store::Oggi());
    d.ordinamento = "Data, ID";
    d.campi = &books::CampiPrimaNota();
    d.colonne = {"Data", "Descrizione", "TipoPagamento", "Entrate", "Uscite", "CC"};
    d.ricerca = {"Descrizione", "TipoPagamento", "CC"};
    // Money in and money out apart at a glance.
    auto tipo = [](long t) { return [t](const store::Value& v) { return !v.isNull() && store::CLng(v) == t; }; };
    d.colori = {{"Tipo", tipo(0), QColor(0, 100, 0), QColor()}, {"Tipo", tipo(1), QColor(160, 0, 0), QColor()}};
    d.diritti = {core::PrimaNotaVedere, core::DocumentiModificare, core::DocumentiModificare,
                 core::DocumentiModificare, core::DocumentiModificare};
    d.editor = [this](QWidget* p) { return std::make_unique<frmPrimaNotaEdita>(p, destinazione()); };
    d.domandaElimina = [](store::Recordset&) { return std::string("Eliminare la voce di prima nota selezionata?"); };

    // The destination and the period above the list; the four figures and the running balance below.
    lblStatus = new QLabel(this);
    lblStatus->setObjectName("lblStatus");
    QFont grassetto = lblStatus->font();
    grassetto.setBold(true);
    lblStatus->setFont(grassetto);
    auto* lblDest = new QLabel("&Destinazione", this);
    lblDest->setBuddy(cbDest);
    auto* sopra = new QHBoxLayout;
    sopra->addWidget(lblDest);
    sopra->addWidget(cbDest);
    sopra->addSpacing(ui::Spaziatura * 2);
    sopra->addWidget(lblStatus, 1);
    auto* colonna = static_cast<QVBoxLayout*>(layout());
    colonna->insertLayout(0, sopra);

    lblSaldoPrecedente = cifra("lblSaldoPrecedente", this);
    lblTotEntrate = cifra("lblTotEntrate", this);
    lblTotUscite = cifra("lblTotUscite", this);
    lblSaldoAttuale = cifra("lblSaldoAttuale", this);
    lblSaldoRiga = cifra("lblSaldoRiga", this);
    lblSaldoAttuale->setFont(grassetto);
    auto* cifre = new QGridLayout;
    cifre->setHorizontalSpacing(ui::Spaziatura);
    const std::pair<const char*, QLabel*> voci[] = {{"Saldo precedente", lblSaldoPrecedente},
                                                    {"Totale entrate", lblTotEntrate},
                                                    {"Totale uscite", lblTotUscite},
                                                    {"Saldo attuale", lblSaldoAttuale},
                                                    {"Saldo alla riga", lblSaldoRiga}};
    int c = 0;
    for (const auto& [testo, etichetta] : voci) {
        cifre->addWidget(ui::didascalia(testo, this), 0, c);
        cifre->addWidget(etichetta, 1, c++);
    }
    cifre->setColumnStretch(c, 1);
    colonna->insertLayout(3, cifre);

    btnNuovo->setText("&Nuova");
    aggiungiComando("btnStampa", "&Stampa", core::DocumentiModificare, [this] { StampaRegistro(); })
        ->setIcon(ui::icona("document-print"));
    aggiungiComando("btnExcel", "&Excel", core::DocumentiModificare, [this] { Excel(); })
        ->setIcon(ui::icona("x-office-spreadsheet"));
    aggiungiComando("imgCerca", "Ricerc&a... (F3)", 0, [this] { CercaPrimaNota(); })->setIcon(ui::icona("edit-find"));
    aggiungiComando("Command1", "Seleziona &tutto", 0, [this] { RicaricaTutto(); });
    connect(cbDest, &QComboBox::currentIndexChanged, this, [this] { ui::protetto([this] { CambiaDestinazione(); }); });
    // The figures follow the rows the list holds, after a reload, a save or a delete alike.
    connect(Grid->model(), &QAbstractItemModel::modelReset, this, [this] { ui::protetto([this] { RefResoconto(); }); });
    resize(1100, 640);
    carica(std::move(d));
    // The journal's own export (btnExcel) stands for the one every register has.
    if (auto* b = findChild<QPushButton*>("btnEsportaExcel")) b->hide();
}

long frmPrimaNota::destinazione() const { return cbDest->currentIndex() < 0 ? 0 : cbDest->currentIndex(); }

void frmPrimaNota::caricaIstruzione(const std::string& sql) {
    Grid->setSorgente(sql);
    Grid->Aggiorna();   // the figures follow through the model's reset
}

void frmPrimaNota::CambiaDestinazione() {
    ModoFiltro = 2;
    Periodo = books::PeriodoMese(store::Oggi());
    caricaIstruzione(books::SorgenteMese(destinazione(), store::Oggi()));
}

void frmPrimaNota::RicaricaTutto() {
    ModoFiltro = 2;
    Criteri = books::CriteriPrimaNota{};
    Periodo.filtroDal = Periodo.filtroAl = false;
    caricaIstruzione(books::SorgenteDestinazione(destinazione()));
}

void frmPrimaNota::CercaPrimaNota() {
    frmPrimaNotaCerca cerca(Criteri, this);
    cerca.move(mapToGlobal(QPoint(0, 0)) + QPoint(0, cbDest->geometry().bottom() + ui::Spaziatura));
    const auto criteri = cerca.Cerca();
    if (!criteri) return;
    Criteri = *criteri;
    ModoFiltro = 1;
    Periodo = books::PeriodoRicerca(Criteri);
    caricaIstruzione(books::IstruzioneRicerca(Criteri, destinazione()));
}

void frmPrimaNota::RefResoconto() {
    Resoconto = books::CalcolaResoconto(Grid->sorgente(), Periodo, destinazione());
    lblSaldoPrecedente->setText(Importo(Resoconto.saldoPrecedente));
    lblTotEntrate->setText(Importo(Resoconto.totEntrate));
    lblTotUscite->setText(Importo(Resoconto.totUscite));
    lblSaldoAttuale->setText(Importo(Resoconto.saldoAttuale));
    RefStatus();
    DopoCambioRiga();
}

void frmPrimaNota::RefStatus() { lblStatus->setText(QString::fromStdString(books::TestoStato(destinazione(), Periodo))); }

void frmPrimaNota::DopoCambioRiga() {
    if (!Grid->haRigaCorrente()) {
        lblSaldoRiga->clear();
        return;
    }
    const double saldo = books::SaldoAllaRiga(Grid->sorgente(), Resoconto.saldoPrecedente,
                                              store::CDate(Grid->valore("Data")), Grid->idCorrente());
    lblSaldoRiga->setText(Importo(saldo));
}

bool frmPrimaNota::PrimaDiEliminare(long) {
    const auto motivo = books::MotivoNonEliminabile(static_cast<long>(core::NumeroOZero(Grid->valore("Pagamento"))),
                                                    static_cast<long>(core::NumeroOZero(Grid->valore("Tipo"))));
    if (!motivo) return true;
    core::MsgBox(*motivo, core::vbExclamation);
    return false;
}

void frmPrimaNota::DopoEliminato(long) {
    RefResoconto();
    Grid->setFocus();
}

void frmPrimaNota::DopoSalvato(long) { RefResoconto(); }

void frmPrimaNota::StampaRegistro() {
    std::vector<std::string> campi;
    if (store::Recordset* rs = Grid->Recordset())
        for (int i = 0; i < rs->FieldCount(); ++i) campi.push_back(rs->Fields(i).Name());
    if (campi.empty()) return;
    core::Stampa(books::StampaRegistro(Grid->istruzione(), campi, destinazione(), Periodo, Resoconto));
}

void frmPrimaNota::Excel() {
    const std::vector<std::string> righe = {
        "Saldo precedente: " + Importo(Resoconto.saldoPrecedente).toStdString(),
        "Totale entrate: " + Importo(Resoconto.totEntrate).toStdString(),
        "Totale uscite: " + Importo(Resoconto.totUscite).toStdString(),
        "Saldo attuale: " + Importo(Resoconto.saldoAttuale).toStdString()};
    core::EsportaExcel(books::IstruzioneExcel(Grid->istruzione(), destinazione()), righe, core::ArchivioAperto());
}

bool frmPrimaNota::ApriDalMenu() {
    const int modo = core::ModoSchermo(Nome);
    if (modo == 1 || modo == 2) {
        if (!ui::consentito(core::PrimaNotaVedere)) return false;
        core::Stampa(modo == 1 ? books::StampaPrimaNotaClienti() : books::StampaPrimaNotaFornitori());
        return true;
    }
    auto r = std::make_unique<frmPrimaNota>();
    if (!ui::consentito(r->definizione().diritti.vedere)) return false;
    r->setAttribute(Qt::WA_DeleteOnClose);
    r.release()->show();
    return true;
}

bool frmPrimaNota::PartitaDoppia() {
    if (!ui::consentito(core::PrimaNotaVedere)) return false;
    core::session().PeriodoAl = 0;
    core::MostraModale("frmSelPeriodo");
    const core::Session& s = core::session();
    if (s.PeriodoAl == 0) return false;   // no period chosen: nothing, silently
    std::unique_ptr<core::Avanzamento> avanzamento;
    books::CostruisciPartitaDoppia(s.PeriodoDal, s.PeriodoAl, true, [&avanzamento](long fatti, long totale) {
        if (!avanzamento) avanzamento = core::ApriAvanzamento(core::Testo("s319"), totale);
        avanzamento->Passo(fatti);
    });
    avanzamento.reset();
    core::Stampa(books::StampaPartitaDoppia(s.PeriodoDal, s.PeriodoAl));
    return true;
}
