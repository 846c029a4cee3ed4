// The register of users, with the rights of the current row beside the list.
#pragma once

#include "ui/RegistroBase.h"

class QLabel;
class QLineEdit;
class QListWidget;

class frmUtenti : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmUtenti";
    explicit frmUtenti(QWidget* parent = nullptr);

    QLabel* lblUser;
    QLineEdit* txtPass;
    QListWidget* ListPrivilegi;

protected:
    // The rights of the current row, ticked in ListPrivilegi; all unticked with no row.
    void DopoCambioRiga() override;
};
