#include "app/screens/frmAziende.h"

#include <QPushButton>

#include "core/aziende.h"
#include "core/pannello.h"
#include "app/screens/frmAziendeEdita.h"
#include "app/screens/frmMain.h"
#include "core/session.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VBars.h"

frmAziende::frmAziende(QWidget* parent) : RegistroBase("frmAziende", parent) {
    setDatabase(core::session().dbAziende);
    ui::VBars* pannello = aggiungiPannello();
    const int generale = pannello->aggiungiGruppo(core::Didascalia("s142", "Generale"));
    for (const auto& [campo, titolo] : std::vector<std::pair<const char*, const char*>>{
             {"Denominazione", "Denominazione"}, {"Indirizzo", "Indirizzo"}, {"Cap", "Cap"}, {"Citta", "Città"},
             {"Provincia", "Provincia"}, {"PartitaIva", "Partita Iva"}, {"CodiceFiscale", "Codice Fiscale"},
             {"Telefono", "Telefono"}, {"Fax", "Fax"}})
        pannello->aggiungiCampo(generale, campo, titolo);

    Definizione d;
    d.titolo = core::Didascalia("", "Aziende Gestite");
    d.sorgente = "Select * from Aziende";
    d.ordinamento = "Denominazione";
    d.colonne = {{"Denominazione", core::Didascalia("s101", "Denominazione"), 3500},
                 {"Citta", core::Didascalia("s104", "Città"), 2000},
                 {"PartitaIva", core::Didascalia("s106", "Partita Iva"), 1600}};
    d.ricerca = {{"s101", "Denominazione"}};
    carica(std::move(d));

    disconnect(btnElimina, nullptr, this, nullptr);
    disconnect(Grid, &ui::VetraGrid::eliminaRichiesta, this, nullptr);
    auto elimina = [this] { ui::protetto([this] { EliminaAzienda(); }); };
    connect(btnElimina, &QPushButton::clicked, this, elimina);
    connect(Grid, &ui::VetraGrid::eliminaRichiesta, this, elimina);
}

std::unique_ptr<EditorBase> frmAziende::creaEditor() { return std::make_unique<frmAziendeEdita>(this); }

void frmAziende::EliminaAzienda() {
    const long id = Grid->idCorrente();
    if (id == 0) return;
    if (!core::EliminaAzienda(id, store::ConcatText(Grid->valore("Denominazione")))) return;
    Grid->EliminaRiga();
    if (frmMain* pannello = frmMain::istanza()) pannello->CaricaAziende();
}
