// The instalments of a document from its payment term: a preview that follows the counting date,
// the month-end choice and the reminder, and the same plan written on confirm.
#pragma once

#include <QDialog>

#include "payments/generazione_scadenze.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;
namespace ui {
class VetraPicker;
}

class frmGeneraScadenze : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmGeneraScadenze";
    explicit frmGeneraScadenze(QWidget* parent = nullptr);

    // Reads the document and its term, previews, shows modally; true when the plan was written.
    bool Edita(long documento);
    // What the registry runs for the screen opened by name: Edita on the id the opener set as the
    // screen's mode (core::ImpostaModoSchermo), over the main window.
    static bool Mostra();
    void Carica(long documento);
    // The plan of the controls: shown in Grid, or written.
    std::vector<payments::RataPiano> Costruisci(bool scrittura);

    QLabel* lblDoc;
    QLabel* lblPagamento;
    QLabel* lblImportoDoc;
    ui::VetraPicker* pkPrimaRata;
    QCheckBox* chkFineMese;
    QLineEdit* txtGiorniAvviso;
    QComboBox* cbAvviso;
    QTableWidget* Grid;
    QPushButton* btnConferma;
    QPushButton* btnAnnulla;

private:
    void Conferma();
    payments::RegolaScadenze regola() const;

    payments::DocumentoDaScadenzare documento_;
    payments::RegolaScadenze iniziale_;
    bool caricamento_ = false;
};
