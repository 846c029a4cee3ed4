#include "tools/screens/TabellaDescrizioni.h"

#include "core/impostazioni.h"
#include "store/convert.h"
#include "tools/screens/CompletaTestoCasella.h"
#include "ui/VText.h"

EditorDescrizioni::EditorDescrizioni(const TabellaDescrizioni& t, QWidget* parent)
    : EditorBase(t.editor, t.tabella, core::Didascalia(t.titoloEditor), parent), VText1(new ui::VText(this)) {
    VText1->setObjectName("VText1");
    aggiungiCampo(t.campi[t.campo], VText1);
    CollegaCompletaTesto(VText1, t.tabella, t.campo);
}

bool EditorDescrizioni::Valida() { return richiesto(VText1, "s191"); }

RegistroDescrizioni::RegistroDescrizioni(const TabellaDescrizioni& t, QWidget* parent) : RegistroBase(t.registro, parent) {
    Definizione d;
    d.titolo = t.titolo;
    d.sorgente = "Select * from " + t.tabella;
    d.ordinamento = t.campo;
    d.campi = &t.campi;
    d.colonne = {t.campo};
    d.ricerca = t.ricerca;
    d.guardia = t.guardia;
    d.domandaElimina = [&t](store::Recordset& rs) {
        return core::Didascalia(t.domanda) + " " + store::ConcatText(rs.get(t.campo)) + "?";
    };
    d.editor = [&t](QWidget* parent) { return std::make_unique<EditorDescrizioni>(t, parent); };
    carica(std::move(d));
    resize(560, 480);
}
