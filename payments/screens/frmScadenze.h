// The register of instalments across every document and expense: those to collect (active mode)
// or those to pay (passive mode), with the stored filter of its search, the payment of the row in
// front, and the print.
#pragma once

#include "payments/registri.h"
#include "ui/RegistroBase.h"

class QPushButton;

class frmScadenze : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmScadenze";
    // The mode is the one the panel set (payments::ScadenzeAttive or ScadenzePassive, plus
    // ConAvvisiDiOggi for the day's reminders).
    explicit frmScadenze(QWidget* parent = nullptr);

    int modo() const { return modo_; }
    const payments::FiltroScadenze& filtro() const { return filtro_; }

    // The stored filter, and the list read with it.
    void ImpostaFiltro(const payments::FiltroScadenze& filtro);
    // btnPaga: the payment editor on the row's instalment, then its flags and the row again.
    void Paga();
    // Command1: the source of the mode, with no filter.
    void SelezionaTutto();
    void StampaScadenze();

    QPushButton* btnPaga;
    QPushButton* btnStampa;
    QPushButton* Command1;
    QPushButton* imgCerca;

protected:
    // F3 and imgCerca: frmScadenzeCerca on the stored filter.
    void Ricerca() override;

private:
    std::optional<Apertura> aperturaPer(ui::Elenco& elenco, Modalita modalita) override;
    payments::RigaScadenza rigaCorrente();

    int modo_ = payments::ScadenzeAttive;
    payments::FiltroScadenze filtro_;
};
