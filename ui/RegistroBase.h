// The skeleton every register shares: a list over one statement with search, new, change, delete
// and close, and the keys of the list. A register says only what differs: its statement, columns,
// search fields, delete guard and question, and which editor it opens.
#pragma once

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/dao.h"
#include "ui/VetraGrid.h"

class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QPushButton;

namespace ui {
class VBars;
}

class EditorBase;

// The text of a language key ("s77"), or the caption itself when it is no key ("Giorni per rata").
std::string Didascalia(const std::string& chiaveOTesto);

class RegistroBase : public QWidget {
    Q_OBJECT
public:
    // One entry of the search choice: the caption's language key (or a literal caption) and its field.
    struct Ricerca {
        std::string chiave;
        std::string campo;
    };
    // One table that may refer to the record, and the caption shown when it does.
    struct Riferimento {
        std::string tabella;
        std::string descrizione;
    };
    struct Guardia {
        std::string campo;                  // the referring field in every table listed
        std::vector<Riferimento> tabelle;
    };
    struct Definizione {
        std::string titolo;                 // the screen's caption, already a text
        std::string sorgente;               // "Select * from CodiciIva"
        std::string ordinamento;            // sort field(s)
        ui::Direzione direzione = ui::Direzione::Crescente;
        std::vector<ui::Colonna> colonne;
        std::vector<Ricerca> ricerca;
        std::optional<Guardia> guardia;
        // The delete question for the current row ("Eliminare l'iva " + DescIva + "?").
        std::function<std::string(store::Recordset&)> domandaElimina;
        int dirittoModifica = 0;            // rights position tested before new and delete; 0 none
        bool ricaricaDopoElimina = false;   // reload the list after a delete, answered or not
    };

    ui::VetraGrid* griglia() const { return Grid; }
    ui::VBars* pannello() const { return VisCampi; }   // null unless the register asked for one

    // "Select * from T where F Like '*text*'" with the text's apostrophes doubled; a '*' the user
    // typed stays a wildcard.
    static std::string IstruzioneRicerca(const std::string& sorgente, const std::string& campo,
                                         const std::string& testo);

    // The commands, as the buttons and keys run them.
    void Cerca();
    void Nuovo();
    void Modifica();
    void Elimina();

protected:
    RegistroBase(const char* nome, QWidget* parent = nullptr);

    // Register load: statement, sort, columns, search choice, captions; then the first rows.
    void carica(Definizione d);
    // A side panel (VisCampi) beside the list, following its row; call before carica.
    ui::VBars* aggiungiPannello();
    // A command of the screen's own, placed before btnChiudi.
    QPushButton* aggiungiComando(const char* nome, const QString& testo);

    // The editor of this register, made fresh for each use, owned by the caller.
    virtual std::unique_ptr<EditorBase> creaEditor() = 0;
    // The database of the list and of the delete guard; unset, the session's archive.
    void setDatabase(store::DatabasePtr db);
    store::DatabasePtr database() const;

    ui::VetraGrid* Grid;
    ui::VBars* VisCampi = nullptr;
    QComboBox* cbCerca;
    QLineEdit* txtCerca;
    QPushButton* btnCerca;
    QPushButton* btnNuovo;
    QPushButton* btnModifica;
    QPushButton* btnElimina;
    QPushButton* btnChiudi;

private:
    void costruisciVista();
    bool consentito() const;
    bool movimentato(long id);
    void apriEditor(bool nuovo);

    Definizione def_;
    store::DatabasePtr db_;
    QHBoxLayout* centro_;
    QHBoxLayout* comandi_;
};

// What the screen registry runs for a register: a fresh window, unloaded when it is closed.
template <class Registro>
bool ApriRegistro() {
    auto* r = new Registro;
    r->setAttribute(Qt::WA_DeleteOnClose);
    r->show();
    return true;
}
