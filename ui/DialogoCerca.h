// The search dialogs of the registers: captioned criteria one per row, a confirm command
// (Command1) and a cancel (Command2) below them. Confirmed, the screen keeps its criteria for the
// register; cancelled, nothing changes.
#pragma once

#include <QCheckBox>
#include <QDialog>

#include <string>

#include "ui/VetraPicker.h"

class QComboBox;
class QFormLayout;
class QPushButton;

namespace ui {

class VetraCombo;

class DialogoCerca : public QDialog {
    Q_OBJECT
public:
    QPushButton* Command1;
    QPushButton* Command2;
    // The date range the searches have: from and to, each a tick box and a picker.
    QCheckBox* chkDataDal = nullptr;
    VetraPicker* pkDataDal = nullptr;
    QCheckBox* chkDataAl = nullptr;
    VetraPicker* pkDataAl = nullptr;

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
    // A list of fixed entries, showing the one at indice.
    QComboBox* scelta(const char* nome, const QStringList& voci, int indice);
    // The range's two rows, ticked and filled from the criteria's dataDal, dal, dataAl, al as the
    // register last left them.
    template <class Criteri>
    void righeDate(const Criteri& c, const QString& testoDal, const QString& testoAl) {
        chkDataDal = spunta("chkDataDal", testoDal, c.dataDal);
        pkDataDal = data("pkDataDal", c.dal);
        chkDataAl = spunta("chkDataAl", testoAl, c.dataAl);
        pkDataAl = data("pkDataAl", c.al);
        aggiungiRigheDate();
    }
    // A ticked date that is not a date says so and keeps the dialog open.
    bool DateValide() const;
    template <class Criteri>
    void leggiDate(Criteri& c) const {
        c.dataDal = chkDataDal->isChecked();
        c.dataAl = chkDataAl->isChecked();
        c.dal = pkDataDal->testo();
        c.al = pkDataAl->testo();
    }
    // Shows modally; true when the criteria were confirmed.
    bool Esegui();
    // Command1: checks the criteria and keeps them; false leaves the dialog open.
    virtual bool Conferma() = 0;

private:
    void aggiungiRigheDate();

    QFormLayout* campi_;
    bool confermato_ = false;
};

}  // namespace ui
