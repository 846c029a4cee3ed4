// VAT codes: the register and its editor.
#pragma once

#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

namespace ui {
class VText;
}

class frmCodiciIva : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmCodiciIva";
    explicit frmCodiciIva(QWidget* parent = nullptr);
};

class frmCodiciIvaEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmCodiciIvaEdita";
    explicit frmCodiciIvaEdita(QWidget* parent = nullptr);

    ui::VText* VText1;   // DescIva
    ui::VText* VText2;   // AliquotaIva

protected:
    bool Valida() override;
};
