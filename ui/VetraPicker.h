// A date that can be left blank: a text box for dd/mm/yyyy and a calendar to pick from.
#pragma once

#include <QWidget>

#include <string>

#include "store/value.h"

class QLineEdit;
class QToolButton;

namespace ui {

class VetraPicker : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataFieldQ WRITE setDataFieldQ)
public:
    explicit VetraPicker(QWidget* parent = nullptr);

    void setDataField(const std::string& campo) { dataField_ = campo; }
    const std::string& dataField() const { return dataField_; }

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
    QString dataFieldQ() const { return QString::fromStdString(dataField_); }
    void setDataFieldQ(const QString& s) { dataField_ = s.toStdString(); }
    void apriCalendario();

    std::string dataField_;
    QLineEdit* testo_;
    QToolButton* calendario_;
};

}  // namespace ui
