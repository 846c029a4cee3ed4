// The editor of a managed company. A new company also receives its report folder and report list.
#pragma once

#include "ui/EditorBase.h"

namespace ui { class VText; }

class frmAziendeEdita : public EditorBase {
    Q_OBJECT
public:
    explicit frmAziendeEdita(QWidget* parent = nullptr);

    // Opens the editor on a company by id, or for a new one; true when confirmed.
    static bool ApriRecord(long id, bool nuovo, QWidget* parent = nullptr);

    ui::VText* VText1;   // Denominazione

protected:
    bool Valida() override;

private:
    void ConfermaAzienda();
    long idSalvato() const;
};
