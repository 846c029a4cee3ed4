#include "tools/screens/TabellaDescrizioni.h"

#include "core/impostazioni.h"
#include "store/convert.h"
#include "tools/screens/CompletaTestoCasella.h"
#include "ui/VText.h"

EditorDescrizioni::EditorDescrizioni(const TabellaDescrizioni& t, QWidget* parent)
    : EditorBase(t.editor, t.tabella, Didascalia(t.titoloEditor), parent), VText1(new ui::VText(this)) {
    VText1->setObjectName("VText1");
    VText1->setDataField(t.campo);
    aggiungiCampo(QString::fromStdString(core::Testo("s77")), VText1);
    CollegaCompletaTesto(VText1, t.tabella, t.campo);
}

bool EditorDescrizioni::Valida() { return richiesto(VText1, "s191"); }

RegistroDescrizioni::RegistroDescrizioni(const TabellaDescrizioni& t, QWidget* parent)
    : RegistroBase(t.registro, parent), tabella_(t) {
    Definizione d;
    d.titolo = Didascalia(t.titolo);
    d.sorgente = "Select * from " + t.tabella;
    d.ordinamento = t.campo;
    d.colonne = {{t.campo, core::Testo("s77"), 4500}};
    d.ricerca = t.ricerca;
    d.guardia = t.guardia;
    d.domandaElimina = [&t](store::Recordset& rs) {
        return Didascalia(t.domanda) + " " + store::ConcatText(rs.get(t.campo)) + "?";
    };
    carica(std::move(d));
    resize(560, 480);
}

std::unique_ptr<EditorBase> RegistroDescrizioni::creaEditor() {
    return std::make_unique<EditorDescrizioni>(tabella_, this);
}
