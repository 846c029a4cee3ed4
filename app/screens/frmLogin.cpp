#include "app/screens/frmLogin.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/login.h"
#include "core/pannello.h"
#include "core/session.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"

namespace {
QString Q(const std::string& s) { return QString::fromStdString(s); }
}  // namespace

frmLogin::frmLogin(QWidget* parent) : QDialog(parent) {
    setObjectName(Nome);
    setWindowTitle("Login");
    setWindowIcon(ui::icona("system-lock-screen"));
    setMinimumWidth(460);
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);
    auto* campi = new QFormLayout;
    lblAzienda = new QLabel(this);
    lblAzienda->setObjectName("lblAzienda");
    lblArchivio = new QLabel(this);
    lblArchivio->setObjectName("lblArchivio");
    txtUser = new QLineEdit(this);
    txtUser->setObjectName("txtUser");
    txtPass = new QLineEdit(this);
    txtPass->setObjectName("txtPass");
    txtPass->setEchoMode(QLineEdit::Password);
    for (auto*& e : etichette_) e = new QLabel(this);
    campi->addRow(etichette_[0], lblAzienda);
    campi->addRow(etichette_[1], lblArchivio);
    campi->addRow(etichette_[2], txtUser);
    campi->addRow(etichette_[3], txtPass);
    colonna->addLayout(campi);

    auto* riga = new QHBoxLayout;
    txtLingua = new QLineEdit(this);
    txtLingua->setObjectName("txtLingua");
    txtLingua->setReadOnly(true);
    btnLingua = new QPushButton(ui::icona("preferences-desktop-locale"), "Lingua...", this);
    btnLingua->setObjectName("btnLingua");
    riga->addWidget(txtLingua, 1);
    riga->addWidget(btnLingua);
    colonna->addLayout(riga);
    suggerimento_ = new QLabel(this);
    suggerimento_->setWordWrap(true);
    colonna->addWidget(suggerimento_);

    colonna->addWidget(ui::confermaAnnulla(this, btnConferma, btnAnnulla));
    connect(btnConferma, &QPushButton::clicked, this, [this] { ui::protetto([this] { Conferma(); }); });
    connect(btnAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    connect(btnLingua, &QPushButton::clicked, this, [this] { ui::protetto([this] { Lingua(); }); });

    ui::protetto([this] {
        const core::StatoLogin stato = core::ApriLogin();
        txtUser->setText(Q(stato.utente));
        lblAzienda->setText(Q(stato.azienda));
        lblArchivio->setText(Q(stato.archivio));
        txtLingua->setText(Q(stato.lingua));
    });
    ImpostaDidascalie();
    (txtUser->text().isEmpty() ? txtUser : txtPass)->setFocus();
}

void frmLogin::ImpostaDidascalie() {
    const char* chiavi[] = {"s2", "s62", "s63", "s64"};
    for (int i = 0; i < 4; ++i) etichette_[i]->setText(Q(core::Didascalia(chiavi[i])));
    suggerimento_->setText(Q(core::Didascalia("s65")));
    btnAnnulla->setText(Q(core::Didascalia("s66")));
    btnConferma->setText(Q(core::Didascalia("s67")));
}

void frmLogin::Conferma() {
    if (core::ConfermaLogin(txtUser->text().toStdString(), txtPass->text().toStdString())) accept();
}

void frmLogin::Lingua() {
    auto scelta = core::dialogs().chooseFile("Lingua", "File Language|*.lng", false, core::session().CartellaProgramma);
    if (!scelta) return;
    txtLingua->setText(Q(*scelta));
    core::ScegliLingua(*scelta);
    ImpostaDidascalie();
}
