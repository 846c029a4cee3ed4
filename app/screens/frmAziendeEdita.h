// The editor of a managed company. A new company also receives its report folder and report list.
#pragma once

#include "ui/EditorBase.h"

namespace ui { class VText; }

class frmAziendeEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmAziendeEdita";
    explicit frmAziendeEdita(QWidget* parent = nullptr);

    ui::VText* VText1;   // Denominazione

protected:
    bool Valida() override;
    void DopoSalvato(long id) override;
};
