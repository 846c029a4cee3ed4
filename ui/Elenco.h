// A list with its commands: what a register's grid and the line lists of a master record share.
// The definition says the statement, the columns from the entity's field table, the colour rules,
// the right that guards each command, the editor and the delete guard; the list runs new, change
// and delete with the standard refusal, and tells its host through hooks.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/campi.h"
#include "store/dao.h"
#include "ui/EditorBase.h"
#include "ui/VetraGrid.h"

namespace ui {

// Rights positions guarding a list's commands; 0 means no right is tested.
struct DirittiComandi {
    int vedere = 0;     // opening the register, or seeing the rows of a line list
    int nuovo = 0;
    int modifica = 0;
    int elimina = 0;
    int stampa = 0;
};

// Tests a right; a refusal shows the standard text (MsgNegato) with the warning icon. 0 passes.
bool consentito(int posizione);

// The tables that may refer to the record, searched on one field before a delete.
struct Riferimento {
    std::string tabella;
    std::string descrizione;   // a language key or a fixed text
};
struct Guardia {
    std::string campo;
    std::vector<Riferimento> tabelle;
};

struct DefinizioneElenco {
    std::string sorgente;               // may carry its own Where and Order By
    std::string ordinamento;            // sort field(s)
    Direzione direzione = Direzione::Crescente;
    const core::TabellaCampi* campi = nullptr;
    std::vector<std::string> colonne;   // fields of the table shown, in order
    std::vector<RegolaColore> colori;
    DirittiComandi diritti;
    FabbricaEditor editor;              // unset: a list that is only read
    std::optional<Guardia> guardia;
    // The question asked before a delete; unset, no question (a hook asks its own).
    std::function<std::string(store::Recordset&)> domandaElimina;
    store::DatabasePtr database;        // unset: the open archive
    bool ricaricaDopoElimina = false;   // the rows are read again after a delete, answered or not
};

// A column of the grid from a row of a field table: caption looked up, mask and alignment kept.
Colonna ColonnaDa(const core::Campo& campo);

class Elenco;

// What the holder of a list is told, and what it decides.
class OspiteElenco {
public:
    virtual ~OspiteElenco() = default;
    // How the editor opens for a new or changed row; nothing stops the command (for a line, the
    // master that could not be saved first).
    virtual std::optional<Apertura> aperturaPer(Elenco& elenco, Modalita modalita) = 0;
    // After the refusals and the delete guard, before the question: false stops the delete.
    virtual bool primaDiEliminare(Elenco&, long /*id*/) { return true; }
    virtual void dopoEliminato(Elenco&, long /*id*/) {}
    virtual void dopoSalvato(Elenco&, long /*id*/) {}
};

class Elenco {
public:
    Elenco(VetraGrid* griglia, OspiteElenco& ospite, QWidget* schermo);

    // Columns, sort, colours and database from the definition; the rows come with Carica.
    void imposta(DefinizioneElenco definizione);
    const DefinizioneElenco& definizione() const { return def_; }
    VetraGrid* griglia() const { return griglia_; }
    store::DatabasePtr database() const;

    // Runs a statement over the list (the definition's source, filtered or not).
    void Carica(const std::string& sorgente);

    void Nuovo();
    void Modifica();
    void Elimina();

private:
    void apriEditor(Modalita modalita);
    bool movimentato(long id);

    VetraGrid* griglia_;
    OspiteElenco& ospite_;
    QWidget* schermo_;
    DefinizioneElenco def_;
};

}  // namespace ui
