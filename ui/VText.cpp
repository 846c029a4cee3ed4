#include "ui/VText.h"

#include <QKeyEvent>
#include <QValidator>

#include "store/convert.h"
#include "ui/Legami.h"
#include "store/format.h"

namespace ui {

namespace {

// Refuses any text holding a character outside the allowed set, typed or pasted alike.
class ValidatoreCaratteri : public QValidator {
public:
    ValidatoreCaratteri(QString ammessi, QObject* parent) : QValidator(parent), ammessi_(std::move(ammessi)) {}
    State validate(QString& input, int&) const override {
        for (QChar c : input)
            if (!ammessi_.contains(c)) return Invalid;
        return Acceptable;
    }

private:
    QString ammessi_;
};

constexpr const char* CaratteriNumerici = "0123456789,.";

}  // namespace

VText::VText(QWidget* parent) : QLineEdit(parent) {}

void VText::setNumerico(bool numerico) {
    numerico_ = numerico;
    setAlignment(numerico ? Qt::AlignRight | Qt::AlignVCenter : Qt::AlignLeft | Qt::AlignVCenter);
    aggiornaValidatore();
}

void VText::setCaratteriAmmessi(const std::string& caratteri) {
    ammessi_ = caratteri;
    aggiornaValidatore();
}

void VText::setMaschera(const std::string& maschera) {
    maschera_ = maschera;
    applicaMaschera();
}

void VText::setPredefinito(const std::string& testo) {
    predefinito_ = testo;
    setTesto(testo);
}

void VText::aggiornaValidatore() {
    std::string ammessi = !ammessi_.empty() ? ammessi_ : numerico_ ? CaratteriNumerici : "";
    delete validator();
    setValidator(ammessi.empty() ? nullptr : new ValidatoreCaratteri(QString::fromStdString(ammessi), this));
}

// With the point as the decimal comma, a lone point that does not stand before a group of three
// digits is the comma: "50.5" and "122.00" are decimals, "1.000" and "1.000,50" are thousands.
std::string VText::testo() const {
    QString t = text();
    if (puntoDecimale_ && !t.contains(',') && t.count('.') == 1) {
        const qsizetype punto = t.indexOf('.');
        if (t.size() - punto - 1 != 3) t[punto] = ',';
    }
    return t.toStdString();
}

void VText::setTesto(const std::string& t) {
    setText(QString::fromStdString(t));
    applicaMaschera();
}

double VText::numero() const {
    auto n = store::ParseNumberText(testo());
    return n ? *n : 0;
}

store::Value VText::valorePer(store::FieldType tipo) const { return valoreDaTesto(testo(), tipo); }

void VText::focusOutEvent(QFocusEvent* e) {
    applicaMaschera();
    QLineEdit::focusOutEvent(e);
}

void VText::keyPressEvent(QKeyEvent* e) {
    const std::string ammessi = !ammessi_.empty() ? ammessi_ : numerico_ ? CaratteriNumerici : "";
    const bool punto = e->key() == Qt::Key_Period, virgola = e->key() == Qt::Key_Comma;
    if ((!punto && !virgola) || ammessi.find(',') == std::string::npos) return QLineEdit::keyPressEvent(e);
    const bool haVirgola = text().contains(',');
    if (haVirgola && virgolaDalPunto_) {   // "1.234" being typed: its comma was a separator
        const int cursore = cursorPosition();
        setText(text().replace(',', '.'));
        setCursorPosition(cursore);
        virgolaDalPunto_ = false;
        insert(punto ? QStringLiteral(".") : QStringLiteral(","));
    } else if (punto && !haVirgola) {
        insert(QStringLiteral(","));
        virgolaDalPunto_ = true;
    } else if (virgola) {
        QLineEdit::keyPressEvent(e);
    }
}

void VText::focusInEvent(QFocusEvent* e) {
    virgolaDalPunto_ = false;
    QLineEdit::focusInEvent(e);
}

void VText::applicaMaschera() {
    if (maschera_.empty() || text().isEmpty()) return;
    auto n = store::ParseNumberText(testo());
    if (n) setText(QString::fromStdString(store::Format(store::Value::Double(*n), maschera_)));
}

}  // namespace ui
