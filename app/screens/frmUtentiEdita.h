// The editor of a user: name, password, company and the list of rights.
#pragma once

#include <vector>

#include "ui/EditorBase.h"

class QListWidget;
namespace ui {
class VText;
class VetraCombo;
}  // namespace ui

// Fills a rights list with the captions of the rights, each with a tick box. A list the user may
// not change shows the ticks only.
void RiempiListaPrivilegi(QListWidget* lista, bool modificabile);
void SpuntaPrivilegi(QListWidget* lista, const std::vector<bool>& spunte);

class frmUtentiEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmUtentiEdita";
    explicit frmUtentiEdita(QWidget* parent = nullptr);

    ui::VText* VText1;          // Username
    ui::VText* VText2;          // Password
    ui::VetraCombo* cbAzienda;  // Azienda
    QListWidget* ListPrivilegi;

protected:
    bool Valida() override;
    void DopoCarica() override;
    void PrimaDiAggiornare(store::Recordset& rs) override;

private:
    std::vector<bool> spunte() const;
};
