// Suppliers: the register with the supplier's open instalments, payments and statement on its
// tabs, and the supplier's editor.
#pragma once

#include "ui/Anagrafica.h"

namespace ui {
class Dettaglio;
class VetraPicker;
}  // namespace ui

class frmFornitori : public RegistroAnagrafica {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmFornitori";
    explicit frmFornitori(QWidget* parent = nullptr);

    // The payments of the current supplier, within the two dates when they hold one.
    std::string SorgentePagamenti(long fornitore) const;

    ui::Dettaglio* GridScadenze;
    ui::Dettaglio* GridPagamenti;
    ui::Dettaglio* GridEstratto;
    ui::VetraPicker* pkDal;
    ui::VetraPicker* pkAl;
    QPushButton* btnPagaScadenza;
    QPushButton* btnModificaPagamento;
    QPushButton* btnEliminaPagamento;

    void EliminaPagamento();
    void StampaEstratto();

private:
    QWidget* schedaPagamenti(ui::Dettaglio* lista);
};

class frmFornitoriEdita : public EditorAnagrafica {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmFornitoriEdita";
    explicit frmFornitoriEdita(QWidget* parent = nullptr);

protected:
    bool Valida() override;
};
