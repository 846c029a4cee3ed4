#include "payments/screens/frmScadenzeCerca.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QPushButton>

#include "core/impostazioni.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

namespace {

// OpPagate's choices in their order, as the filter keeps them: both, paid, not paid.
constexpr int kStati[] = {2, 1, 0};

int posizioneStato(int stato) { return stato == 1 ? 1 : stato == 0 ? 2 : 0; }

}  // namespace

frmScadenzeCerca::frmScadenzeCerca(int modo, const payments::FiltroScadenze& filtro, QWidget* parent)
    : ui::DialogoCerca(Nome, QString::fromStdString(core::Testo(payments::TitoloScadenze(modo))) + " - Ricerca",
                       "T&rova", parent),
      filtro_(filtro) {
    righeDate(filtro, "Scadenze a partire &dal", "Scadenze &fino al");
    chkDest = spunta("chkDest", "&Intestatario", filtro.destinatario);
    cbCliente = elenco("cbCliente", "Select * from qrClienti Order by DescCliente", "Denominazione",
                       core::Testo("s40"), filtro.cliente);
    cbFornitore = elenco("cbFornitore", "Select * from Fornitori Order By DescFornitore", "DescFornitore",
                         core::Testo("s41"), filtro.fornitore);
    OpPagate = scelta("OpPagate", {"Entrambe", "Pagate", "Non Pagate"}, posizioneStato(filtro.stato));

    QFormLayout* campi = campiRicerca();
    campi->addRow(chkDest, cbCliente);
    campi->addRow("oppure", cbFornitore);
    campi->addRow("&Stato", OpPagate);
    Command2->setText("A&nnulla");
    setMinimumWidth(500);
}

bool frmScadenzeCerca::Conferma() {
    if (!DateValide()) return false;
    payments::FiltroScadenze f;
    leggiDate(f);
    f.destinatario = chkDest->isChecked();
    f.cliente = ui::IdDi(cbCliente->valore());
    f.fornitore = ui::IdDi(cbFornitore->valore());
    f.stato = kStati[OpPagate->currentIndex()];
    filtro_ = f;
    return true;
}

std::optional<payments::FiltroScadenze> frmScadenzeCerca::Cerca() {
    if (!Esegui()) return std::nullopt;
    return filtro_;
}
