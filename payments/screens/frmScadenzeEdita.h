// One instalment typed by hand against a document: its counterpart, the document with what is
// already scheduled on it and what is left, the due date, the amount, the reminder date and its
// place in the series.
#pragma once

#include "payments/scadenze_manuali.h"
#include "ui/EditorBase.h"

class QLabel;
namespace ui {
class VetraCombo;
class VetraPicker;
class VText;
}  // namespace ui

class frmScadenzeEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmScadenzeEdita";
    explicit frmScadenzeEdita(QWidget* parent = nullptr);

    ui::VetraCombo* cbCliente;
    ui::VetraCombo* cbFornitore;
    ui::VetraCombo* cbDocumenti;
    QLabel* lblPagato;     // already scheduled on the document
    QLabel* lblDaPagare;   // still to schedule
    ui::VText* txtDescrizione;
    ui::VetraPicker* pkData;
    ui::VText* txtImporto;
    ui::VText* txtRata;
    ui::VText* txtRate;
    ui::VetraPicker* pkAvviso;

protected:
    // spesa: the instalment of an expense, picked among the expenses (Spesa), with no customer.
    frmScadenzeEdita(const char* nome, bool spesa, QWidget* parent);

    bool Valida() override;
    void DopoCarica() override;
    void PrimaDiAggiornare(store::Recordset& rs) override;

private:
    // The document picked: the counterparts follow it, its figures show, and the amount and the
    // description are proposed from what is left.
    void DocumentoCambiato(bool proponi);
    void ControparteCambiata(const char* campo, ui::VetraCombo* combo);
    void Descrivi();

    const bool spesa_;
    const char* campoScelto_;   // the field the pick is written to: Documento or Spesa
    payments::DocumentoScelto scelto_;
    bool latoFornitori_ = false;   // the documents offered are those of the suppliers' side
    bool caricamento_ = true;   // until the record is loaded, and while the counterparts follow the document
};

// One instalment typed by hand against an expense: the supplier, the expense with what is already
// scheduled on it and what is left, and the rest as for a document.
class frmScadenzeSpeseEdita : public frmScadenzeEdita {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmScadenzeSpeseEdita";
    explicit frmScadenzeSpeseEdita(QWidget* parent = nullptr) : frmScadenzeEdita(Nome, true, parent) {}
};
