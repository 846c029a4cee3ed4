#include "output/screens/frmEsportaElenchi.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <filesystem>

#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/esportazione.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"

frmEsportaElenchi::frmEsportaElenchi(QWidget* parent)
    : QDialog(parent),
      cbElenco(new QComboBox(this)),
      lstCampi(new QListWidget(this)),
      btnSu(ui::comando("btnSu", "S&u", this)),
      btnGiu(ui::comando("btnGiu", "&Giù", this)),
      txtSep(new QLineEdit(";", this)),
      btnSalvaImpostazioni(ui::comando("btnSalvaImpostazioni", "&Salva impostazioni", this)),
      btnConferma(ui::comando("btnConferma", "&Esporta", this)),
      btnAnnulla(ui::comando("btnAnnulla", "&Chiudi", this)) {
    setObjectName(Nome);
    setWindowTitle("Esportazione");
    cbElenco->setObjectName("cbElenco");
    lstCampi->setObjectName("lstCampi");
    txtSep->setObjectName("txtSep");
    txtSep->setMaxLength(10);
    txtSep->setMaximumWidth(80);
    btnSu->setIcon(ui::icona("go-up"));
    btnGiu->setIcon(ui::icona("go-down"));
    for (const char* elenco : output::ElenchiEsportabili) cbElenco->addItem(elenco);

    auto* griglia = new QGridLayout(this);
    griglia->setSpacing(ui::Spaziatura);
    auto* lblElenco = new QLabel("E&lenco", this);
    lblElenco->setBuddy(cbElenco);
    griglia->addWidget(lblElenco, 0, 0);
    griglia->addWidget(cbElenco, 0, 1);
    auto* lblCampi = new QLabel("Ca&mpi da esportare, nell'ordine", this);
    lblCampi->setBuddy(lstCampi);
    griglia->addWidget(lblCampi, 1, 0, 1, 2);
    griglia->addWidget(lstCampi, 2, 0, 1, 2);
    auto* spostamenti = new QVBoxLayout;
    spostamenti->addWidget(btnSu);
    spostamenti->addWidget(btnGiu);
    spostamenti->addStretch(1);
    griglia->addLayout(spostamenti, 2, 2);
    auto* lblSep = new QLabel("&Indicare il carattere per la separazione dei campi", this);
    lblSep->setBuddy(txtSep);
    auto* separatore = new QHBoxLayout;
    separatore->addWidget(lblSep);
    separatore->addWidget(txtSep);
    separatore->addStretch(1);
    griglia->addLayout(separatore, 3, 0, 1, 3);
    auto* comandi = new QHBoxLayout;
    comandi->addWidget(btnSalvaImpostazioni);
    comandi->addStretch(1);
    comandi->addWidget(btnConferma);
    comandi->addWidget(btnAnnulla);
    griglia->addLayout(comandi, 4, 0, 1, 3);
    btnConferma->setDefault(true);
    setTabOrder(cbElenco, lstCampi);
    setTabOrder(lstCampi, btnSu);
    setTabOrder(btnSu, btnGiu);
    setTabOrder(btnGiu, txtSep);
    setTabOrder(txtSep, btnSalvaImpostazioni);
    setTabOrder(btnSalvaImpostazioni, btnConferma);
    setTabOrder(btnConferma, btnAnnulla);
    // Ctrl+Up and Ctrl+Down move the selected field from the list itself.
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Up), lstCampi), &QShortcut::activated, this, &frmEsportaElenchi::Su);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Down), lstCampi), &QShortcut::activated, this, &frmEsportaElenchi::Giu);

    connect(cbElenco, &QComboBox::currentIndexChanged, this, [this] { CaricaElenco(); });
    connect(btnSu, &QPushButton::clicked, this, &frmEsportaElenchi::Su);
    connect(btnGiu, &QPushButton::clicked, this, &frmEsportaElenchi::Giu);
    connect(btnSalvaImpostazioni, &QPushButton::clicked, this, &frmEsportaElenchi::SalvaImpostazioni);
    connect(btnConferma, &QPushButton::clicked, this, &frmEsportaElenchi::Conferma);
    connect(btnAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    resize(420, 520);
    CaricaElenco();
}

std::vector<output::CampoEsportato> frmEsportaElenchi::Campi() const {
    std::vector<output::CampoEsportato> campi;
    for (int i = 0; i < lstCampi->count(); ++i) {
        const QListWidgetItem* voce = lstCampi->item(i);
        campi.push_back({voce->text().toStdString(), voce->checkState() == Qt::Checked,
                         static_cast<long>(voce->data(Qt::UserRole).toLongLong())});
    }
    return campi;
}

void frmEsportaElenchi::CaricaElenco() {
    lstCampi->clear();
    ui::protetto([this] {
        for (const output::CampoEsportato& c :
             output::CaricaCampiEsportati(core::Archivio(), cbElenco->currentText().toStdString())) {
            auto* voce = new QListWidgetItem(QString::fromStdString(c.campo), lstCampi);
            voce->setFlags(voce->flags() | Qt::ItemIsUserCheckable);
            voce->setCheckState(c.incluso ? Qt::Checked : Qt::Unchecked);
            voce->setData(Qt::UserRole, static_cast<qlonglong>(c.id));
        }
    });
    if (lstCampi->count() > 0) lstCampi->setCurrentRow(0);
}

void frmEsportaElenchi::Sposta(int verso) {
    const int da = lstCampi->currentRow();
    const int a = da + verso;
    if (da < 0 || a < 0 || a >= lstCampi->count()) return;
    QListWidgetItem* voce = lstCampi->takeItem(da);
    lstCampi->insertItem(a, voce);
    lstCampi->setCurrentRow(a);
}

void frmEsportaElenchi::Su() { Sposta(-1); }
void frmEsportaElenchi::Giu() { Sposta(1); }

void frmEsportaElenchi::SalvaImpostazioni() {
    if (ui::protetto([this] { output::SalvaCampiEsportati(core::Archivio(), Campi()); }))
        core::MsgBox("Impostazioni salvate!", core::vbInformation);
}

void frmEsportaElenchi::Conferma() {
    const std::string separatore = txtSep->text().toStdString();
    if (separatore.empty()) {
        core::MsgBox("Indicare il carattere per la separazione dei campi", core::vbExclamation);
        txtSep->setFocus();
        return;
    }
    std::optional<std::string> scelto = core::dialogs().chooseFile("Esportazione", "File di testo (*.txt)|*.txt", true, {});
    if (!scelto || scelto->empty()) return;
    std::string percorso = *scelto;
    if (!std::filesystem::path(percorso).has_extension()) percorso += ".txt";
    bool scritto = false;
    ui::protetto([&] {
        try {
            output::EsportaElenco(core::Archivio(), cbElenco->currentText().toStdString(), Campi(), separatore, percorso);
            scritto = true;
        } catch (const core::ErroreEsportazione& e) {
            core::MsgBox(e.what(), core::vbExclamation);
        }
    });
    if (scritto) core::MsgBox("File salvato su " + percorso, core::vbInformation);
}
