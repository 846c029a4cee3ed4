// The statement of all suppliers, grouped by supplier with the balance restarting at each, made
// and printed in one command; and the statement run with its progress window that the customer
// and supplier registers reach through core::GeneraEstratto.
#pragma once

#include <QDialog>

class QCheckBox;
class QPushButton;

namespace ui {
class VetraPicker;
}

// books::GeneraEstratto with the progress box "Generazione estratto ..." while source rows are read.
void GeneraEstrattoConProgresso(long intestatario, long tipo, bool soloAperte, double dal, double al, bool gruppi);

class frmEstrattoContoGenerale : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmEstrattoContoGenerale";
    explicit frmEstrattoContoGenerale(QWidget* parent = nullptr);

    void Genera();

    QCheckBox* chkPartiteAperte;
    ui::VetraPicker* pkDal;
    ui::VetraPicker* pkAl;
    QPushButton* btnConferma;
    QPushButton* btnAnnulla;
};
