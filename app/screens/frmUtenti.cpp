#include "app/screens/frmUtenti.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "core/diritti.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "app/screens/frmUtentiEdita.h"
#include "core/session.h"
#include "core/utenti.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VBars.h"

frmUtenti::frmUtenti(QWidget* parent) : RegistroBase(Nome, parent) {
    ui::VBars* pannello = aggiungiPannello();
    const int fmPrivilegi = pannello->aggiungiGruppo("Privilegi");
    lblUser = new QLabel(this);
    lblUser->setObjectName("lblUser");
    txtPass = new QLineEdit(this);
    txtPass->setObjectName("txtPass");
    txtPass->setReadOnly(true);
    txtPass->setEchoMode(QLineEdit::Password);
    ListPrivilegi = new QListWidget(this);
    ListPrivilegi->setObjectName("ListPrivilegi");
    ListPrivilegi->setMinimumHeight(280);
    RiempiListaPrivilegi(ListPrivilegi, false);
    pannello->aggiungiControllo(fmPrivilegi, "Utente", lblUser);
    pannello->aggiungiControllo(fmPrivilegi, "Password", txtPass);
    pannello->aggiungiControllo(fmPrivilegi, "", ListPrivilegi);

    Definizione d;
    d.titolo = "s32";
    d.sorgente = "Select * from qrUtenti";
    d.ordinamento = "UserName";
    d.campi = &core::CampiUtenti();
    d.colonne = {"UserName", "Denominazione"};
    d.ricerca = {"Username"};
    d.domandaElimina = [](store::Recordset& rs) {
        return core::Testo("s298") + " " + store::ConcatText(rs.get("Username")) + "?";
    };
    d.diritti = {core::UtentiVedere, core::UtentiModificare, core::UtentiModificare, core::UtentiModificare};
    d.editor = [](QWidget* parent) { return std::make_unique<frmUtentiEdita>(parent); };
    d.database = core::session().dbAziende;
    carica(std::move(d));
}

void frmUtenti::DopoCambioRiga() {
    if (!Grid->haRigaCorrente()) {
        SpuntaPrivilegi(ListPrivilegi, {});
        lblUser->clear();
        txtPass->clear();
        return;
    }
    const std::string username = store::ConcatText(Grid->valore("Username"));
    SpuntaPrivilegi(ListPrivilegi, core::PrivilegiUtente(store::ConcatText(Grid->valore("Accessi")), username));
    lblUser->setText(QString::fromStdString(username));
    txtPass->setText(QString::fromStdString(store::ConcatText(Grid->valore("Password"))));
}
