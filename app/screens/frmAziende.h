// The register of the managed companies.
#pragma once

#include "ui/RegistroBase.h"

class frmAziende : public RegistroBase {
    Q_OBJECT
public:
    explicit frmAziende(QWidget* parent = nullptr);

    // Stricter than other registers: the current company is refused, two questions are asked,
    // and the company's archives and report folder go with it.
    void EliminaAzienda();

protected:
    std::unique_ptr<EditorBase> creaEditor() override;
};
