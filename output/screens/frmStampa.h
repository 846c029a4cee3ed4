// The print screen: the layouts of the section the caller names, the default first; preview of the
// chosen one with the caller's statements and parameters, a copy under a new name, deletion, the
// default. The registers reach it through core::Stampa.
#pragma once

#include <QDialog>

#include "core/stampa.h"
#include "ui/report/Motore.h"

class QPushButton;
namespace ui {
class VetraCombo;
}

class frmStampa : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmStampa";
    explicit frmStampa(QWidget* parent = nullptr);

    // Lists the section's layouts of the current company and keeps what the caller hands over.
    void Edita(const core::RichiestaStampa& richiesta);

    void Anteprima();
    void Duplica();
    void Elimina();
    void Modifica();
    void Predefinito();

    ui::VetraCombo* VetraCombo1;
    QPushButton* btnAnteprima;
    QPushButton* btnDuplica;
    QPushButton* btnElimina;
    QPushButton* btnModifica;
    QPushButton* btnPredefinito;
    QPushButton* btnAnnulla;

    ui::report::Motore Report;

private:
    void Carica(const store::Value& scegli);
    void AbilitaComandi();
    // Gives the engine the file, the databases, the folders and the caller's names, and loads it.
    void PreparaMotore();
    std::string FileScelto() const;

    core::RichiestaStampa richiesta_;
};

// What core::Stampa runs once the output area is registered: frmStampa, filled, shown modally.
void MostraStampa(const core::RichiestaStampa& richiesta);
