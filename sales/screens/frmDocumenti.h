// The register of the documents of one kind (fatture, note di debito, preventivi, note di credito
// ricevute): the kind comes from the panel as the screen's mode.
#pragma once

#include "sales/documenti.h"
#include "ui/RegistroBase.h"

class QCheckBox;
class QFrame;
class QLabel;
class QPushButton;
class QTabWidget;
class SchedaScadenze;
namespace ui {
class Dettaglio;
class VBars;
}

class frmDocumenti : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmDocumenti";
    // tipo 0: the one the panel set for this screen, fatture when none.
    explicit frmDocumenti(QWidget* parent = nullptr, long tipo = 0);

    long Tipo() const { return tipo_; }
    // The statement of the whole kind, before any search.
    std::string SorgenteTipo() const;

    QCheckBox* chkRaggruppa;    // the list grouped by counterparty
    ui::VBars* BarTotali;       // the six stored totals of the current row
    QFrame* fmTestata;          // the header of the current row
    QLabel* lblDataDal;         // the period of a document made from service visits
    QLabel* lblDataAl;
    QTabWidget* sTab;
    ui::Dettaglio* Movimenti;   // tab 0, GridMov
    ui::Dettaglio* Spese;       // tab 1, GridSpese
    ui::Dettaglio* Iva;         // tab 2, GridIva: the VAT summary
    SchedaScadenze* Scadenze = nullptr;   // tab 3, instalments and payments; none for quotes

    // Groups the list by counterparty when chkRaggruppa is ticked, then reads it again.
    void Raggruppa();
    // The whole kind again, with no search.
    void SelezionaTutto();
    // frmDocumentiCerca over the last criteria; its statement becomes the list's source.
    void CercaDocumenti();
    sales::CriteriDocumenti Criteri;   // the last search, read by the summaries and the print
    // A quote rewritten in place as the next fattura, dated today.
    void Converti();
    // The print of the list and of the withholding certificate, through the print screen.
    void Stampa();
    void StampaRitenuta();

protected:
    bool PrimaDiEliminare(long id) override;
    void DopoEliminato(long id) override;
    void DopoSalvato(long id) override;
    // A line or a charge saved or deleted: the totals, written through the grid's row.
    void DopoRigheCambiate() override;
    void DopoCambioRiga() override;
    // F3 opens frmDocumentiCerca.
    void Ricerca() override;

private:
    QWidget* paginaRighe();
    QFrame* testata();
    std::optional<Apertura> aperturaPer(ui::Elenco& elenco, Modalita modalita) override;

    long tipo_;
};
