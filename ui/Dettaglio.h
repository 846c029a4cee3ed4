// The lines of a master record in a list of their own, with their own new, change and delete: the
// lines and charges of a document, the lines of an expense, the documents and due dates of a
// customer. The holder says which master is current; after each saved or deleted line it is told,
// so that it can bring the master's totals up to date.
#pragma once

#include <QWidget>

#include <functional>
#include <optional>
#include <string>

#include "ui/Elenco.h"

class QPushButton;

namespace ui {

struct DefinizioneDettaglio : DefinizioneElenco {
    const char* nome = "GridDettaglio";   // the grid's name ("GridMov")
    // The rows of a master ("Select * from qrMovimenti where Documento=" plus the id).
    std::function<std::string(long idPadre)> righe;
    // The source with no master, or without the right to see: it gives no rows.
    std::string vuota;
    // The field of a line that holds its master's id, written on a new line.
    std::string campoPadre;
    // The names of the three command buttons; with no editor the list has none.
    const char* nomeNuovo = "btnNuovoDettaglio";
    const char* nomeModifica = "btnModificaDettaglio";
    const char* nomeElimina = "btnEliminaDettaglio";
    // Asked before a line is added, changed or deleted, once the right is granted: false ends the
    // command (a settled master whose lines the user would rather leave alone).
    std::function<bool(long idPadre)> primaDelComando;
    bool chiediAncheEliminando = true;   // false: a delete of a line goes without it
};

class Dettaglio : public QWidget, private OspiteElenco {
    Q_OBJECT
public:
    using Definizione = DefinizioneDettaglio;
    // The master's id; for a new line the holder may first have to save a master being made. An
    // answer of nothing stops the command.
    using Padre = std::function<std::optional<long>(bool perNuovaRiga)>;

    Dettaglio(Definizione definizione, Padre padre, std::function<void()> dopoCambio, QWidget* parent);

    // The lines of that master; 0, or no right to see them, shows the empty source. A list out of
    // sight (a tab behind another) reads its rows only when it is shown.
    void Carica(long idPadre);
    VetraGrid* griglia() const { return griglia_; }
    Elenco& elenco() { return elenco_; }
    const Definizione& definizione() const { return def_; }

    QPushButton* btnNuovo = nullptr;
    QPushButton* btnModifica = nullptr;
    QPushButton* btnElimina = nullptr;

protected:
    void showEvent(QShowEvent* e) override;

private:
    void leggi();
    std::optional<Apertura> aperturaPer(Elenco&, Modalita modalita) override;
    bool primaDiEliminare(Elenco&, long) override;
    void dopoEliminato(Elenco&, long) override { dopoCambio_(); }
    void dopoSalvato(Elenco&, long) override { dopoCambio_(); }

    Definizione def_;
    Padre padre_;
    std::function<void()> dopoCambio_;
    VetraGrid* griglia_;
    Elenco elenco_;
    long idPadre_ = 0;
    bool daLeggere_ = true;
};

}  // namespace ui
