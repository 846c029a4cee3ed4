#include "tools/screens/frmCodiciIva.h"

#include "core/impostazioni.h"
#include "store/convert.h"
#include "ui/VText.h"

namespace {
QString Q(const std::string& s) { return QString::fromStdString(s); }
}  // namespace

frmCodiciIva::frmCodiciIva(QWidget* parent) : RegistroBase("frmCodiciIva", parent) {
    Definizione d;
    d.titolo = core::Testo("s327");
    d.sorgente = "Select * from CodiciIva";
    d.ordinamento = "DescIva";
    d.colonne = {{"DescIva", core::Testo("s77"), 3000},
                 {"AliquotaIva", core::Testo("s190"), 1000, "", Qt::AlignRight | Qt::AlignVCenter}};
    d.ricerca = {{"s77", "DescIva"}, {"s190", "AliquotaIva"}};
    d.guardia = Guardia{"Iva", {{"Movimenti", "s187"}, {"SpeseDocumenti", "s189"}, {"MovimentiSpese", "s188"}}};
    d.domandaElimina = [](store::Recordset& rs) { return "Eliminare l'iva " + store::ConcatText(rs.get("DescIva")) + "?"; };
    carica(std::move(d));
}

std::unique_ptr<EditorBase> frmCodiciIva::creaEditor() { return std::make_unique<frmCodiciIvaEdita>(this); }

frmCodiciIvaEdita::frmCodiciIvaEdita(QWidget* parent)
    : EditorBase("frmCodiciIvaEdita", "CodiciIva", core::Testo("s42"), parent),
      VText1(new ui::VText(this)),
      VText2(new ui::VText(this)) {
    VText1->setObjectName("VText1");
    VText1->setDataField("DescIva");
    VText2->setObjectName("VText2");
    VText2->setDataField("AliquotaIva");
    VText2->setNumerico(true);
    VText2->setPredefinito("0");
    aggiungiCampo(Q(core::Testo("s77")), VText1);
    aggiungiCampo(Q(core::Testo("s190")), VText2);
}

bool frmCodiciIvaEdita::Valida() { return richiesto(VText1, "s191"); }
