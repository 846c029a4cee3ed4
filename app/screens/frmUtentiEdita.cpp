#include "app/screens/frmUtentiEdita.h"

#include <QListWidget>

#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "app/screens/frmAziendeEdita.h"
#include "core/session.h"
#include "core/utenti.h"
#include "store/convert.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"

void RiempiListaPrivilegi(QListWidget* lista, bool modificabile) {
    lista->clear();
    Qt::ItemFlags flag = Qt::ItemIsEnabled;
    if (modificabile) flag |= Qt::ItemIsUserCheckable | Qt::ItemIsSelectable;
    for (const std::string& chiave : core::ChiaviPrivilegi()) {
        auto* voce = new QListWidgetItem(QString::fromStdString(core::Didascalia(chiave)), lista);
        voce->setFlags(flag);
        voce->setCheckState(Qt::Unchecked);
    }
}

void SpuntaPrivilegi(QListWidget* lista, const std::vector<bool>& spunte) {
    for (int i = 0; i < lista->count(); ++i)
        lista->item(i)->setCheckState(i < static_cast<int>(spunte.size()) && spunte[i] ? Qt::Checked : Qt::Unchecked);
}

frmUtentiEdita::frmUtentiEdita(QWidget* parent)
    : EditorBase(Nome, "Utenti", core::Didascalia("s32"), parent) {
    setDatabase(core::session().dbAziende);
    VText1 = new ui::VText(this);
    VText1->setObjectName("VText1");
    VText1->setDataField("Username");
    VText2 = new ui::VText(this);
    VText2->setObjectName("VText2");
    VText2->setDataField("Password");
    VText2->setEchoMode(QLineEdit::Password);
    cbAzienda = new ui::VetraCombo(this);
    cbAzienda->setObjectName("cbAzienda");
    cbAzienda->setCampoDestinazione("Azienda");
    cbAzienda->setDatabase(core::session().dbAziende);
    cbAzienda->setColonne({{"Denominazione", "Denominazione", 3000, ""}});
    cbAzienda->setCampoTesto("Denominazione");
    cbAzienda->setSorgente("Select * from Aziende order by Denominazione");
    cbAzienda->Aggiorna();
    ListPrivilegi = new QListWidget(this);
    ListPrivilegi->setObjectName("ListPrivilegi");
    ListPrivilegi->setMinimumHeight(260);
    RiempiListaPrivilegi(ListPrivilegi, true);
    aggiungiCampo("Nome utente", VText1);
    aggiungiCampo("Password", VText2);
    aggiungiCampo("Azienda", conImmagini(cbAzienda, [](QWidget* parent) { return std::make_unique<frmAziendeEdita>(parent); }));
    aggiungiCampo("Privilegi", ListPrivilegi);
}

std::vector<bool> frmUtentiEdita::spunte() const {
    std::vector<bool> s;
    for (int i = 0; i < ListPrivilegi->count(); ++i) s.push_back(ListPrivilegi->item(i)->checkState() == Qt::Checked);
    return s;
}

void frmUtentiEdita::DopoCarica() {
    if (nuovo()) {
        cbAzienda->setValore(store::Value::Long(static_cast<std::int32_t>(core::session().IDAzienda)));
        SpuntaPrivilegi(ListPrivilegi, {});
        return;
    }
    auto rs = core::session().dbAziende->OpenRecordset("Select * from Utenti where ID=" + std::to_string(id()));
    if (rs->Eof()) return;
    const std::string username = store::ConcatText(rs->get("Username"));
    SpuntaPrivilegi(ListPrivilegi, core::PrivilegiUtente(store::ConcatText(rs->get("Accessi")), username));
}

bool frmUtentiEdita::Valida() {
    core::DatiUtente dati;
    const store::Value az = cbAzienda->valore();
    dati.azienda = az.isNull() ? 0 : store::CLng(az);
    dati.username = VText1->testo();
    dati.password = VText2->testo();
    dati.privilegi = spunte();
    const std::string chiave = core::ControllaUtente(*core::session().dbAziende, dati, nuovo());
    if (chiave.empty()) return true;
    core::MsgBox(core::Testo(chiave), core::vbExclamation);
    return false;
}

void frmUtentiEdita::PrimaDiAggiornare(store::Recordset& rs) {
    rs.set("Accessi", store::Value::Text(core::AccessiCifrati(spunte(), VText1->testo())));
}
