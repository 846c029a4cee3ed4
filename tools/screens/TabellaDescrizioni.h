// Code tables made of a description alone (expense kinds, expense classes): one register and one
// editor serve them all, told apart by what each table is.
#pragma once

#include <string>
#include <vector>

#include "core/campi.h"
#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

namespace ui {
class VText;
}

struct TabellaDescrizioni {
    const char* registro;               // frmTipiSpesa
    const char* editor;                 // frmTipiSpesaEdita
    std::string tabella;                // TipiSpesa
    std::string campo;                  // DescTipoSpesa
    const core::TabellaCampi& campi;    // the table's fields, the description first
    std::string titolo;                 // key or caption of the register
    std::string titoloEditor;           // key or caption of the editor
    std::vector<std::string> ricerca;   // fields of the search choice
    ui::Guardia guardia;
    std::string domanda;                // key or text of the delete question, followed by " name?"
};

class EditorDescrizioni : public EditorBase {
    Q_OBJECT
public:
    EditorDescrizioni(const TabellaDescrizioni& t, QWidget* parent);

    ui::VText* VText1;

protected:
    bool Valida() override;
};

class RegistroDescrizioni : public RegistroBase {
    Q_OBJECT
public:
    RegistroDescrizioni(const TabellaDescrizioni& t, QWidget* parent);
};
