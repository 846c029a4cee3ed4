// A line of a document and a charge of a document. Each save brings the document's totals up to
// date: the editor itself when it was opened alone, the list's holder when it came from a list.
#pragma once

#include "ui/EditorBase.h"

namespace ui {
class VetraCombo;
class VText;
}  // namespace ui

class frmMovimentiEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmMovimentiEdita";
    explicit frmMovimentiEdita(QWidget* parent = nullptr);

    ui::VetraCombo* cbServizi;
    ui::VText* txtDesc;
    ui::VText* txtRiferimenti;
    ui::VText* txtQuantita;
    ui::VText* txtPrezzo;
    ui::VText* txtSc1;
    ui::VText* txtSc2;
    ui::VText* txtImporto;
    ui::VetraCombo* cbIva;

    // txtImporto from quantity, price and the two discounts; a price that is no number changes nothing.
    void CalcolaImporto();

protected:
    bool Valida() override;
    void DopoCarica() override;
    void DopoSalvato(long id) override;

private:
    void ServizioScelto();
    long documento();

    bool caricamento_ = true;
};

class frmSpeseDocumentiEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmSpeseDocumentiEdita";
    explicit frmSpeseDocumentiEdita(QWidget* parent = nullptr);

    ui::VText* VText1;   // DescSpesa
    ui::VText* VText2;   // Imponibile
    ui::VetraCombo* cbIva;

protected:
    bool Valida() override;
    void DopoSalvato(long id) override;
};

// The editors of a line or a charge opened alone, for the document the panel set as their mode.
std::optional<long> NuovaRigaDocumento();
std::optional<long> NuovaSpesaDocumento();
