#include "app/screens/frmAziendeEdita.h"

#include <QPushButton>

#include "core/aziende.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "app/screens/frmMain.h"
#include "core/session.h"
#include "ui/Dialoghi.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"

namespace {

struct CampoAzienda {
    const char* campo;
    const char* etichetta;
};
const CampoAzienda kCampi[] = {
    {"Denominazione", "Denominazione"}, {"Indirizzo", "Indirizzo"}, {"Cap", "Cap"},
    {"Citta", "Città"},                 {"Provincia", "Provincia"}, {"PartitaIva", "Partita Iva"},
    {"CodiceFiscale", "Codice Fiscale"}, {"Telefono", "Telefono"},  {"Fax", "Fax"},
};

}  // namespace

frmAziendeEdita::frmAziendeEdita(QWidget* parent)
    : EditorBase("frmAziendeEdita", "Aziende", core::Didascalia("s5", "Azienda"), parent) {
    setDatabase(core::session().dbAziende);
    int n = 0;
    for (const auto& c : kCampi) {
        auto* t = new ui::VText(this);
        t->setObjectName(QString("VText%1").arg(++n));
        t->setDataField(c.campo);
        aggiungiCampo(QString::fromUtf8(c.etichetta), t);
        if (n == 1) VText1 = t;
    }
    // A new company needs its report folder and list once saved, in grid and recordset mode alike.
    disconnect(btnConferma, nullptr, this, nullptr);
    connect(btnConferma, &QPushButton::clicked, this, [this] { ui::protetto([this] { ConfermaAzienda(); }); });
}

bool frmAziendeEdita::ApriRecord(long id, bool nuovo, QWidget* parent) {
    frmAziendeEdita editor(parent);
    editor.EditaRecordset(id, nuovo);
    return editor.Mostra();
}

bool frmAziendeEdita::Valida() {
    const std::string chiave = core::ControllaAzienda(VText1->testo());
    if (chiave.empty()) return true;
    core::MsgBox(core::Testo(chiave), core::vbExclamation);
    VText1->setFocus();
    return false;
}

long frmAziendeEdita::idSalvato() const {
    if (Modo == 1) return core::session().IDRecordEdit;
    return Grid ? Grid->idCorrente() : 0;
}

void frmAziendeEdita::ConfermaAzienda() {
    const bool eraNuovo = Nuovo;
    Conferma();
    if (result() != QDialog::Accepted || !eraNuovo) return;
    core::PreparaNuovaAzienda(idSalvato());
    if (frmMain* pannello = frmMain::istanza()) pannello->CaricaAziende();
}
