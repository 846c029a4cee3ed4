// The search dialogs of the registers: captioned criteria one per row, a confirm command
// (Command1) and a cancel (Command2) below them. Confirmed, the screen keeps its criteria for the
// register; cancelled, nothing changes.
#pragma once

#include <QDialog>

#include <string>

class QCheckBox;
class QFormLayout;
class QPushButton;

namespace ui {

class VetraCombo;
class VetraPicker;

class DialogoCerca : public QDialog {
    Q_OBJECT
public:
    QPushButton* Command1;
    QPushButton* Command2;

protected:
    DialogoCerca(const char* nome, const QString& titolo, const QString& conferma, QWidget* parent);

    QFormLayout* campiRicerca() const { return campi_; }
    // A criterion's tick box, ticked as the register last left it, and a date picker holding the
    // date as it was typed; the screen places them.
    QCheckBox* spunta(const char* nome, const QString& testo, bool attiva);
    VetraPicker* data(const char* nome, const std::string& testo);
    // A pick list of one column, on campo of sorgente, holding the id valore.
    VetraCombo* elenco(const char* nome, const std::string& sorgente, const char* campo, const std::string& titolo,
                       long valore);
    // Shows modally; true when the criteria were confirmed.
    bool Esegui();
    // Command1: checks the criteria and keeps them; false leaves the dialog open.
    virtual bool Conferma() = 0;

private:
    QFormLayout* campi_;
    bool confermato_ = false;
};

}  // namespace ui
