#include "ui/Legami.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVariant>
#include <QWidget>

#include "store/convert.h"
#include "store/format.h"
#include "ui/VText.h"
#include "ui/VetraCombo.h"
#include "ui/VetraPicker.h"

namespace ui {

namespace {

bool campoDiTesto(const store::Field& f) {
    return f.Type() == store::FieldType::Text || f.Type() == store::FieldType::Memo;
}

void limitaLunghezza(QLineEdit* e, const store::Field& f) {
    if (f.Type() == store::FieldType::Text && f.Size() > 0) e->setMaxLength(f.Size());
}

// The text a box shows for a value: Null is blank, numbers with the decimal comma, dates dd/mm/yyyy.
std::string testoDelValore(const store::Value& v) { return v.isNull() ? std::string() : store::ConcatText(v); }

}  // namespace

store::Value valoreDaTesto(const std::string& testo, store::FieldType tipo) {
    using T = store::FieldType;
    auto numero = [&] {
        auto n = store::ParseNumberText(testo);
        return n ? *n : 0.0;
    };
    switch (tipo) {
        case T::Text:
        case T::Memo:
            return store::Value::Text(testo);
        case T::Date: {
            auto d = store::ParseDateText(testo);
            return d ? store::Value::Date(*d) : store::Value::Null();
        }
        case T::Boolean:
            return store::Value::Bool(numero() != 0);
        case T::Byte:
        case T::Integer:
        case T::Long:
            return store::Value::Long(static_cast<std::int32_t>(store::Round(numero())));
        default:
            return store::Value::Double(numero());
    }
}

std::string campoLegato(const QWidget* controllo) {
    QVariant v = controllo->property("DataField");
    if (!v.isValid() || v.toString().isEmpty()) v = controllo->property("CampoDestinazione");
    return v.isValid() ? v.toString().toStdString() : std::string();
}

std::vector<QWidget*> controlliLegati(const QWidget* radice) {
    std::vector<QWidget*> out;
    for (QWidget* w : radice->findChildren<QWidget*>())
        if (!campoLegato(w).empty()) out.push_back(w);
    return out;
}

void caricaControllo(QWidget* controllo, store::Recordset& rs) {
    std::string nome = campoLegato(controllo);
    store::Field& f = rs.Fields(nome);
    store::Value v = f.value();
    if (auto* t = qobject_cast<VText*>(controllo)) {
        t->setTesto(testoDelValore(v));
        limitaLunghezza(t, f);
    } else if (auto* e = qobject_cast<QLineEdit*>(controllo)) {
        e->setText(QString::fromStdString(testoDelValore(v)));
        limitaLunghezza(e, f);
    } else if (auto* p = qobject_cast<QPlainTextEdit*>(controllo)) {
        p->setPlainText(QString::fromStdString(testoDelValore(v)));
    } else if (auto* c = qobject_cast<VetraCombo*>(controllo)) {
        c->setValore(v.isNull() ? store::Value::Long(0) : v);
    } else if (auto* d = qobject_cast<VetraPicker*>(controllo)) {
        d->setValore(v);
    } else if (auto* k = qobject_cast<QCheckBox*>(controllo)) {
        k->setChecked(!v.isNull() && store::CBool(v));
    } else if (auto* l = qobject_cast<QLabel*>(controllo)) {
        l->setText(QString::fromStdString(store::Format(v, l->property("Maschera").toString().toStdString())));
    }
}

void preparaControllo(QWidget* controllo, store::Recordset& rs) {
    if (auto* e = qobject_cast<QLineEdit*>(controllo)) limitaLunghezza(e, rs.Fields(campoLegato(controllo)));
}

void salvaControllo(QWidget* controllo, store::Recordset& rs) {
    store::Field& f = rs.Fields(campoLegato(controllo));
    if (auto* t = qobject_cast<VText*>(controllo)) {
        f.setValue(t->valorePer(f.Type()));
    } else if (auto* e = qobject_cast<QLineEdit*>(controllo)) {
        f.setValue(valoreDaTesto(e->text().toStdString(), f.Type()));
    } else if (auto* p = qobject_cast<QPlainTextEdit*>(controllo)) {
        f.setValue(valoreDaTesto(p->toPlainText().toStdString(), f.Type()));
    } else if (auto* c = qobject_cast<VetraCombo*>(controllo)) {
        store::Value v = c->valore();
        if (v.isNull() && !campoDiTesto(f)) v = store::Value::Long(0);
        f.setValue(v);
    } else if (auto* d = qobject_cast<VetraPicker*>(controllo)) {
        f.setValue(d->valore());
    } else if (auto* k = qobject_cast<QCheckBox*>(controllo)) {
        f.setValue(store::Value::Bool(k->isChecked()));
    }
}

void svuotaControllo(QWidget* controllo) {
    if (auto* e = qobject_cast<QLineEdit*>(controllo)) e->clear();
    else if (auto* p = qobject_cast<QPlainTextEdit*>(controllo)) p->clear();
    else if (auto* c = qobject_cast<VetraCombo*>(controllo)) c->setValore(store::Value::Null());
    else if (auto* d = qobject_cast<VetraPicker*>(controllo)) d->pulisci();
    else if (auto* k = qobject_cast<QCheckBox*>(controllo)) k->setChecked(false);
    else if (auto* l = qobject_cast<QLabel*>(controllo)) l->clear();
}

void caricaControlli(const QWidget* radice, store::Recordset& rs) {
    for (QWidget* w : controlliLegati(radice)) caricaControllo(w, rs);
}

void preparaControlli(const QWidget* radice, store::Recordset& rs) {
    for (QWidget* w : controlliLegati(radice)) preparaControllo(w, rs);
}

void salvaControlli(const QWidget* radice, store::Recordset& rs) {
    auto controlli = controlliLegati(radice);
    for (auto it = controlli.rbegin(); it != controlli.rend(); ++it) salvaControllo(*it, rs);
}

std::string testoCampo(store::Recordset& rs, const std::string& campo, const std::string& maschera) {
    return store::Format(rs.get(campo), maschera);
}

}  // namespace ui
