// The register of expenses: grouped by class and kind, with the supplier beside the list, the
// lines, the VAT summary, the instalments and payments with their sums, and the linked file.
#pragma once

#include "expenses/spese.h"
#include "ui/RegistroBase.h"

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTabWidget;
class QUrl;
namespace ui {
class Dettaglio;
class VBars;
}  // namespace ui

class frmSpese : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmSpese";
    explicit frmSpese(QWidget* parent = nullptr);

    // The statement of every expense, before any search.
    static constexpr const char* SorgenteBase = "Select * from qrSpese Order By DescClassificazione,DescTipoSpesa";

    QTabWidget* sTab;
    ui::Dettaglio* GridMov;         // tab 0
    ui::Dettaglio* GridIva;         // tab 1
    ui::Dettaglio* GridScadenze;    // tab 2, with GridPagamenti and the sums
    ui::Dettaglio* GridPagamenti;
    QLabel* lblIncassato;           // paid on the current expense
    QLabel* lblDaIncassare;
    QLabel* lblImportoTutti;        // over every expense of the search
    QLabel* lblIncassatoTutti;
    QLabel* lblDaIncassareTutti;
    QLineEdit* Text1;               // tab 3: the linked file
    QPlainTextEdit* txtNote;
    ui::VBars* BarTotali;
    QPushButton* btnGeneraScadenze;
    QPushButton* btnPaga;
    QPushButton* btnFile;

    expenses::CriteriSpese Criteri;   // the last search, read by the sums

    // frmSpeseCerca over the last criteria; its statement becomes the list's source.
    void CercaSpese();
    void SelezionaTutto();
    void GeneraScadenze();
    // Opens the linked file with the program the desktop associates with it.
    void ApriFile();
    // Where the file goes: the desktop's handler, unless a test put its own; false when none takes it.
    static inline std::function<bool(const QUrl&)> apriFile;
    // The sums of tab 2: the current expense's, and those of every expense of the search.
    void CalcolaResoconto();
    void CalcolaResocontoSpese();

protected:
    bool PrimaDiEliminare(long id) override;
    void DopoEliminato(long id) override;
    void DopoSalvato(long id) override;
    void DopoCambioRiga() override;
    // A line saved or deleted: the totals, written through the grid's row, and the paid flags.
    void DopoRigheCambiate() override;
    void Ricerca() override { CercaSpese(); }

private:
    std::optional<Apertura> aperturaPer(ui::Elenco& elenco, Modalita modalita) override;
    // Changing an expense that has instalments or payments is done only when the user says so.
    bool ConfermaModificaSpesa();
    void AggiornaPagata();
    std::optional<long> spesaPerScadenza(bool nuova);
    std::optional<long> spesaPerPagamento();
    void PagamentiCambiati();
    long scadenzaDelPagamento_ = 0;   // the instalment of the payment being deleted
    QWidget* schedaResoconto();
    QWidget* schedaFile();
    void TabCambiata();
};
