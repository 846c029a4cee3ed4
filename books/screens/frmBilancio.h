// The period's figures on one screen: registered against moved money, in and out, with their
// differences, and a chart of the twelve months from the start of the period.
#pragma once

#include <QDialog>

#include <functional>
#include <vector>

#include "books/bilancio.h"

class QComboBox;
class QLabel;
class QPushButton;

class QChart;
class QChartView;

namespace ui {
class VetraPicker;
}

class frmBilancio : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmBilancio";
    explicit frmBilancio(QWidget* parent = nullptr);

    void AggiornaBilancio();
    void Stampa();

    QComboBox* cbMese;
    ui::VetraPicker* pkDataDal;
    ui::VetraPicker* pkDataAl;
    QLabel* lblSpese;
    QLabel* lblIvaSpese;
    QLabel* lblVendite;
    QLabel* lblIvaVendite;
    QLabel* lblPagamenti;
    QLabel* lblIncassi;
    QLabel* lblImponibile;
    QLabel* lblIva;
    QLabel* lblSaldoFuoriCassa;
    QLabel* lblSaldoInCassa;
    QPushButton* btnStampa;
    QPushButton* btnConferma;
    QChartView* grafico;

private:
    void SenzaRientro(const std::function<void()>& cambio);
    void CambioMese();
    void CambioData();
    void DisegnaPeriodo();
    void Disegna(const std::vector<books::MeseBilancio>& mesi);

    bool Aggiornando = false;
};
