#include "app/screens/frmBackup.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <ctime>

#include "core/backup.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"

namespace {

QString Q(const std::string& testo) { return QString::fromStdString(testo); }

// The folder "Backup" in the user's home, made when missing: where a backup goes unless another is chosen.
QString CartellaPredefinita() {
    const QString cartella = QDir::home().filePath("Backup");
    QDir().mkpath(cartella);
    return cartella;
}

}  // namespace

frmBackup::frmBackup(QWidget* parent) : QDialog(parent) {
    setObjectName(Nome);
    setWindowTitle("Copia di backup");
    setWindowIcon(ui::icona("media-floppy"));
    setMinimumWidth(520);
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);
    auto* etichetta = new QLabel("Ca&rtella in cui creare la copia:", this);
    colonna->addWidget(etichetta);
    auto* riga = new QHBoxLayout;
    Dir = new QLineEdit(this);
    Dir->setObjectName("Dir");
    etichetta->setBuddy(Dir);
    btnSfoglia = new QPushButton("&Sfoglia...", this);
    btnSfoglia->setObjectName("btnSfoglia");
    riga->addWidget(Dir, 1);
    riga->addWidget(btnSfoglia);
    colonna->addLayout(riga);
    lblTit = new QLabel(this);
    lblTit->setObjectName("lblTit");
    colonna->addWidget(lblTit);
    auto* barra = new QHBoxLayout;
    pBar = new QProgressBar(this);
    pBar->setObjectName("pBar");
    pBar->setRange(0, 100);
    pBar->setValue(0);
    pBar->setTextVisible(false);
    lblPerc = new QLabel("0%", this);
    lblPerc->setObjectName("lblPerc");
    lblPerc->setMinimumWidth(lblPerc->fontMetrics().horizontalAdvance("100%") + 4);
    lblPerc->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    barra->addWidget(pBar, 1);
    barra->addWidget(lblPerc);
    colonna->addLayout(barra);
    colonna->addWidget(ui::confermaAnnulla(this, btnConferma, btnAnnulla));
    btnConferma->setText("&Copia archivi");
    connect(btnConferma, &QPushButton::clicked, this, [this] { ui::protetto([this] { Conferma(); }); });
    connect(btnAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    connect(btnSfoglia, &QPushButton::clicked, this, [this] { Sfoglia(); });
    Dir->setText(CartellaPredefinita());
}

void frmBackup::Sfoglia() {
    if (auto scelta = core::dialogs().chooseFolder("Cartella di backup", Dir->text().toStdString())) Dir->setText(Q(*scelta));
}

void frmBackup::Conferma() {
    const std::time_t adesso = std::time(nullptr);
    std::tm istante{};
    localtime_r(&adesso, &istante);
    btnConferma->setEnabled(false);
    btnAnnulla->setEnabled(false);
    const core::EsitoCopia esito =
        core::EseguiBackup(Dir->text().trimmed().toStdString(), istante, [this](const std::string& titolo, int percento) {
            lblTit->setText(Q(titolo));
            pBar->setValue(percento);
            lblPerc->setText(QString::number(percento) + "%");
            QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        });
    btnConferma->setEnabled(true);
    btnAnnulla->setEnabled(true);
    if (!esito.riuscito()) {
        lblTit->clear();
        core::MsgBox(esito.messaggio, core::vbExclamation);
        return;
    }
    core::MsgBox("Gli archivi sono stati salvati!", core::vbInformation);
    accept();
}

bool frmBackup::ImportaBackup() {
    const std::string dati = core::LeggiIni("Azienda", "PATH");
    auto scelta = core::dialogs().chooseFolder("Selezionare la cartella di backup da cui importare i dati...",
                                               CartellaPredefinita().toStdString());
    if (!scelta) return false;
    core::dialogs().setBusy(true);
    core::EsitoCopia esito;
    const bool fatto = ui::protetto([&] { esito = core::ImportaBackup(*scelta, dati); });
    core::dialogs().setBusy(false);
    if (!fatto) return false;
    if (!esito.riuscito()) {
        core::MsgBox(esito.messaggio, core::vbExclamation);
        return false;
    }
    core::MsgBox("Importazione completata!", core::vbInformation);
    core::AnnunciaNovita(core::Novita::Aziende);
    return true;
}
