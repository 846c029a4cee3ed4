// The text box of every editor: plain or numeric, with the characters it accepts, a display mask
// applied when the box is left, a default for new records, and its field binding.
#pragma once

#include <QLineEdit>
#include <QVariant>

#include <string>

#include "store/value.h"

namespace ui {

class VText : public QLineEdit {
    Q_OBJECT
public:
    explicit VText(QWidget* parent = nullptr);

    // The field it is bound to, kept as the control's "DataField" property for the binding walk.
    void setDataField(const std::string& campo) { setProperty("DataField", QString::fromStdString(campo)); }
    std::string dataField() const { return property("DataField").toString().toStdString(); }

    // Numeric: digits and the decimal comma (and the thousands point); no sign unless the allowed
    // characters say so. Setting allowed characters restricts typing and pasting to them.
    void setNumerico(bool numerico);
    bool numerico() const { return numerico_; }
    void setCaratteriAmmessi(const std::string& caratteri);
    const std::string& caratteriAmmessi() const { return ammessi_; }
    void setMaschera(const std::string& maschera);      // "#,0.00", ...
    const std::string& maschera() const { return maschera_; }
    void setPredefinito(const std::string& testo);      // text of a new record
    // A lone point may be the decimal comma typed with the keypad's key (see testo()).
    void setPuntoDecimale(bool attivo) { puntoDecimale_ = attivo; }
    const std::string& predefinito() const { return predefinito_; }

    std::string testo() const;
    void setTesto(const std::string& t);                // formatted by the mask in numeric mode
    double numero() const;                              // a blank or unreadable numeric box is 0
    // What the box writes to a field of that type: a number for numbers (0 when blank), a date or
    // Null for dates, the text for text.
    store::Value valorePer(store::FieldType tipo) const;

protected:
    void focusOutEvent(QFocusEvent* e) override;
    // In a box for amounts the point, of the keyboard or of the keypad, is the decimal comma; a
    // second point, or a comma after it, shows it was a thousands separator after all.
    void keyPressEvent(QKeyEvent* e) override;
    void focusInEvent(QFocusEvent* e) override;

private:
    bool virgolaDalPunto_ = false;   // the comma in the box was typed as a point
    void aggiornaValidatore();
    void applicaMaschera();

    bool numerico_ = false;
    std::string ammessi_;
    std::string maschera_;
    std::string predefinito_;
    bool puntoDecimale_ = false;
};

}  // namespace ui
