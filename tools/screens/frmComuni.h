// The table of towns of Utilità.mdb: its register and the editor of one town with its CAP and
// province. Addresses keep the town as text, so deleting a town touches no customer or company.
#pragma once

#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

namespace ui {
class VText;
}

class frmComuni : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmComuni";
    explicit frmComuni(QWidget* parent = nullptr);
};

class frmComuniEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmComuniEdita";
    explicit frmComuniEdita(QWidget* parent = nullptr);

    ui::VText* txtComune;
    ui::VText* txtCap;
    ui::VText* txtProvincia;

protected:
    bool Valida() override;
};
