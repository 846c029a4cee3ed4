// The register of users, with the rights of the current row beside the list.
#pragma once

#include "ui/RegistroBase.h"

class QLabel;
class QLineEdit;
class QListWidget;

class frmUtenti : public RegistroBase {
    Q_OBJECT
public:
    explicit frmUtenti(QWidget* parent = nullptr);

    QLabel* lblUser;
    QLineEdit* txtPass;
    QListWidget* ListPrivilegi;

protected:
    std::unique_ptr<EditorBase> creaEditor() override;

private:
    void MostraPrivilegi();
};
