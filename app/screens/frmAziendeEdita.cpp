#include "app/screens/frmAziendeEdita.h"

#include <map>

#include "core/aziende.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "ui/CompletaComune.h"
#include "ui/VText.h"

frmAziendeEdita::frmAziendeEdita(QWidget* parent)
    : EditorBase(Nome, "Aziende", core::Didascalia("s5"), parent) {
    setDatabase(core::session().dbAziende);
    int n = 0;
    std::map<std::string, ui::VText*> caselle;
    for (const core::Campo& c : core::CampiAziende().tutti()) {
        auto* t = new ui::VText(this);
        t->setObjectName(QString("VText%1").arg(++n));
        aggiungiCampo(c, t);
        if (n == 1) VText1 = t;
        caselle[c.nome] = t;
    }
    ui::CollegaComuni(caselle["Citta"], caselle["Cap"], caselle["Provincia"]);
}

bool frmAziendeEdita::Valida() {
    const std::string chiave = core::ControllaAzienda(VText1->testo());
    if (chiave.empty()) return true;
    core::MsgBox(core::Testo(chiave), core::vbExclamation);
    VText1->setFocus();
    return false;
}

// A new company needs its report folder and list once saved, however the editor was opened.
void frmAziendeEdita::DopoSalvato(long id) {
    if (nuovo()) core::PreparaNuovaAzienda(id);
    core::AnnunciaNovita(core::Novita::Aziende);
}
