// The services catalogue: the register, with where each service was sold, and its editor.
#pragma once

#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

class QCheckBox;
class QLabel;
class QTabWidget;

namespace ui {
class Dettaglio;
class VText;
class VetraCombo;
}  // namespace ui

class frmServizi : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmServizi";
    explicit frmServizi(QWidget* parent = nullptr);

    QTabWidget* sTab;
    QLabel* lblDesc2;
    ui::Dettaglio* GridMovimenti;
};

class frmServiziEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmServiziEdita";
    explicit frmServiziEdita(QWidget* parent = nullptr);

    ui::VText* VText1;          // DescServizio
    ui::VText* VText11;         // CodiceInterno
    ui::VText* txtPrezzoBase;   // CostoUnitario
    ui::VetraCombo* cbIva;      // CodiceIva
    QCheckBox* Check1;          // NonStampare

protected:
    bool Valida() override;
};
