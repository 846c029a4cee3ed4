#include "payments/screens/frmCondizioniPagamento.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>

#include "core/impostazioni.h"
#include "payments/condizioni.h"
#include "store/convert.h"
#include "ui/Stile.h"
#include "ui/VBars.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

// "Rata 1/12" ... "Rata 12/12".
std::string TitoloRata(int n) { return core::Testo("s198") + " " + std::to_string(n) + "/12"; }
std::string CampoRata(int n) { return "Rata" + std::to_string(n); }

constexpr const char* FineMese = "Pagamento fine mese";

}  // namespace

frmCondizioniPagamento::frmCondizioniPagamento(QWidget* parent)
    : RegistroBase(Nome, parent), Check1(new QCheckBox(Q(FineMese), this)) {
    costruisciPannello();
    Definizione d;
    d.titolo = "s12";
    d.sorgente = "Select * from CondizioniPagamento";
    d.ordinamento = "DescPagamento";
    d.campi = &payments::CampiCondizioniPagamento();
    d.colonne = {"DescPagamento", "Rate"};
    d.ricerca = {"DescPagamento"};
    d.guardia = ui::Guardia{"CondizioniPagamento", {{"Clienti", "s10"}, {"Documenti", "s148"}, {"Spese", "s29"}}};
    d.domandaElimina = [](store::Recordset& rs) {
        return core::Testo("s196") + " " + store::ConcatText(rs.get("DescPagamento")) + "?";
    };
    d.ricaricaDopoElimina = true;
    d.editor = [](QWidget* parent) { return std::make_unique<frmCondizioniPagamentoEdita>(parent); };
    carica(std::move(d));
    resize(860, 560);
}

void frmCondizioniPagamento::costruisciPannello() {
    ui::VBars* p = aggiungiPannello();
    int generale = p->aggiungiGruppo(core::Testo("s142"));
    for (const char* campo : {"DescPagamento", "Rate"}) {
        const core::Campo& c = payments::CampiCondizioniPagamento()[campo];
        p->aggiungiCampo(generale, c.nome, core::Didascalia(c.didascalia));
    }
    // The box only shows the row: the panel is no place to change it.
    Check1->setObjectName("Check1");
    Check1->setProperty("DataField", "FineMese");
    Check1->setAttribute(Qt::WA_TransparentForMouseEvents);
    Check1->setFocusPolicy(Qt::NoFocus);
    p->aggiungiControllo(generale, {}, Check1);
    Grid->aggiungiSeguace(Check1);
    int rate = p->aggiungiGruppo("Giorni per rata");
    for (int n = 1; n <= payments::MassimoRate; ++n) p->aggiungiCampo(rate, CampoRata(n), TitoloRata(n));
}

frmCondizioniPagamentoEdita::frmCondizioniPagamentoEdita(QWidget* parent)
    : EditorBase(Nome, "CondizioniPagamento", core::Testo("s12"), parent),
      VText1(new ui::VText(this)),
      txtRate(new ui::VText(this)),
      Check1(new QCheckBox(Q(FineMese), this)) {
    const core::TabellaCampi& condizioni = payments::CampiCondizioniPagamento();
    VText1->setObjectName("VText1");
    aggiungiCampo(condizioni["DescPagamento"], VText1);

    txtRate->setObjectName("txtRate");
    txtRate->setDataField("Rate");
    txtRate->setNumerico(true);
    txtRate->setCaratteriAmmessi("0123456789");
    txtRate->setPredefinito("0");
    txtRate->setMaximumWidth(80);
    Check1->setObjectName("Check1");
    Check1->setProperty("DataField", "FineMese");
    auto* riga = new QWidget(this);
    auto* rigaLayout = new QHBoxLayout(riga);
    rigaLayout->setContentsMargins(0, 0, 0, 0);
    rigaLayout->setSpacing(ui::Spaziatura * 3);
    rigaLayout->addWidget(txtRate);
    rigaLayout->addWidget(Check1);
    rigaLayout->addStretch(1);
    aggiungiCampo(Q(core::Didascalia(condizioni["Rate"].didascalia)), riga);

    // Two columns of six instalments, each headed "Rata" and "A giorni".
    auto* giorni = new QGroupBox("Giorni per rata", this);
    auto* tabella = new QGridLayout(giorni);
    tabella->setHorizontalSpacing(ui::Spaziatura * 2);
    tabella->setVerticalSpacing(ui::Spaziatura);
    for (int blocco = 0; blocco < 2; ++blocco) {
        tabella->addWidget(new QLabel("<b>Rata</b>", giorni), 0, blocco * 2);
        tabella->addWidget(new QLabel("<b>A giorni</b>", giorni), 0, blocco * 2 + 1);
    }
    for (int i = 0; i < payments::MassimoRate; ++i) {
        auto* box = new ui::VText(giorni);
        box->setObjectName(QString("txtRata%1").arg(i));
        box->setDataField(CampoRata(i + 1));
        box->setNumerico(true);
        box->setCaratteriAmmessi("0123456789");
        box->setPredefinito("0");
        txtRata[static_cast<size_t>(i)] = box;
        int riga = 1 + i % 6;
        int colonna = (i / 6) * 2;
        tabella->addWidget(new QLabel(QString::number(i + 1), giorni), riga, colonna);
        tabella->addWidget(box, riga, colonna + 1);
    }
    campi()->addRow(giorni);
    connect(txtRate, &QLineEdit::textChanged, this, &frmCondizioniPagamentoEdita::AbilitaRate);
    AbilitaRate();
}

void frmCondizioniPagamentoEdita::AbilitaRate() {
    payments::RateDigitate r = payments::LeggiRate(txtRate->testo());
    if (r.corretto) {
        txtRate->setText(QString::number(payments::MassimoRate));   // comes back here with 12
        return;
    }
    for (int n = 1; n <= payments::MassimoRate; ++n) {
        ui::VText* box = txtRata[static_cast<size_t>(n - 1)];
        bool attiva = payments::RataAttiva(n, r.rate);
        box->setEnabled(attiva);
        if (!attiva) box->setText("0");
    }
}

void frmCondizioniPagamentoEdita::DopoCarica() { AbilitaRate(); }

bool frmCondizioniPagamentoEdita::Valida() { return richiesto(VText1, "s140"); }
