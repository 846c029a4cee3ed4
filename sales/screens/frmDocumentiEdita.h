// The header of a document: a customer's (fattura, nota di debito, preventivo) or a supplier's
// (nota di credito ricevuta). One editor twice: the two differ only in the counterparty, its
// combo and what choosing it pulls in.
#pragma once

#include "ui/EditorBase.h"

class QCheckBox;
class QPlainTextEdit;
namespace ui {
class VetraCombo;
class VetraPicker;
class VText;
}  // namespace ui

class frmDocumentiEditaBase : public EditorBase {
    Q_OBJECT
public:
    long tipo() const { return tipo_; }

    ui::VText* txtNum;
    ui::VetraCombo* cbPrefisso;
    ui::VetraCombo* cbSuffisso;
    ui::VetraPicker* pkData;
    ui::VetraPicker* pkDataReg;
    ui::VetraCombo* cbClienti;      // Cliente, or Fornitore in the supplier editor
    ui::VetraCombo* cbPagamento;
    ui::VText* txtSconto1;
    ui::VText* txtSconto2;
    ui::VText* txtSconto3;
    ui::VText* txtSconto4;
    ui::VText* VText1;              // RitenutaAcconto
    ui::VText* VText2;              // Maggiorazione
    ui::VText* VText3;              // Colli
    ui::VetraPicker* VetraPicker1;  // DataScadAcconto
    QCheckBox* Check1;              // EscludiEstrattoConto
    QPlainTextEdit* Text1;          // Note

    // txtNum takes the next number of the sequence of the prefix and suffix shown.
    void Rinumera();

protected:
    frmDocumentiEditaBase(const char* nome, bool fornitori, long tipo, QWidget* parent);

    bool Valida() override;
    void DopoCarica() override;
    void PrimaDiAggiornare(store::Recordset& rs) override;
    void DopoSalvato(long id) override;

    bool controllaEsercizio_ = true;   // the date must lie in the current Esercizio

private:
    void ControparteCambiata();

    bool fornitori_;
    long tipo_;
    long numeroAttuale_ = 0;
    bool caricamento_ = true;   // until the record is loaded: its combos change without pulling in
};

class frmDocumentiEdita : public frmDocumentiEditaBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmDocumentiEdita";
    // tipo 0: the one the panel set for this screen, a fattura when none.
    explicit frmDocumentiEdita(QWidget* parent = nullptr, long tipo = 0);
};

class frmDocumentiFornitoriEdita : public frmDocumentiEditaBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmDocumentiFornitoriEdita";
    explicit frmDocumentiFornitoriEdita(QWidget* parent = nullptr, long tipo = 0);
};
