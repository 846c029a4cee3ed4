#include "ui/DialogoCerca.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

namespace ui {

DialogoCerca::DialogoCerca(const char* nome, const QString& titolo, const QString& conferma, QWidget* parent)
    : QDialog(parent), Command1(comando("Command1", conferma, this)), Command2(comando("Command2", "&Annulla", this)),
      campi_(new QFormLayout) {
    setObjectName(nome);
    setModal(true);
    setWindowTitle(titolo);
    auto* colonna = new QVBoxLayout(this);
    colonna->addLayout(campi_);
    auto* comandi = new QHBoxLayout;
    comandi->addStretch(1);
    comandi->addWidget(Command1);
    comandi->addWidget(Command2);
    colonna->addLayout(comandi);
    Command1->setDefault(true);
    connect(Command1, &QPushButton::clicked, this, [this] {
        protetto([this] {
            if (!Conferma()) return;
            confermato_ = true;
            accept();
        });
    });
    connect(Command2, &QPushButton::clicked, this, &QDialog::reject);
}

QCheckBox* DialogoCerca::spunta(const char* nome, const QString& testo, bool attiva) {
    auto* c = new QCheckBox(testo, this);
    c->setObjectName(nome);
    c->setChecked(attiva);
    return c;
}

VetraPicker* DialogoCerca::data(const char* nome, const std::string& testo) {
    auto* p = new VetraPicker(this);
    p->setObjectName(nome);
    p->setTesto(testo);
    return p;
}

VetraCombo* DialogoCerca::elenco(const char* nome, const std::string& sorgente, const char* campo,
                                 const std::string& titolo, long valore) {
    auto* c = new VetraCombo(this);
    c->setObjectName(nome);
    c->setSorgente(sorgente);
    c->setCampoTesto(campo);
    c->setColonne({{campo, titolo, 3000}});
    protetto([c] { c->Aggiorna(); });
    c->setValore(store::Value::Long(static_cast<std::int32_t>(valore)));
    return c;
}

QComboBox* DialogoCerca::scelta(const char* nome, const QStringList& voci, int indice) {
    auto* c = new QComboBox(this);
    c->setObjectName(nome);
    c->addItems(voci);
    c->setCurrentIndex(indice);
    return c;
}

void DialogoCerca::aggiungiRigheDate() {
    campi_->addRow(chkDataDal, pkDataDal);
    campi_->addRow(chkDataAl, pkDataAl);
}

bool DialogoCerca::DateValide() const {
    return DataSpuntataValida(chkDataDal, pkDataDal) && DataSpuntataValida(chkDataAl, pkDataAl);
}

bool DialogoCerca::Esegui() {
    confermato_ = false;
    eseguiModale(this, [this] { return exec() == QDialog::Accepted; });
    return confermato_;
}

}  // namespace ui
