// The instalments tab of a document register: the document's instalments and its payments, each
// list with its own commands and right, and the figures of what is collected and still due, for
// the document in front and for all the documents of the last search.
#pragma once

#include <QWidget>

#include <functional>

#include "sales/documenti.h"

class QGroupBox;
class QLabel;
class QPushButton;
namespace ui {
class Dettaglio;
}

class SchedaScadenze : public QWidget {
    Q_OBJECT
public:
    // tipo: the register's kind. criteri: the register's last search, read again for each
    // all-documents summary. rileggiDocumento: reads the register's rows again once Pagato changed.
    SchedaScadenze(long tipo, const sales::CriteriDocumenti& criteri, std::function<void()> rileggiDocumento,
                   QWidget* parent);

    // The document in front, 0 when the register has no row. Out of sight, the tab reads it when shown.
    void Carica(long documento);
    // After the document or one of its lines changed: the state of the instalment in front.
    void AggiornaStatoScadenza();
    // The plan of instalments of the document, then its instalments again.
    void GeneraScadenze();
    // What is collected and due on the document in front (fatture only), and on all the documents.
    void AggiornaResocontoDocumento();
    void AggiornaResocontoTutti();

    ui::Dettaglio* fmScadenze;    // GridScadenze, its commands guarded by the instalments' rights
    ui::Dettaglio* fmPagamenti;   // GridPagamenti, guarded by the collections' rights
    QGroupBox* fmResoconto;
    QLabel* lblIncassato;
    QLabel* lblDaIncassare;
    QLabel* lblImportoTutti;
    QLabel* lblIncassatoTutti;
    QLabel* lblDaIncassareTutti;
    QPushButton* btnGeneraScadenze;
    QPushButton* btnIncassa;

protected:
    void showEvent(QShowEvent* e) override;

private:
    std::optional<long> documentoPerScadenza(bool nuova);
    std::optional<long> documentoPerPagamento();
    // A new payment of the document, on the instalment in front while it is still open.
    void Incassa();
    void pagamentiCambiati();

    long tipo_;
    const sales::CriteriDocumenti& criteri_;
    std::function<void()> rileggiDocumento_;
    long documento_ = 0;
    long scadenzaDelPagamento_ = 0;   // the instalment of the payment being deleted
    bool resocontoDaLeggere_ = true;
};
