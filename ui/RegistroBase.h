// The skeleton every register shares: a list over one statement with search, new, change, delete
// and close, and the keys of the list. A register is its definition: the statement with its own
// filter, the columns and search fields from the entity's field table, colour rules, the rights
// that guard each command and panel, the editor it opens, the delete guard and question. What a
// register does beyond that goes in the hooks.
#pragma once

#include <QWidget>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ui/Elenco.h"

class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QMenu;
class QPushButton;

namespace ui {
class Dettaglio;
struct DefinizioneDettaglio;
class VBars;
}  // namespace ui

class RegistroBase : public QWidget, protected ui::OspiteElenco {
    Q_OBJECT
public:
    struct Definizione : ui::DefinizioneElenco {
        std::string titolo;                 // the screen's caption, a language key or a fixed text
        std::vector<std::string> ricerca;   // fields offered by cbCerca, from the field table
        // Captions of the list's popup menu by command name, where they differ from the button's.
        std::map<std::string, std::string> vociMenu;
        // The print of the list (btnStampa, under diritti.stampa): the section, and what its "Elenco"
        // shows made from the list's statement as it stands (unset: that statement itself).
        std::string sezioneStampa;
        std::function<std::string(const std::string& istruzione)> elencoStampa;
    };

    const Definizione& definizione() const { return def_; }
    ui::VetraGrid* griglia() const { return Grid; }
    ui::VBars* pannello() const { return VisCampi; }   // null unless the register asked for one

    // The source with the user's search ANDed into its own filter: "F Like '*text*'" with the
    // text's apostrophes doubled; a '*' the user typed stays a wildcard.
    static std::string IstruzioneRicerca(const std::string& sorgente, const std::string& campo,
                                         const std::string& testo);

    // The commands, as the buttons and keys run them.
    void Cerca();
    void Nuovo() { elenco_.Nuovo(); }
    void Modifica() { elenco_.Modifica(); }
    void Elimina() { elenco_.Elimina(); }
    // Reads the rows again with the current search.
    void Aggiorna();
    // The list as it stands to the print screen, in the definition's section.
    void Stampa();
    // The list as it stands (the grid's own statement and database) to a spreadsheet file.
    void EsportaExcel();
    // The list's popup menu: the commands below it, in their order, as far as they are shown.
    void riempiMenuComandi(QMenu& menu);

protected:
    RegistroBase(const char* nome, QWidget* parent = nullptr);

    // Register load: statement, sort, columns, search choice, captions; then the first rows.
    void carica(Definizione d);
    // A side panel (VisCampi) beside the list, following its row, shown only with the right; call
    // before carica.
    ui::VBars* aggiungiPannello(int diritto = 0);
    // A list of lines of the current row, reloaded as the row changes; the register places it.
    ui::Dettaglio* aggiungiDettaglio(const ui::DefinizioneDettaglio& definizione);
    // A command of the screen's own, placed before btnChiudi, guarded by a right.
    QPushButton* aggiungiComando(const char* nome, const QString& testo, int diritto, std::function<void()> azione);

    // Hooks.
    // After the refusals and the delete guard, before the question: false stops the delete.
    virtual bool PrimaDiEliminare(long /*id*/) { return true; }
    virtual void DopoEliminato(long /*id*/) {}
    // After the editor saved a record (new or changed); the list already shows it.
    virtual void DopoSalvato(long /*id*/) {}
    // After the current row changed (also to no row), once the followers show it.
    virtual void DopoCambioRiga() {}
    // After a line of a detail list was saved or deleted.
    virtual void DopoRigheCambiate() {}
    // F3: the search. Here the search box takes the focus; a register with a search screen opens it.
    virtual void Ricerca();

    void showEvent(QShowEvent* e) override;

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
    std::optional<Apertura> aperturaPer(ui::Elenco&, Modalita modalita) override;
    bool primaDiEliminare(ui::Elenco&, long id) override { return PrimaDiEliminare(id); }
    void dopoEliminato(ui::Elenco&, long id) override { DopoEliminato(id); }
    void dopoSalvato(ui::Elenco&, long id) override { DopoSalvato(id); }
    void costruisciVista();
    void rigaCambiata();
    void menuComandi(const QPoint& dove);

    Definizione def_;
    ui::Elenco elenco_;
    std::string sorgenteCorrente_;
    std::vector<ui::Dettaglio*> dettagli_;
    int dirittoPannello_ = 0;
    bool acceleratori_ = false;
    QHBoxLayout* centro_;
    QHBoxLayout* comandi_;
};

// Every register the program registered, by name, with a way to make one: what the menus open,
// and what the contract's test walks.
using FabbricaRegistro = std::function<std::unique_ptr<RegistroBase>()>;
const std::map<std::string, FabbricaRegistro>& RegistriNoti();
void registraRegistro(const std::string& nome, FabbricaRegistro fabbrica);

// Puts a register in the screen registry under its name. Opened, it tests the right to see it
// first, then shows a fresh window, unloaded when it is closed.
template <class Registro>
void RegistraRegistro() {
    registraRegistro(Registro::Nome, [] { return std::make_unique<Registro>(); });
}
