// The register of money recorded: collections (mode 1) or payments (mode 0), searched on the
// description between two dates, each row opening the editor of its document or expense.
#pragma once

#include "payments/registri.h"
#include "ui/RegistroBase.h"

class QPushButton;
namespace ui {
class VetraPicker;
}

class frmPagamenti : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmPagamenti";
    // The mode is the one the panel set: payments::RegistroIncassi or RegistroPagamenti.
    explicit frmPagamenti(QWidget* parent = nullptr);

    int modo() const { return modo_; }

    // btnCerca: the description searched between the two dates.
    void CercaPagamenti();
    void StampaPagamenti();

    ui::VetraPicker* pkDal;
    ui::VetraPicker* pkAl;
    QPushButton* btnStampa;

protected:
    // The question, then the settlement flags read while the payment still exists.
    bool PrimaDiEliminare(long id) override;
    // The payment's journal row goes with it.
    void DopoEliminato(long id) override;

private:
    // The editors are opened here, by name, and the list read again: the grid opens none itself.
    std::optional<Apertura> aperturaPer(ui::Elenco& elenco, Modalita modalita) override;

    int modo_ = payments::RegistroPagamenti;
};
