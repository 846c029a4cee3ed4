// The choice of a date range: used by the closing, by the change of a period's end and by the
// double-entry overview of the journal.
#pragma once

#include <QDialog>

class QPushButton;
namespace ui { class VetraPicker; }

class frmSelPeriodo : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmSelPeriodo";
    explicit frmSelPeriodo(QWidget* parent = nullptr);

    // Confirm puts the two dates in the session's PeriodoDal and PeriodoAl; cancel sets PeriodoAl
    // to the no-date sentinel, which the callers read as "no choice".
    void Conferma();
    void Annulla();

    ui::VetraPicker* pkDataDal;
    ui::VetraPicker* pkDataAl;
    QPushButton* btnConferma;
    QPushButton* btnAnnulla;

protected:
    void reject() override;
};
