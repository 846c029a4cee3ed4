// Payment terms: the register, with the days of each instalment beside the list, and the editor,
// where the number of instalments enables the day boxes in use.
#pragma once

#include <array>

#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

class QCheckBox;
namespace ui {
class VText;
}

class frmCondizioniPagamento : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmCondizioniPagamento";
    explicit frmCondizioniPagamento(QWidget* parent = nullptr);

    QCheckBox* Check1;   // FineMese of the current row, shown in the side panel

private:
    void costruisciPannello();
};

class frmCondizioniPagamentoEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmCondizioniPagamentoEdita";
    explicit frmCondizioniPagamentoEdita(QWidget* parent = nullptr);

    ui::VText* VText1;                    // DescPagamento
    ui::VText* txtRate;                   // Rate
    std::array<ui::VText*, 12> txtRata;   // Rata1..Rata12
    QCheckBox* Check1;                    // FineMese

    // The day boxes follow the number of instalments: those in use enabled, the others "0" and disabled.
    void AbilitaRate();

protected:
    bool Valida() override;
    void DopoCarica() override;
};
