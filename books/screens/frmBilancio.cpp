#include "books/screens/frmBilancio.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QValueAxis>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

#include "core/archivio_sql.h"
#include "core/calendario.h"
#include "core/esercizio.h"
#include "core/impostazioni.h"
#include "core/stampa.h"
#include "store/clock.h"
#include "store/convert.h"
#include "store/format.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraPicker.h"

namespace {

QString T(const char* chiave) { return QString::fromStdString(core::Testo(chiave)); }

std::string Importo(double v) { return store::Format(store::Value::Double(v), "#,0.00"); }

QLabel* Cifra(const char* nome, QWidget* parent) {
    auto* l = new QLabel("0,00", parent);
    l->setObjectName(nome);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    l->setMinimumWidth(130);
    l->setFrameShape(QFrame::StyledPanel);
    l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return l;
}

const char* const kMesi[] = {"Gennaio", "Febbraio", "Marzo",     "Aprile",  "Maggio",   "Giugno",
                             "Luglio",  "Agosto",   "Settembre", "Ottobre", "Novembre", "Dicembre"};

}  // namespace

frmBilancio::frmBilancio(QWidget* parent) : QDialog(parent) {
    setObjectName(Nome);
    setWindowTitle(T("s128"));
    setWindowIcon(ui::icona("x-office-presentation"));
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);

    // The period: a month of this year, or the start of the period to today.
    auto* periodo = new QHBoxLayout;
    cbMese = new QComboBox(this);
    cbMese->setObjectName("cbMese");
    cbMese->addItem("Dall'inizio dell'esercizio");
    for (const char* m : kMesi) cbMese->addItem(m);
    pkDataDal = new ui::VetraPicker(this);
    pkDataDal->setObjectName("pkDataDal");
    pkDataAl = new ui::VetraPicker(this);
    pkDataAl->setObjectName("pkDataAl");
    const std::pair<QString, QWidget*> campi[] = {{"&" + T("s114"), cbMese}, {"&" + T("s115"), pkDataDal}, {"&" + T("s116"), pkDataAl}};
    for (const auto& [testo, campo] : campi) {
        auto* etichetta = new QLabel(testo, this);
        etichetta->setBuddy(campo);
        periodo->addWidget(etichetta);
        periodo->addWidget(campo);
    }
    periodo->addStretch(1);
    colonna->addLayout(periodo);

    // The figures: one row per kind, taxable amount and VAT apart where there are both.
    auto* riquadro = new QGroupBox(this);
    auto* g = new QGridLayout(riquadro);
    lblSpese = Cifra("lblSpese", riquadro);
    lblIvaSpese = Cifra("lblIvaSpese", riquadro);
    lblVendite = Cifra("lblVendite", riquadro);
    lblIvaVendite = Cifra("lblIvaVendite", riquadro);
    lblPagamenti = Cifra("lblPagamenti", riquadro);
    lblIncassi = Cifra("lblIncassi", riquadro);
    lblImponibile = Cifra("lblImponibile", riquadro);
    lblIva = Cifra("lblIva", riquadro);
    lblSaldoFuoriCassa = Cifra("lblSaldoFuoriCassa", riquadro);
    lblSaldoInCassa = Cifra("lblSaldoInCassa", riquadro);
    auto titolo = [riquadro](const QString& testo, bool grassetto = false) {
        auto* l = new QLabel(testo, riquadro);
        if (grassetto) l->setStyleSheet("font-weight: bold");
        return l;
    };
    g->addWidget(titolo(T("s123"), true), 0, 1, Qt::AlignRight);
    g->addWidget(titolo(T("s124"), true), 0, 2, Qt::AlignRight);
    g->addWidget(titolo("Totale", true), 0, 3, Qt::AlignRight);
    g->addWidget(titolo(T("s117")), 1, 0);
    g->addWidget(lblSpese, 1, 1);
    g->addWidget(lblIvaSpese, 1, 2);
    g->addWidget(titolo(T("s119")), 2, 0);
    g->addWidget(lblVendite, 2, 1);
    g->addWidget(lblIvaVendite, 2, 2);
    g->addWidget(titolo(T("s121"), true), 3, 0);
    g->addWidget(lblImponibile, 3, 1);
    g->addWidget(lblIva, 3, 2);
    g->addWidget(lblSaldoFuoriCassa, 3, 3);
    g->addWidget(titolo(T("s118")), 4, 0);
    g->addWidget(lblPagamenti, 4, 3);
    g->addWidget(titolo(T("s120")), 5, 0);
    g->addWidget(lblIncassi, 5, 3);
    g->addWidget(titolo(T("s122"), true), 6, 0);
    g->addWidget(lblSaldoInCassa, 6, 3);
    g->setColumnStretch(0, 1);
    colonna->addWidget(riquadro);

    grafico = new QChartView(this);
    grafico->setObjectName("grafico");
    grafico->setRenderHint(QPainter::Antialiasing);
    grafico->setMinimumHeight(280);
    colonna->addWidget(grafico, 1);

    auto* pulsanti = new QHBoxLayout;
    btnStampa = ui::comando("btnStampa", "&Stampa", this);
    btnConferma = ui::comando("btnConferma", "&Chiudi", this);
    btnConferma->setIcon(ui::iconaComando("btnChiudi"));
    pulsanti->addStretch(1);
    pulsanti->addWidget(btnStampa);
    pulsanti->addWidget(btnConferma);
    colonna->addLayout(pulsanti);

    connect(cbMese, &QComboBox::currentIndexChanged, this, [this] { ui::protetto([this] { CambioMese(); }); });
    connect(pkDataDal, &ui::VetraPicker::cambiato, this, [this] { ui::protetto([this] { CambioData(); }); });
    connect(pkDataAl, &ui::VetraPicker::cambiato, this, [this] { ui::protetto([this] { CambioData(); }); });
    connect(btnStampa, &QPushButton::clicked, this, [this] { ui::protetto([this] { Stampa(); }); });
    connect(btnConferma, &QPushButton::clicked, this, [this] { accept(); });

    resize(760, 720);
    ui::protetto([this] { CambioMese(); });
    // The chart is the period's and does not follow the dates; on a large archive its twelve months
    // cost more than the figures, so it is drawn once the figures are on screen.
    QTimer::singleShot(0, this, [this] { ui::protetto([this] { DisegnaPeriodo(); }); });
}

// Runs a change unless another is under way: setting the dates from the month must not run the
// figures once per date.
void frmBilancio::SenzaRientro(const std::function<void()>& cambio) {
    if (Aggiornando) return;
    Aggiornando = true;
    struct Fine {
        bool& f;
        ~Fine() { f = false; }
    } fine{Aggiornando};
    cambio();
}

void frmBilancio::CambioMese() {
    SenzaRientro([this] {
        const int i = cbMese->currentIndex();
        if (i <= 0) {
            pkDataDal->setValore(store::Value::Date(core::DataInizioEsercizio()));
            pkDataAl->setValore(store::Value::Date(store::Oggi()));
        } else {
            const int anno = std::stoi(store::Format(store::Value::Date(store::Oggi()), "yyyy"));
            pkDataDal->setValore(store::Value::Date(store::DateSerial(anno, i, 1)));
            pkDataAl->setValore(store::Value::Date(store::DateSerial(anno, i, core::GiorniMese(i, anno))));
        }
        AggiornaBilancio();
    });
}

void frmBilancio::CambioData() {
    SenzaRientro([this] { AggiornaBilancio(); });
}

// A date still being typed is no period yet: the figures stay as they were until it is whole.
void frmBilancio::AggiornaBilancio() {
    if (!pkDataDal->dataValida() || !pkDataAl->dataValida()) return;
    core::CursoreOccupato occupato;
    const double dal = store::DateValue(pkDataDal->valore());
    const double al = store::DateValue(pkDataAl->valore());
    const books::FigureBilancio f = books::CalcolaBilancio(dal, al);
    const std::pair<QLabel*, double> cifre[] = {
        {lblSpese, f.spese},         {lblIvaSpese, f.ivaSpese},  {lblVendite, f.vendite},
        {lblIvaVendite, f.ivaVendite}, {lblPagamenti, f.pagamenti}, {lblIncassi, f.incassi},
        {lblImponibile, f.imponibile}, {lblIva, f.iva},         {lblSaldoFuoriCassa, f.saldoFuoriCassa},
        {lblSaldoInCassa, f.saldoInCassa}};
    for (const auto& [etichetta, valore] : cifre) etichetta->setText(QString::fromStdString(Importo(valore)));
}

void frmBilancio::DisegnaPeriodo() {
    core::CursoreOccupato occupato;
    Disegna(books::MesiBilancio(core::DataInizioEsercizio()));
}

// Four bars a month: what was registered and what moved, in and out, each from the same routine
// as the figures above.
void frmBilancio::Disegna(const std::vector<books::MeseBilancio>& mesi) {
    auto* serie = new QBarSeries;
    const std::pair<const char*, QColor> insiemi[] = {{"Entrate registrate", QColor(46, 125, 50)},
                                                      {"Entrate incassate", QColor(129, 199, 132)},
                                                      {"Uscite registrate", QColor(198, 40, 40)},
                                                      {"Uscite pagate", QColor(239, 154, 154)}};
    QBarSet* barre[4];
    for (int i = 0; i < 4; ++i) {
        barre[i] = new QBarSet(insiemi[i].first);
        barre[i]->setColor(insiemi[i].second);
        barre[i]->setBorderColor(insiemi[i].second);
    }
    QStringList etichette;
    double massimo = 0;
    for (const auto& m : mesi) {
        const double v[4] = {m.figure.entrateRegistrate(), m.figure.incassi, m.figure.usciteRegistrate(),
                             m.figure.pagamenti};
        for (int i = 0; i < 4; ++i) {
            *barre[i] << v[i];
            massimo = std::max(massimo, v[i]);
        }
        etichette << QString::fromStdString(store::MonthName(m.mese, true));
    }
    for (auto* b : barre) serie->append(b);
    auto* chart = new QChart;
    chart->addSeries(serie);
    if (!mesi.empty())
        chart->setTitle(QString::fromStdString("Andamento mensile da " + store::MonthName(mesi.front().mese) + " " +
                                               std::to_string(mesi.front().anno)));
    auto* asseX = new QBarCategoryAxis;
    asseX->append(etichette);
    chart->addAxis(asseX, Qt::AlignBottom);
    serie->attachAxis(asseX);
    auto* asseY = new QValueAxis;
    asseY->setLabelFormat("%.0f");
    asseY->setMin(0);
    asseY->setMax(massimo > 0 ? massimo * 1.1 : 1);
    asseY->applyNiceNumbers();  // round steps on the amounts' axis
    chart->addAxis(asseY, Qt::AlignLeft);
    serie->attachAxis(asseY);
    chart->legend()->setAlignment(Qt::AlignBottom);
    QChart* vecchio = grafico->chart();
    grafico->setChart(chart);
    delete vecchio;
}

void frmBilancio::Stampa() {
    core::RichiestaStampa r;
    r.sezione = "Bilancio";
    auto& p = r.parametri;
    p.Add("Periodo", "Periodo",
          books::PeriodoBilancio(core::Testo("s115"), pkDataDal->testo(), pkDataAl->testo()));
    const std::pair<const char*, QLabel*> cifre[] = {
        {"UsciteFuoriCassaImponibile", lblSpese},     {"UsciteFuoriCassaIva", lblIvaSpese},
        {"EntrateFuoriCassaImponibile", lblVendite},  {"EntrateFuoriCassaIva", lblIvaVendite},
        {"UsciteInCassa", lblPagamenti},              {"EntrateInCassa", lblIncassi},
        {"SaldoFuoriCassaImponibile", lblImponibile}, {"SaldoFuoriCassaIva", lblIva},
        {"SaldoFuoriCassaTotale", lblSaldoFuoriCassa}, {"SaldoInCassa", lblSaldoInCassa}};
    for (const auto& [nome, etichetta] : cifre) p.Add(nome, nome, etichetta->text().toStdString());
    core::Stampa(r);
}
