#include "app/screens/frmAziende.h"

#include "app/screens/frmAziendeEdita.h"
#include "core/aziende.h"
#include "core/impostazioni.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "store/convert.h"
#include "ui/VBars.h"

frmAziende::frmAziende(QWidget* parent) : RegistroBase(Nome, parent) {
    const core::TabellaCampi& campi = core::CampiAziende();
    ui::VBars* pannello = aggiungiPannello();
    const int generale = pannello->aggiungiGruppo(core::Didascalia("s142"));
    for (const core::Campo& c : campi.tutti()) pannello->aggiungiCampo(generale, c.nome, core::Didascalia(c.didascalia));

    Definizione d;
    d.titolo = "Aziende Gestite";
    d.sorgente = "Select * from Aziende";
    d.ordinamento = "Denominazione";
    d.campi = &campi;
    d.colonne = {"Denominazione", "Citta", "PartitaIva"};
    d.ricerca = {"Denominazione"};
    d.editor = [](QWidget* parent) { return std::make_unique<frmAziendeEdita>(parent); };
    d.database = core::session().dbAziende;
    carica(std::move(d));
}

bool frmAziende::PrimaDiEliminare(long id) {
    return core::EliminaAzienda(id, store::ConcatText(Grid->valore("Denominazione")));
}

void frmAziende::DopoEliminato(long) { core::AnnunciaNovita(core::Novita::Aziende); }

// A rename shows in the panel's choice of company at once.
void frmAziende::DopoSalvato(long) { core::AnnunciaNovita(core::Novita::Aziende); }
