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
    righeDate(criteri, "Dalla &Data", "&Alla Data");
    chkDest = spunta("chkDest", "&Fornitore", criteri.fornitore);
    cbDest = elenco("cbDest", "Select * from Fornitori order by DescFornitore", "DescFornitore",
                    core::Testo("s77"), criteri.idFornitore);
    chkTipoSpesa = spunta("chkTipoSpesa", "&Tipologia", criteri.tipoSpesa);
    cbTipoSpesa = elenco("cbTipoSpesa", "Select * from TipiSpesa order by DescTipoSpesa", "DescTipoSpesa",
                         core::Testo("s77"), criteri.idTipoSpesa);
    chkClassificazione = spunta("chkClassificazione", "C&lassificazione", criteri.classificazione);
    cbClassificazione = elenco("cbClassificazione", "Select * from ClassificazioniSpese order by DescClassificazione",
                               "DescClassificazione", core::Testo("s77"), criteri.idClassificazione);
    OpPagate = scelta("OpPagate", {"Entrambi", "Pagati", "Non Pagati"}, 2 - criteri.pagate);

    QFormLayout* campi = campiRicerca();
    campi->addRow(chkDest, cbDest);
    campi->addRow(chkTipoSpesa, cbTipoSpesa);
    campi->addRow(chkClassificazione, cbClassificazione);
    campi->addRow("&Stato", OpPagate);
    Command2->setText("A&nnulla");   // "&Alla Data" has the A
    setMinimumWidth(480);
}

bool frmSpeseCerca::Conferma() {
    if (!DateValide()) return false;
    expenses::CriteriSpese c;
    leggiDate(c);
    c.fornitore = chkDest->isChecked();
    c.tipoSpesa = chkTipoSpesa->isChecked();
    c.classificazione = chkClassificazione->isChecked();
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
