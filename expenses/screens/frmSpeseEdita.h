// The head of an expense (supplier, kind and class, payment term, withholding, linked file) and
// one line of an expense. Each save brings the expense's stored totals up to date.
#pragma once

#include "ui/EditorBase.h"

class QCheckBox;
class QPlainTextEdit;
class QPushButton;
namespace ui {
class VetraCombo;
class VetraPicker;
class VText;
}  // namespace ui

class frmSpeseEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmSpeseEdita";
    explicit frmSpeseEdita(QWidget* parent = nullptr);

    ui::VetraPicker* pkData;
    ui::VText* txtNum;
    ui::VetraCombo* cbFornitore;
    ui::VetraCombo* cbTipoSpesa;
    ui::VetraCombo* cbClassificazione;
    ui::VetraCombo* cbPagamento;
    ui::VText* VText1;        // RitenutaAcconto
    ui::VText* txtFile;
    QPushButton* Command1;    // Sfoglia
    QCheckBox* Check1;        // EscludiEstrattoConto
    QPlainTextEdit* Text1;    // Note

    // The path of the file chosen with the open dialog goes in txtFile.
    void Sfoglia();

protected:
    bool Valida() override;
    void DopoCarica() override;
    void DopoSalvato(long id) override;
};

class frmSpeseMovEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmSpeseMovEdita";
    explicit frmSpeseMovEdita(QWidget* parent = nullptr);

    ui::VText* txtDesc;
    ui::VText* txtImporto;
    ui::VetraCombo* cbIva;
    QPushButton* btnScorpora;

    // The amount less the VAT of the chosen code, unrounded: pressed twice, it divides twice.
    void Scorpora();

protected:
    bool Valida() override { return true; }
    void DopoCarica() override;
    void DopoSalvato(long id) override;

private:
    long spesa() const;
};

// A line opened alone, for the expense the panel set as its mode.
std::optional<long> NuovaRigaSpesa();
