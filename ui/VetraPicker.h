// A date that can be left blank: a text box for dd/mm/yyyy and a calendar to pick from.
#pragma once

#include <QWidget>
#include <QVariant>

#include <string>

#include "store/value.h"

class QAbstractButton;
class QLineEdit;
class QToolButton;

namespace ui {

class VetraPicker : public QWidget {
    Q_OBJECT
public:
    explicit VetraPicker(QWidget* parent = nullptr);

    // The field it is bound to, kept as the control's "DataField" property for the binding walk.
    void setDataField(const std::string& campo) { setProperty("DataField", QString::fromStdString(campo)); }
    std::string dataField() const { return property("DataField").toString().toStdString(); }

    // A Date, or Null when blank. A text that is no date also reads as Null: check dataValida().
    store::Value valore() const;
    void setValore(const store::Value& v);   // Null blanks it
    bool vuoto() const;
    bool dataValida() const;                 // blank counts as not valid
    void pulisci();
    std::string testo() const;
    void setTesto(const std::string& t);
    QLineEdit* casella() const { return testo_; }

signals:
    void cambiato();

private:
    void apriCalendario();

    QLineEdit* testo_;
    QToolButton* calendario_;
};

// A date that a ticked box of a search asks for must be there and be a date: otherwise the text of
// s82 or s81, the focus back to the picker, and false. An unticked box passes.
bool DataSpuntataValida(const QAbstractButton* spunta, VetraPicker* data);

}  // namespace ui
