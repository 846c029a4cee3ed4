#include "ui/Scadenzario.h"

#include <QColor>

#include "core/impostazioni.h"
#include "store/convert.h"
#include "store/dao.h"
#include "ui/EditorBase.h"

namespace ui {

DefinizioneDettaglio DettaglioScadenzario(const RigheScadenzario& r) {
    DefinizioneDettaglio d;
    d.nome = r.griglia;
    const std::string sorgente = "Select * from " + r.vista + " where " + r.campoPadre + "=";
    d.righe = [sorgente](long id) { return sorgente + std::to_string(id); };
    d.vuota = std::string("Select * from ") + r.vistaVuota + " where ID<0";
    d.campoPadre = r.campoPadre;
    d.ordinamento = r.ordinamento;
    d.campi = r.campi;
    d.colonne = r.colonne;
    d.diritti = {r.vedere, r.modificare, r.modificare, r.modificare};
    d.editor = FabbricaEditorDi(r.editor);
    d.ricaricaDopoElimina = true;
    d.nomeNuovo = r.comandi[0];
    d.nomeModifica = r.comandi[1];
    d.nomeElimina = r.comandi[2];
    return d;
}

DefinizioneDettaglio DettaglioScadenze(const RigheScadenzario& r) {
    DefinizioneDettaglio d = DettaglioScadenzario(r);
    d.colori = {{"Pagata", [](const store::Value& v) { return !v.isNull() && !store::CBool(v); },
                 QColor(Qt::darkRed), QColor(Qt::white)}};
    d.guardia = Guardia{"Scadenza", {{"Pagamenti", "Pagamenti"}}};
    d.domandaElimina = [](store::Recordset&) { return core::Testo("s233"); };
    return d;
}

DefinizioneDettaglio DettaglioPagamenti(const RigheScadenzario& r, long& scadenza) {
    DefinizioneDettaglio d = DettaglioScadenzario(r);
    d.domandaElimina = [&scadenza](store::Recordset& rs) {
        const store::Value s = rs.get("Scadenza");
        scadenza = s.isNull() ? 0 : store::CLng(s);
        return core::Testo("s262");
    };
    return d;
}

}  // namespace ui
