#include "tools/screens/frmCodiciIva.h"

#include "core/impostazioni.h"
#include "store/convert.h"
#include "tools/campi_codici.h"
#include "ui/VText.h"

frmCodiciIva::frmCodiciIva(QWidget* parent) : RegistroBase(Nome, parent) {
    Definizione d;
    d.titolo = "s327";
    d.sorgente = "Select * from CodiciIva";
    d.ordinamento = "DescIva";
    d.campi = &tools::CampiCodiciIva();
    d.colonne = {"DescIva", "AliquotaIva"};
    d.ricerca = {"DescIva", "AliquotaIva"};
    d.guardia = ui::Guardia{"Iva", {{"Movimenti", "s187"}, {"SpeseDocumenti", "s189"}, {"MovimentiSpese", "s188"}}};
    d.domandaElimina = [](store::Recordset& rs) { return "Eliminare l'iva " + store::ConcatText(rs.get("DescIva")) + "?"; };
    d.editor = [](QWidget* parent) { return std::make_unique<frmCodiciIvaEdita>(parent); };
    carica(std::move(d));
}

frmCodiciIvaEdita::frmCodiciIvaEdita(QWidget* parent)
    : EditorBase(Nome, "CodiciIva", core::Testo("s42"), parent),
      VText1(new ui::VText(this)),
      VText2(new ui::VText(this)) {
    const core::TabellaCampi& campi = tools::CampiCodiciIva();
    VText1->setObjectName("VText1");
    VText2->setObjectName("VText2");
    VText2->setNumerico(true);
    VText2->setPredefinito("0");
    aggiungiCampo(campi["DescIva"], VText1);
    aggiungiCampo(campi["AliquotaIva"], VText2);
}

bool frmCodiciIvaEdita::Valida() { return richiesto(VText1, "s191"); }
