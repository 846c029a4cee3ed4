#include "app/screens/frmUtenti.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "core/impostazioni.h"
#include "core/pannello.h"
#include "app/screens/frmUtentiEdita.h"
#include "core/session.h"
#include "core/utenti.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/VBars.h"

frmUtenti::frmUtenti(QWidget* parent) : RegistroBase("frmUtenti", parent) {
    setDatabase(core::session().dbAziende);
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
    d.titolo = core::Didascalia("s32", "Utenti");
    d.sorgente = "Select * from qrUtenti";
    d.ordinamento = "UserName";
    d.colonne = {{"UserName", core::Didascalia("s297", "Nome utente"), 2500},
                 {"Denominazione", core::Didascalia("s101", "Azienda"), 3500}};
    d.ricerca = {{"s297", "Username"}};
    d.domandaElimina = [](store::Recordset& rs) {
        return core::Testo("s298") + " " + store::ConcatText(rs.get("Username")) + "?";
    };
    d.dirittoModifica = 2;
    connect(Grid, &ui::VetraGrid::rigaCambiata, this, [this] { ui::protetto([this] { MostraPrivilegi(); }); });
    carica(std::move(d));

    // A change is guarded like new and delete.
    disconnect(btnModifica, nullptr, this, nullptr);
    disconnect(Grid, &ui::VetraGrid::modificaRichiesta, this, nullptr);
    auto modifica = [this] {
        if (core::PrivilegioConcesso(2)) Modifica();
    };
    connect(btnModifica, &QPushButton::clicked, this, modifica);
    connect(Grid, &ui::VetraGrid::modificaRichiesta, this, modifica);
    MostraPrivilegi();
}

std::unique_ptr<EditorBase> frmUtenti::creaEditor() { return std::make_unique<frmUtentiEdita>(this); }

void frmUtenti::MostraPrivilegi() {
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
