#include "expenses/screens/frmSpeseCerca.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QPushButton>

#include "core/impostazioni.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

namespace {

// The choice of OpPagate in its order, as the criteria keep it: both, paid, not paid.
constexpr int kPagate[] = {2, 1, 0};

long idDi(const store::Value& v) { return v.isNull() ? 0 : store::CLng(v); }

ui::VetraCombo* elenco(const char* nome, const std::string& sorgente, const char* campo, long valore, QWidget* parent) {
    auto* c = new ui::VetraCombo(parent);
    c->setObjectName(nome);
    c->setSorgente(sorgente);
    c->setCampoTesto(campo);
    c->setColonne({{campo, core::Testo("s77"), 3000}});
    ui::protetto([c] { c->Aggiorna(); });
    c->setValore(store::Value::Long(static_cast<std::int32_t>(valore)));
    return c;
}

}  // namespace

frmSpeseCerca::frmSpeseCerca(const expenses::CriteriSpese& criteri, QWidget* parent)
    : ui::DialogoCerca(Nome, "Ricerca spese", "T&rova", parent), criteri_(criteri) {
    chkDataDal = spunta("chkDataDal", "Dalla &Data", criteri.dataDal);
    pkDataDal = data("pkDataDal", criteri.dal);
    chkDataAl = spunta("chkDataAl", "&Alla Data", criteri.dataAl);
    pkDataAl = data("pkDataAl", criteri.al);
    chkDest = spunta("chkDest", "&Fornitore", criteri.fornitore);
    cbDest = elenco("cbDest", "Select * from Fornitori order by DescFornitore", "DescFornitore", criteri.idFornitore, this);
    chkTipoSpesa = spunta("chkTipoSpesa", "&Tipologia", criteri.tipoSpesa);
    cbTipoSpesa = elenco("cbTipoSpesa", "Select * from TipiSpesa order by DescTipoSpesa", "DescTipoSpesa",
                         criteri.idTipoSpesa, this);
    chkClassificazione = spunta("chkClassificazione", "C&lassificazione", criteri.classificazione);
    cbClassificazione = elenco("cbClassificazione", "Select * from ClassificazioniSpese order by DescClassificazione",
                               "DescClassificazione", criteri.idClassificazione, this);
    OpPagate = new QComboBox(this);
    OpPagate->setObjectName("OpPagate");
    OpPagate->addItems({"Entrambi", "Pagati", "Non Pagati"});
    OpPagate->setCurrentIndex(2 - criteri.pagate);

    QFormLayout* campi = campiRicerca();
    campi->addRow(chkDataDal, pkDataDal);
    campi->addRow(chkDataAl, pkDataAl);
    campi->addRow(chkDest, cbDest);
    campi->addRow(chkTipoSpesa, cbTipoSpesa);
    campi->addRow(chkClassificazione, cbClassificazione);
    campi->addRow("&Stato", OpPagate);
    Command2->setText("A&nnulla");   // "&Alla Data" has the A
    setMinimumWidth(480);
}

bool frmSpeseCerca::Conferma() {
    if (!ui::DataSpuntataValida(chkDataDal, pkDataDal) || !ui::DataSpuntataValida(chkDataAl, pkDataAl)) return false;
    expenses::CriteriSpese c;
    c.dataDal = chkDataDal->isChecked();
    c.dataAl = chkDataAl->isChecked();
    c.fornitore = chkDest->isChecked();
    c.tipoSpesa = chkTipoSpesa->isChecked();
    c.classificazione = chkClassificazione->isChecked();
    c.dal = pkDataDal->testo();
    c.al = pkDataAl->testo();
    c.idFornitore = idDi(cbDest->valore());
    c.idTipoSpesa = idDi(cbTipoSpesa->valore());
    c.idClassificazione = idDi(cbClassificazione->valore());
    c.pagate = kPagate[OpPagate->currentIndex()];
    criteri_ = c;
    return true;
}

std::optional<expenses::CriteriSpese> frmSpeseCerca::Cerca() {
    if (!Esegui()) return std::nullopt;
    return criteri_;
}
