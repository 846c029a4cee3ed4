// Customers: the register with everything that hangs on a customer on its tabs (statement, open
// instalments, payments, lines sold, visits), and the customer's editor.
#pragma once

#include "ui/Anagrafica.h"

class QCheckBox;

namespace ui {
class Dettaglio;
class VText;
class VetraCombo;
class VetraPicker;
}  // namespace ui

class frmClienti : public RegistroAnagrafica {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmClienti";
    explicit frmClienti(QWidget* parent = nullptr);

    ui::Dettaglio* GridEstratto;
    ui::Dettaglio* GridScadenze;
    ui::Dettaglio* GridPagamenti;
    ui::Dettaglio* GridMovimenti;
    ui::Dettaglio* GridAssistenze;
    QCheckBox* chkPartiteAperte;
    ui::VetraPicker* pkEstrattoDal;
    ui::VetraPicker* pkEstrattoAl;
    QComboBox* cbMese;
    QPushButton* btnGeneraFavAssistenze;

    // btnGeneraFavAssistenze: a new fattura of the current customer's visits of a period.
    void GeneraFattura();

private:
    QWidget* schedaEstratto(ui::Dettaglio* lista);
    std::string GeneraEstratto(long cliente);
    void StampaEstratto();
    QWidget* schedaAssistenze(ui::Dettaglio* lista);
    void CaricaAssistenze();
    void aggiungiComandiPagamenti();
};

class frmClientiEdita : public EditorAnagrafica {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmClientiEdita";
    explicit frmClientiEdita(QWidget* parent = nullptr);

    ui::VetraCombo* VetraCombo4;   // IvaApplicata
    ui::VetraCombo* VetraCombo5;   // CondizioniPagamento
    ui::VText* VText20;   // Sconto1
    ui::VText* VText21;   // Sconto2

protected:
    bool Valida() override;
};
