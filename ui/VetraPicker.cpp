#include "ui/VetraPicker.h"

#include <QAbstractButton>
#include <QCalendarWidget>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>
#include <QWidgetAction>

#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "store/convert.h"
#include "store/format.h"
#include "ui/Stile.h"

namespace ui {

VetraPicker::VetraPicker(QWidget* parent)
    : QWidget(parent), testo_(new QLineEdit(this)), calendario_(new QToolButton(this)) {
    auto* l = new QHBoxLayout(this);
    l->setContentsMargins(0, 0, 0, 0);
    l->setSpacing(2);
    testo_->setPlaceholderText("gg/mm/aaaa");
    testo_->setMaxLength(10);
    testo_->setObjectName("testo");
    calendario_->setIcon(icona("x-office-calendar"));
    if (calendario_->icon().isNull()) calendario_->setText("...");
    calendario_->setFocusPolicy(Qt::NoFocus);
    l->addWidget(testo_, 1);
    l->addWidget(calendario_);
    setFocusProxy(testo_);
    connect(testo_, &QLineEdit::textChanged, this, &VetraPicker::cambiato);
    connect(calendario_, &QToolButton::clicked, this, &VetraPicker::apriCalendario);
    // A date typed loosely (1/2/24) is shown in full once the box is left.
    connect(testo_, &QLineEdit::editingFinished, this, [this] {
        if (dataValida()) setValore(valore());
    });
}

store::Value VetraPicker::valore() const {
    auto d = store::ParseDateText(testo());
    if (!d || testo_->text().trimmed().isEmpty()) return store::Value::Null();
    return store::Value::Date(store::DateValue(store::Value::Date(*d)));
}

void VetraPicker::setValore(const store::Value& v) {
    if (v.isNull()) return pulisci();
    double serial = v.kind() == store::Value::Kind::Text ? store::CDate(v) : v.number();
    testo_->setText(QString::fromStdString(store::ShortDate(serial)));
}

bool VetraPicker::vuoto() const { return testo_->text().trimmed().isEmpty(); }

bool VetraPicker::dataValida() const { return !vuoto() && store::ParseDateText(testo()).has_value(); }

void VetraPicker::pulisci() { testo_->clear(); }

std::string VetraPicker::testo() const { return testo_->text().toStdString(); }

void VetraPicker::setTesto(const std::string& t) { testo_->setText(QString::fromStdString(t)); }

void VetraPicker::apriCalendario() {
    QMenu menu(this);
    auto* cal = new QCalendarWidget(&menu);
    cal->setFirstDayOfWeek(Qt::Monday);
    if (dataValida()) {
        store::DateParts p = store::SplitDate(valore().number());
        cal->setSelectedDate(QDate(p.year, p.month, p.day));
    }
    auto* azione = new QWidgetAction(&menu);
    azione->setDefaultWidget(cal);
    menu.addAction(azione);
    connect(cal, &QCalendarWidget::clicked, &menu, [this, &menu](QDate d) {
        setValore(store::Value::Date(store::DateSerial(d.year(), d.month(), d.day())));
        menu.close();
    });
    menu.exec(mapToGlobal(QPoint(0, height())));
}

bool DataSpuntataValida(const QAbstractButton* spunta, VetraPicker* data) {
    if (!spunta->isChecked()) return true;
    if (data->vuoto()) core::MsgBox(core::Testo("s82"), core::vbExclamation);
    else if (!data->dataValida()) core::MsgBox(core::Testo("s81"), core::vbExclamation);
    else return true;
    data->casella()->setFocus();
    return false;
}

}  // namespace ui
