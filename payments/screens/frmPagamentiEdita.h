// Money that moved, against a document (a collection or a payment) or against an expense: the
// counterpart, the document or expense and the instalment picked in a cascade that keeps them
// consistent, the amount proposed from what is left to pay, and the journal row written with it.
#pragma once

#include <optional>

#include "payments/pagamenti.h"
#include "ui/EditorBase.h"

class QComboBox;
class QLabel;
namespace ui {
class VetraCombo;
class VetraPicker;
class VText;
}  // namespace ui

class EditorPagamento : public EditorBase {
    Q_OBJECT
public:
    ui::VetraPicker* pkData;
    ui::VText* txtDescrizione;
    ui::VText* txtImporto;
    ui::VText* txtPagamento;   // TipoPagamento, with type-ahead
    ui::VText* txtCC;          // CC, with type-ahead
    ui::VText* VText2;         // NumeroAssegno
    ui::VetraCombo* cbCliente = nullptr;   // none against an expense
    ui::VetraCombo* cbFornitore;
    ui::VetraCombo* cbDocumenti;   // the documents, or the expenses (cbSpese)
    ui::VetraCombo* cbScadenze;
    QComboBox* cbDest;             // the journal's destination only
    QLabel* lblPagato;
    QLabel* lblDaPagare;
    QLabel* lblTitoloPagato;
    QLabel* lblTitoloDaPagare;

    // 1 incasso, 0 pagamento; against an expense always 0.
    int modo() const { return modo_; }

protected:
    EditorPagamento(const char* nome, payments::Contro contro, QWidget* parent);

    bool Valida() override;
    void DopoCarica() override;
    long Salva() override;

private:
    void ClienteCambiato();
    void FornitoreCambiato();
    void DocumentoCambiato();
    void ScadenzaCambiata();
    void ImportoCambiato();
    void Descrivi();
    // What is still due and already paid, shown and kept for the checks.
    void MostraDovuto(double pagato, double daPagare);
    void Azzera();
    void Elenca(ui::VetraCombo* combo, const std::string& sorgente);
    void Scegli(ui::VetraCombo* combo, long id);
    void Completamento(ui::VText* casella, const char* campo);
    // The mode, document, expense and instalment the record starts from, from the caller or the row.
    void Origine(long& documento, long& spesa, long& scadenza);

    payments::Contro contro_;
    int modo_ = payments::ModoIncasso;
    bool caricamento_ = true;
    double giaPagato_ = 0;
    std::optional<payments::Dovuto> scelto_;           // the document or expense picked
    std::optional<payments::Dovuto> sceltaScadenza_;   // the instalment picked
};

// Collections and payments against a document.
class frmPagamentiEdita : public EditorPagamento {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmPagamentiEdita";
    explicit frmPagamentiEdita(QWidget* parent = nullptr) : EditorPagamento(Nome, payments::Contro::Documento, parent) {}
};

// Payments against an expense.
class frmPagamentiSpeseEdita : public EditorPagamento {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmPagamentiSpeseEdita";
    explicit frmPagamentiSpeseEdita(QWidget* parent = nullptr) : EditorPagamento(Nome, payments::Contro::Spesa, parent) {}
};
