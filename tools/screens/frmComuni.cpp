#include "tools/screens/frmComuni.h"

#include "core/impostazioni.h"
#include "core/session.h"
#include "store/convert.h"
#include "tools/campi_codici.h"
#include "ui/VText.h"

frmComuni::frmComuni(QWidget* parent) : RegistroBase(Nome, parent) {
    Definizione d;
    d.titolo = "s192";
    d.sorgente = "Select * from Comuni";
    d.ordinamento = "Comune";
    d.campi = &tools::CampiComuni();
    d.colonne = {"Comune", "Cap", "Provincia"};
    d.ricerca = {"Comune", "Cap", "Provincia"};
    d.database = core::session().dbUtilita;
    d.domandaElimina = [](store::Recordset& rs) {
        return "Eliminare il comune " + store::ConcatText(rs.get("Comune")) + " (" + store::ConcatText(rs.get("Cap")) +
               ")?";
    };
    d.editor = [](QWidget* parent) { return std::make_unique<frmComuniEdita>(parent); };
    carica(std::move(d));
}

frmComuniEdita::frmComuniEdita(QWidget* parent)
    : EditorBase(Nome, "Comuni", core::Testo("s192"), parent),
      txtComune(new ui::VText(this)),
      txtCap(new ui::VText(this)),
      txtProvincia(new ui::VText(this)) {
    setDatabase(core::session().dbUtilita);
    const core::TabellaCampi& campi = tools::CampiComuni();
    txtComune->setObjectName("txtComune");
    txtCap->setObjectName("txtCap");
    txtProvincia->setObjectName("txtProvincia");
    txtCap->setCaratteriAmmessi("0123456789");
    txtCap->setMaximumWidth(80);
    txtProvincia->setMaximumWidth(80);
    aggiungiCampo(campi["Comune"], txtComune);
    aggiungiCampo(campi["Cap"], txtCap);
    aggiungiCampo(campi["Provincia"], txtProvincia);
}

// The same text for an empty CAP and an empty town: the one message asks for both.
bool frmComuniEdita::Valida() {
    return richiesto(txtCap, "s193") && richiesto(txtComune, "s193") && richiesto(txtProvincia, "s195");
}
