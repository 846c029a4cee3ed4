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
    righeDate(criteri, "Dal", "Al");
    chkDest = spunta("chkDest", "Cliente", criteri.dest);
    cbDest = elenco("cbDest", "Select * from qrClienti", "Denominazione", core::Testo("s101"), criteri.cliente);
    OpPagate = scelta("OpPagate", {"Non Pagati", "Pagati", "Entrambi"}, criteri.pagate);
    chkNumDal = spunta("chkNumDal", "Dal numero", criteri.numDal);
    cbPrefissoDal = serie("cbPrefissoDal", prefissi, criteri.prefissoDal, this);
    txtNumDal = nominato(new QLineEdit(criteri.numDal ? QString::number(criteri.numeroDal) : QString(), this), "txtNumDal");
    cbSuffissoDal = serie("cbSuffissoDal", suffissi, criteri.suffissoDal, this);
    chkNumAl = spunta("chkNumAl", "Al numero", criteri.numAl);
    cbPrefissoAl = serie("cbPrefissoAl", prefissi, criteri.prefissoAl, this);
    txtNumAl = nominato(new QLineEdit(criteri.numAl ? QString::number(criteri.numeroAl) : QString(), this), "txtNumAl");
    cbSuffissoAl = serie("cbSuffissoAl", suffissi, criteri.suffissoAl, this);

    QFormLayout* campi = campiRicerca();
    auto riga = [this](QWidget* a, QWidget* b, QWidget* c) {
        auto* w = new QWidget(this);
        auto* l = new QHBoxLayout(w);
        l->setContentsMargins(0, 0, 0, 0);
        for (QWidget* x : {a, b, c}) if (x) l->addWidget(x, 1);
        return w;
    };
    campi->addRow(chkDest, cbDest);
    campi->addRow("Pagamento", OpPagate);
    campi->addRow(chkNumDal, riga(cbPrefissoDal, txtNumDal, cbSuffissoDal));
    campi->addRow(chkNumAl, riga(cbPrefissoAl, txtNumAl, cbSuffissoAl));
}

bool frmDocumentiCerca::Conferma() {
    if (!DateValide()) return false;
    sales::CriteriDocumenti c;
    c.tipo = criteri_.tipo;
    leggiDate(c);
    c.dest = chkDest->isChecked();
    c.numDal = chkNumDal->isChecked();
    c.numAl = chkNumAl->isChecked();
    c.cliente = ui::IdDi(cbDest->valore());
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
