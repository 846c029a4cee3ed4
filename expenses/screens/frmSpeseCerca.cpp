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

}  // namespace

frmSpeseCerca::frmSpeseCerca(const expenses::CriteriSpese& criteri, QWidget* parent)
    : ui::DialogoCerca(Nome, "Ricerca spese", "T&rova", parent), criteri_(criteri) {
    chkDataDal = spunta("chkDataDal", "Dalla &Data", criteri.dataDal);
    pkDataDal = data("pkDataDal", criteri.dal);
    chkDataAl = spunta("chkDataAl", "&Alla Data", criteri.dataAl);
    pkDataAl = data("pkDataAl", criteri.al);
    chkDest = spunta("chkDest", "&Fornitore", criteri.fornitore);
    cbDest = elenco("cbDest", "Select * from Fornitori order by DescFornitore", "DescFornitore",
                    core::Testo("s77"), criteri.idFornitore);
    chkTipoSpesa = spunta("chkTipoSpesa", "&Tipologia", criteri.tipoSpesa);
    cbTipoSpesa = elenco("cbTipoSpesa", "Select * from TipiSpesa order by DescTipoSpesa", "DescTipoSpesa",
                         core::Testo("s77"), criteri.idTipoSpesa);
    chkClassificazione = spunta("chkClassificazione", "C&lassificazione", criteri.classificazione);
    cbClassificazione = elenco("cbClassificazione", "Select * from ClassificazioniSpese order by DescClassificazione",
                               "DescClassificazione", core::Testo("s77"), criteri.idClassificazione);
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
    c.idFornitore = ui::IdDi(cbDest->valore());
    c.idTipoSpesa = ui::IdDi(cbTipoSpesa->valore());
    c.idClassificazione = ui::IdDi(cbClassificazione->valore());
    c.pagate = kPagate[OpPagate->currentIndex()];
    criteri_ = c;
    return true;
}

std::optional<expenses::CriteriSpese> frmSpeseCerca::Cerca() {
    if (!Esegui()) return std::nullopt;
    return criteri_;
}
