#include "output/screens/frmEsportaFatture.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <filesystem>

#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/esercizio.h"
#include "core/esportazione.h"
#include "output/esporta_fatture.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Progresso.h"
#include "ui/Stile.h"
#include "ui/VetraPicker.h"

namespace {

QLineEdit* NomeFile(const char* nome, const char* predefinito, QWidget* parent) {
    auto* t = new QLineEdit(predefinito, parent);
    t->setObjectName(nome);
    t->setMaxLength(100);
    return t;
}

std::string NomeScritto(const QLineEdit* t) { return t->text().trimmed().toStdString(); }

}  // namespace

frmEsportaFatture::frmEsportaFatture(QWidget* parent)
    : QDialog(parent),
      pkDal(new ui::VetraPicker(this)),
      pkAl(new ui::VetraPicker(this)),
      Text1(NomeFile("Text1", "FATS", this)),
      Text2(NomeFile("Text2", "ANAS", this)) {
    setObjectName(Nome);
    setWindowTitle("Esportazione Files Fatture/Clienti");
    pkDal->setObjectName("pkDal");
    pkAl->setObjectName("pkAl");

    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);
    auto* periodo = new QGroupBox("Periodo da cui estrarre le fatture", this);
    auto* date = new QHBoxLayout(periodo);
    auto* lblDal = new QLabel("&Dal", periodo);
    lblDal->setBuddy(pkDal->casella());
    auto* lblAl = new QLabel("&Al", periodo);
    lblAl->setBuddy(pkAl->casella());
    date->addWidget(lblDal);
    date->addWidget(pkDal);
    date->addSpacing(ui::Spaziatura * 2);
    date->addWidget(lblAl);
    date->addWidget(pkAl);
    date->addStretch(1);
    colonna->addWidget(periodo);

    auto* nomi = new QFormLayout;
    nomi->addRow("File &fatture (.txt)", Text1);
    nomi->addRow("File &clienti (.txt)", Text2);
    colonna->addLayout(nomi);
    colonna->addStretch(1);
    colonna->addWidget(ui::confermaAnnulla(this, btnConferma, btnAnnulla));
    setTabOrder(pkDal, pkAl);
    setTabOrder(pkAl, Text1);
    setTabOrder(Text1, Text2);
    setTabOrder(Text2, btnConferma);
    setTabOrder(btnConferma, btnAnnulla);

    connect(btnConferma, &QPushButton::clicked, this, [this] {
        if (Conferma()) accept();
    });
    connect(btnAnnulla, &QPushButton::clicked, this, &QDialog::reject);

    ui::protetto([this] {
        pkDal->setValore(store::Value::Date(core::DataInizioEsercizio()));
        pkAl->setValore(store::Value::Date(core::DataFineEsercizio()));
    });
    resize(440, 200);
}

bool frmEsportaFatture::Conferma() {
    if (!pkDal->dataValida()) {
        core::MsgBox("Inserire una data di inizio periodo!", core::vbExclamation);
        pkDal->setFocus();
        return false;
    }
    if (!pkAl->dataValida()) {
        core::MsgBox("Inserire una data di fine periodo!", core::vbExclamation);
        pkAl->setFocus();
        return false;
    }
    const double dal = store::CDbl(pkDal->valore());
    const double al = store::CDbl(pkAl->valore());
    if (dal > al) {
        core::MsgBox("La data di inizio periodo è successiva alla data di fine periodo!", core::vbExclamation);
        pkDal->setFocus();
        return false;
    }
    for (QLineEdit* t : {Text1, Text2}) {
        if (std::string errore = core::ControllaNomeFile(NomeScritto(t)); !errore.empty()) {
            core::MsgBox(errore, core::vbExclamation);
            t->setFocus();
            return false;
        }
    }
    if (Text1->text().trimmed().compare(Text2->text().trimmed(), Qt::CaseInsensitive) == 0) {
        core::MsgBox("I file delle fatture e dei clienti devono avere nomi diversi!", core::vbExclamation);
        Text2->setFocus();
        return false;
    }
    const std::optional<std::string> cartella = core::dialogs().chooseFolder("Cartella in cui salvare i file", {});
    if (!cartella || cartella->empty()) return false;
    const std::string fatture = (std::filesystem::path(*cartella) / (NomeScritto(Text1) + ".txt")).string();
    const std::string clienti = (std::filesystem::path(*cartella) / (NomeScritto(Text2) + ".txt")).string();

    bool scritto = false;
    ui::protetto([&] {
        ui::Progresso progresso("Esportazione in corso...", this);
        progresso.show();
        try {
            output::EsportaFatture(core::Archivio(), dal, al, fatture, clienti, [&](bool anagrafiche, long fatti, long totale) {
                if (fatti == 1) progresso.setMassimo(static_cast<int>(totale));
                if (fatti % 64 == 0 || fatti == totale)
                    progresso.avanza(static_cast<int>(fatti), std::string(anagrafiche ? "Clienti " : "Fatture ") +
                                                                  std::to_string(fatti) + " di " + std::to_string(totale));
            });
            scritto = true;
        } catch (const core::ErroreEsportazione& e) {
            progresso.hide();
            core::MsgBox(e.what(), core::vbExclamation);
        }
    });
    if (!scritto) return false;
    core::MsgBox("Fatture salvate in " + fatture + "\n" + "Clienti salvati in " + clienti, core::vbInformation);
    return true;
}
