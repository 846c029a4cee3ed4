#include "sales/screens/frmDocAssistenzeEdita.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>

#include "core/campi.h"
#include "core/dialogs.h"
#include "core/documenti.h"
#include "core/impostazioni.h"
#include "sales/totali.h"
#include "sales/visite.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Elenco.h"
#include "ui/Stile.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"
#include "ui/VetraPicker.h"

namespace {

const core::TabellaCampi& CampiVisite() {
    static const core::TabellaCampi t{
        {"DescServizio", "s39", 2000},
        {"Data", "s84", 1300, "dd/mm/yyyy"},
        {"OraInizio", "Inizio", 900, "hh:nn"},
        {"OraFine", "Fine", 900, "hh:nn"},
        {"TempoIntervento", "Durata(Min)", 1200, "", core::Allineamento::Destra},
        {"Km", "Km", 700, "", core::Allineamento::Destra},
    };
    return t;
}

ui::VetraPicker* periodo(const char* nome, const char* campo, QWidget* parent) {
    auto* p = new ui::VetraPicker(parent);
    p->setObjectName(nome);
    p->setDataField(campo);
    return p;
}

ui::VText* tariffa(const char* nome, const char* testo, QWidget* parent) {
    auto* t = new ui::VText(parent);
    t->setObjectName(nome);
    t->setNumerico(true);
    t->setPuntoDecimale(true);
    t->setText(testo);
    t->setMaximumWidth(80);
    return t;
}

// A date of the period as the statement reads it: blank, or no date, is the empty sentinel.
std::string dataDi(const ui::VetraPicker* p) {
    const store::Value v = p->valore();
    return v.isNull() ? std::string() : store::ShortDate(store::CDate(v));
}

// Several controls on one row; each after the first gets its caption in front.
QWidget* riga(QWidget* parent, std::initializer_list<std::pair<const char*, QWidget*>> controlli) {
    auto* w = new QWidget(parent);
    auto* l = new QHBoxLayout(w);
    l->setContentsMargins(0, 0, 0, 0);
    l->setSpacing(ui::Spaziatura);
    for (const auto& [didascalia, c] : controlli) {
        if (*didascalia) {
            auto* e = new QLabel(didascalia, w);
            e->setBuddy(c);
            l->addWidget(e);
        }
        l->addWidget(c);
    }
    l->addStretch(1);
    return w;
}

}  // namespace

frmDocAssistenzeEdita::frmDocAssistenzeEdita(QWidget* parent, long tipo)
    : frmDocumentiEditaBase(Nome, false, tipo != 0 ? tipo : core::TipoFatturaEmessa, parent),
      pkDal(periodo("pkDal", "DataDal", this)),
      pkAl(periodo("pkAl", "DataAl", this)),
      txtCostoOra(tariffa("txtCostoOra", "15", this)),
      txtCostoKm(tariffa("txtCostoKm", "0,20", this)),
      cbIva(new ui::VetraCombo(this)),
      GridAssistenze(new ui::VetraGrid(this)) {
    // The date is not held to the current Esercizio: visits of a closed period may still be charged.
    controllaEsercizio_ = false;
    // Packages, the withholding's due date and the statement flag are not part of this document.
    for (QWidget* w : std::initializer_list<QWidget*>{VText3, VetraPicker1, Check1}) {
        w->setProperty("DataField", QVariant());
        campi()->setRowVisible(w, false);
    }

    cbIva->setObjectName("cbIva");
    cbIva->setSorgente("Select * from CodiciIva order by DescIva");
    cbIva->setCampoTesto("DescIva");
    cbIva->setColonne({{"DescIva", core::Testo("s77"), 1500}, {"AliquotaIva", core::Testo("s190"), 1000}});
    ui::protetto([this] { cbIva->Aggiorna(); });

    GridAssistenze->setObjectName("GridAssistenze");
    for (const core::Campo& c : CampiVisite().tutti()) GridAssistenze->aggiungiColonna(ui::ColonnaDa(c));
    GridAssistenze->setOrdinamento("Data");
    GridAssistenze->setMinimumHeight(150);

    auto* fmPeriodo = riga(this, {{"", pkDal}, {"A&l", pkAl}});
    auto* fmTariffe = riga(this, {{"", txtCostoOra}, {"Costo &Km", txtCostoKm}, {"&Iva", cbIva}});
    fmPeriodo->setFocusProxy(pkDal);
    fmTariffe->setFocusProxy(txtCostoOra);
    campi()->insertRow(0, "Periodo &dal", fmPeriodo);
    campi()->insertRow(1, "Costo &ora", fmTariffe);
    campi()->addRow(GridAssistenze);
    setMinimumWidth(720);
    // The period and the rates first, then the document as its editor orders it.
    const std::vector<QWidget*> ordine{pkDal,    pkAl,       txtCostoOra, txtCostoKm, cbIva,       cbPrefisso,
                                       txtNum,   cbSuffisso, pkData,      pkDataReg,  cbClienti,   cbPagamento,
                                       txtSconto1, txtSconto2, txtSconto3, txtSconto4, VText1,     VText2,
                                       Text1,    GridAssistenze};
    for (size_t i = 1; i < ordine.size(); ++i) setTabOrder(ordine[i - 1], ordine[i]);

    auto rileggi = [this] { ui::protetto([this] { CaricaAssistenze(); }); };
    connect(cbClienti, &ui::VetraCombo::valoreCambiato, this, rileggi);
    connect(pkDal, &ui::VetraPicker::cambiato, this, rileggi);
    connect(pkAl, &ui::VetraPicker::cambiato, this, rileggi);
}

void frmDocAssistenzeEdita::CaricaAssistenze() {
    GridAssistenze->setSorgente(sales::SorgenteVisitePeriodo(ui::IdDi(cbClienti->valore()), dataDi(pkDal), dataDi(pkAl)));
    GridAssistenze->Aggiorna();
}

void frmDocAssistenzeEdita::DopoCarica() {
    frmDocumentiEditaBase::DopoCarica();
    generare_ = nuovo();
    if (apertura().modalita == Modalita::Nuovo) {
        // The month so far; a customer handed by the caller comes with its terms and discount.
        const double oggi = store::Oggi();
        const store::DateParts g = store::SplitDate(oggi);
        pkDal->setValore(store::Value::Date(store::DateSerial(g.year, g.month, 1)));
        pkAl->setValore(store::Value::Date(oggi));
        if (apertura().idPadre != 0)
            cbClienti->setValore(store::Value::Long(static_cast<std::int32_t>(apertura().idPadre)));
    }
    // A fattura made keeps its lines: its period and rates no longer apply.
    for (QWidget* w : std::initializer_list<QWidget*>{pkDal, pkAl, txtCostoOra, txtCostoKm}) w->setEnabled(generare_);
    CaricaAssistenze();
}

bool frmDocAssistenzeEdita::Valida() {
    if (generare_) {
        auto avvisa = [](const std::string& testo, QWidget* dove) {
            core::MsgBox(testo, core::vbExclamation);
            dove->setFocus();
            return false;
        };
        for (ui::VetraPicker* p : {pkDal, pkAl})
            if (!p->vuoto() && !p->dataValida()) return avvisa(core::Testo("s81"), p->casella());
        if (!pkDal->vuoto() && !pkAl->vuoto() && store::CDate(pkAl->valore()) < store::CDate(pkDal->valore()))
            return avvisa("La data finale del periodo è precedente alla data iniziale!", pkAl->casella());
        const std::optional<double> ora = sales::LeggiTariffa(txtCostoOra->text().toStdString());
        if (!ora) return avvisa("Il costo orario non è un numero valido!", txtCostoOra);
        const std::optional<double> km = sales::LeggiTariffa(txtCostoKm->text().toStdString());
        if (!km) return avvisa("Il costo al chilometro non è un numero valido!", txtCostoKm);
        tariffe_ = {*ora, *km, ui::IdDi(cbIva->valore())};
        CaricaAssistenze();
        const std::vector<sales::Visita> visite = sales::LeggiVisite(GridAssistenze->istruzione());
        if (!visite.empty() && tariffe_.iva == 0) return avvisa("Inserire il codice iva !", cbIva);
        const auto gia = sales::VisiteGiaFatturate(ui::IdDi(cbClienti->valore()), tipo(), visite, id());
        if (!gia.empty()) return avvisa(sales::MessaggioGiaFatturate(gia), pkDal->casella());
    }
    return frmDocumentiEditaBase::Valida();
}

// A new fattura gets the lines of the visits the list shows, and then its totals.
void frmDocAssistenzeEdita::DopoSalvato(long id) {
    if (!generare_) {
        frmDocumentiEditaBase::DopoSalvato(id);
        return;
    }
    generare_ = false;
    sales::GeneraRigheVisite(id, sales::LeggiVisite(GridAssistenze->istruzione()), tariffe_);
}
