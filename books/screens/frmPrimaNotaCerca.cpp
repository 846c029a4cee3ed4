#include "books/screens/frmPrimaNotaCerca.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

#include "core/calendario.h"
#include "core/esercizio.h"
#include "store/clock.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VetraPicker.h"

namespace {

const char* const kMesi[] = {"Gennaio", "Febbraio", "Marzo",     "Aprile",  "Maggio",   "Giugno",
                             "Luglio",  "Agosto",   "Settembre", "Ottobre", "Novembre", "Dicembre"};

}  // namespace

frmPrimaNotaCerca::frmPrimaNotaCerca(const books::CriteriPrimaNota& criteri, QWidget* parent)
    : ui::DialogoCerca(Nome, "Ricerca prima nota", "T&rova", parent), criteri_(criteri) {
    cbMese = new QComboBox(this);
    cbMese->setObjectName("cbMese");
    cbMese->addItem("Esercizio fino ad oggi");
    for (const char* m : kMesi) cbMese->addItem(m);
    cbMese->setCurrentIndex(-1);
    QFormLayout* campi = campiRicerca();
    campi->addRow("&Mese", cbMese);
    righeDate(criteri, "Data &inizio", "Data &fine");
    OpPagate = scelta("OpPagate", {"Entrata", "Uscita", "Entrambi"}, criteri.tipo);
    chkCC = spunta("chkCC", "&Conto Corrente", criteri.cc);
    txtCC = new QLineEdit(QString::fromStdString(criteri.testoCC), this);
    txtCC->setObjectName("txtCC");

    campi->addRow("&Tipo", OpPagate);
    campi->addRow(chkCC, txtCC);
    connect(cbMese, &QComboBox::activated, this, [this](int i) { ui::protetto([this, i] { ScegliMese(i); }); });
    setMinimumWidth(420);
}

void frmPrimaNotaCerca::ScegliMese(int indice) {
    if (indice < 0) return;
    const double oggi = store::Oggi();
    if (indice == 0) {
        pkDataDal->setValore(store::Value::Date(core::DataInizioEsercizio()));
        pkDataAl->setValore(store::Value::Date(oggi));
    } else {
        const int anno = store::SplitDate(oggi).year;
        pkDataDal->setValore(store::Value::Date(store::DateSerial(anno, indice, 1)));
        pkDataAl->setValore(store::Value::Date(store::DateSerial(anno, indice, core::GiorniMese(indice, anno))));
    }
    chkDataDal->setChecked(true);
    chkDataAl->setChecked(true);
}

bool frmPrimaNotaCerca::Conferma() {
    if (!DateValide()) return false;
    books::CriteriPrimaNota c;
    leggiDate(c);
    c.cc = chkCC->isChecked();
    c.testoCC = txtCC->text().toStdString();
    c.tipo = OpPagate->currentIndex() < 0 ? 2 : OpPagate->currentIndex();
    criteri_ = c;
    return true;
}

std::optional<books::CriteriPrimaNota> frmPrimaNotaCerca::Cerca() {
    if (!Esegui()) return std::nullopt;
    return criteri_;
}
