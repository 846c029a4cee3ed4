#include "sales/screens/frmDocumentiCerca.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "sales/numerazione.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

namespace {

template <class W>
W* nominato(W* w, const char* nome) {
    w->setObjectName(nome);
    return w;
}

ui::VetraCombo* serie(const char* nome, const std::vector<std::string>& voci, const std::string& testo, QWidget* parent) {
    auto* c = nominato(new ui::VetraCombo(parent), nome);
    c->setAperta(true);
    for (const std::string& v : voci) c->aggiungiVoce(store::Value::Text(v), v);
    c->setTesto(testo);
    return c;
}

}  // namespace

frmDocumentiCerca::frmDocumentiCerca(const sales::CriteriDocumenti& criteri, QWidget* parent)
    : ui::DialogoCerca(Nome, "Ricerca documenti", "&Conferma", parent), criteri_(criteri) {
    const auto prefissi = sales::CaricaPrefissi(criteri.tipo);
    const auto suffissi = sales::CaricaSuffissi(criteri.tipo);
    chkDataDal = nominato(new QCheckBox("Dal", this), "chkDataDal");
    chkDataAl = nominato(new QCheckBox("Al", this), "chkDataAl");
    chkDest = nominato(new QCheckBox("Cliente", this), "chkDest");
    chkNumDal = nominato(new QCheckBox("Dal numero", this), "chkNumDal");
    chkNumAl = nominato(new QCheckBox("Al numero", this), "chkNumAl");
    pkDataDal = nominato(new ui::VetraPicker(this), "pkDataDal");
    pkDataAl = nominato(new ui::VetraPicker(this), "pkDataAl");
    cbDest = nominato(new ui::VetraCombo(this), "cbDest");
    cbDest->setSorgente("Select * from qrClienti");
    cbDest->setCampoTesto("Denominazione");
    cbDest->setColonne({{"Denominazione", core::Testo("s101"), 3000}});
    ui::protetto([this] { cbDest->Aggiorna(); });
    OpPagate = nominato(new QComboBox(this), "OpPagate");
    OpPagate->addItems({"Non Pagati", "Pagati", "Entrambi"});
    cbPrefissoDal = serie("cbPrefissoDal", prefissi, criteri.prefissoDal, this);
    cbPrefissoAl = serie("cbPrefissoAl", prefissi, criteri.prefissoAl, this);
    cbSuffissoDal = serie("cbSuffissoDal", suffissi, criteri.suffissoDal, this);
    cbSuffissoAl = serie("cbSuffissoAl", suffissi, criteri.suffissoAl, this);
    txtNumDal = nominato(new QLineEdit(this), "txtNumDal");
    txtNumAl = nominato(new QLineEdit(this), "txtNumAl");

    chkDataDal->setChecked(criteri.dataDal);
    chkDataAl->setChecked(criteri.dataAl);
    chkDest->setChecked(criteri.dest);
    chkNumDal->setChecked(criteri.numDal);
    chkNumAl->setChecked(criteri.numAl);
    pkDataDal->setTesto(criteri.dal);
    pkDataAl->setTesto(criteri.al);
    cbDest->setValore(store::Value::Long(static_cast<std::int32_t>(criteri.cliente)));
    OpPagate->setCurrentIndex(criteri.pagate);
    txtNumDal->setText(criteri.numDal ? QString::number(criteri.numeroDal) : QString());
    txtNumAl->setText(criteri.numAl ? QString::number(criteri.numeroAl) : QString());

    QFormLayout* campi = campiRicerca();
    auto riga = [this](QWidget* a, QWidget* b, QWidget* c) {
        auto* w = new QWidget(this);
        auto* l = new QHBoxLayout(w);
        l->setContentsMargins(0, 0, 0, 0);
        for (QWidget* x : {a, b, c}) if (x) l->addWidget(x, 1);
        return w;
    };
    campi->addRow(chkDataDal, pkDataDal);
    campi->addRow(chkDataAl, pkDataAl);
    campi->addRow(chkDest, cbDest);
    campi->addRow("Pagamento", OpPagate);
    campi->addRow(chkNumDal, riga(cbPrefissoDal, txtNumDal, cbSuffissoDal));
    campi->addRow(chkNumAl, riga(cbPrefissoAl, txtNumAl, cbSuffissoAl));
}

bool frmDocumentiCerca::Conferma() {
    if (!ui::DataSpuntataValida(chkDataDal, pkDataDal) || !ui::DataSpuntataValida(chkDataAl, pkDataAl)) return false;
    sales::CriteriDocumenti c;
    c.tipo = criteri_.tipo;
    c.dataDal = chkDataDal->isChecked();
    c.dataAl = chkDataAl->isChecked();
    c.dest = chkDest->isChecked();
    c.numDal = chkNumDal->isChecked();
    c.numAl = chkNumAl->isChecked();
    c.dal = pkDataDal->testo();
    c.al = pkDataAl->testo();
    const store::Value cliente = cbDest->valore();
    c.cliente = cliente.isNull() ? 0 : store::CLng(cliente);
    c.pagate = OpPagate->currentIndex();
    c.prefissoDal = cbPrefissoDal->testo();
    c.prefissoAl = cbPrefissoAl->testo();
    c.suffissoDal = cbSuffissoDal->testo();
    c.suffissoAl = cbSuffissoAl->testo();
    c.numeroDal = txtNumDal->text().toLong();
    c.numeroAl = txtNumAl->text().toLong();
    criteri_ = c;
    return true;
}

std::optional<sales::CriteriDocumenti> frmDocumentiCerca::Cerca() {
    if (!Esegui()) return std::nullopt;
    return criteri_;
}
