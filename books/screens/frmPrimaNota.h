// The cash journal of one destination (Banca, Cassa, Altro): a month, a search or the whole
// destination, with the balance before the period, the period's entrate and uscite, the balance at
// its end and the running balance at the current row; typed rows are added, changed and deleted
// here, rows mirroring a payment are changed in part and never deleted.
#pragma once

#include "books/prima_nota.h"
#include "ui/RegistroBase.h"

class QComboBox;
class QLabel;

class frmPrimaNota : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmPrimaNota";
    explicit frmPrimaNota(QWidget* parent = nullptr);

    // What the panel's commands open under this name, by the mode they set: 0 the register,
    // 1 the customers' overview, 2 the suppliers' overview.
    static bool ApriDalMenu();
    // "Partita doppia (Ordinato per destinatario)": the period asked, the scratch table built, printed.
    static bool PartitaDoppia();

    long destinazione() const;
    const books::PeriodoPrimaNota& periodo() const { return Periodo; }
    const books::Resoconto& resoconto() const { return Resoconto; }

    // The month of today for the destination chosen (cbDest, also the first load).
    void CambiaDestinazione();
    // Command1: every row of the destination.
    void RicaricaTutto();
    // The search screen over the last choices; its statement goes to the list.
    void CercaPrimaNota();
    void RefResoconto();
    void RefStatus();
    void StampaRegistro();
    void Excel();

    QComboBox* cbDest;
    QLabel* lblStatus;
    QLabel* lblSaldoPrecedente;
    QLabel* lblTotEntrate;
    QLabel* lblTotUscite;
    QLabel* lblSaldoAttuale;
    QLabel* lblSaldoRiga;   // the running balance at the current row

    int ModoFiltro = 2;
    books::CriteriPrimaNota Criteri;   // handed to and from the search

protected:
    bool PrimaDiEliminare(long id) override;
    void DopoEliminato(long id) override;
    void DopoSalvato(long id) override;
    void DopoCambioRiga() override;
    void Ricerca() override { CercaPrimaNota(); }

private:
    void caricaIstruzione(const std::string& sql);

    books::PeriodoPrimaNota Periodo;
    books::Resoconto Resoconto;
};
