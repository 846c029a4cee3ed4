// The register of the managed companies.
#pragma once

#include "ui/RegistroBase.h"

class frmAziende : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmAziende";
    explicit frmAziende(QWidget* parent = nullptr);

protected:
    // Stricter than other registers: the current company is refused, two questions are asked,
    // and the company's archives and report folder go with it.
    bool PrimaDiEliminare(long id) override;
    void DopoEliminato(long id) override;
    void DopoSalvato(long id) override;
};
