// The skeleton every editor shares: one record, opened new, to change or to copy, loaded and saved by
// walking the bound controls, confirmed or cancelled. An editor says only what differs: its
// controls, its checks, and the hooks for what lies outside the walk.
#pragma once

#include <QDialog>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/campi.h"
#include "core/registro_schermi.h"
#include "store/dao.h"

class QFormLayout;
class QLineEdit;
class QPushButton;

namespace ui {
class Dettaglio;
struct DefinizioneDettaglio;
class VetraCombo;
class VetraGrid;
}  // namespace ui

class EditorBase;

enum class Modalita { Nuovo, Modifica, Duplica };

// How an editor is opened. With the caller's list, the record is its current row (read from the
// list's recordset, not again from the file) and the list is refreshed onto the saved record.
struct Apertura {
    Modalita modalita = Modalita::Nuovo;
    long id = 0;                        // the record to change or copy, when there is no list
    ui::VetraGrid* griglia = nullptr;   // the caller's list, borrowed for the load and the refresh
    // A line of a master record: the field that links it and the master's id, written on a new line.
    std::string campoPadre{};
    long idPadre = 0;
};

// Makes the editor of a register or of a linked combo, fresh for each use, owned by the caller.
using FabbricaEditor = std::function<std::unique_ptr<EditorBase>(QWidget* parent)>;

// Editors by name, for the linked combos of another area's screens: each area puts its own here.
void registraFabbricaEditor(const std::string& nome, FabbricaEditor fabbrica);
// The factory of that name; used with nothing registered under it, it raises error 3265.
FabbricaEditor FabbricaEditorDi(const std::string& nome);

class EditorBase : public QDialog {
    Q_OBJECT
public:
    // Prepares, shows modally over the caller, and returns the id saved; nothing when cancelled.
    std::optional<long> Edita(const Apertura& apertura);
    // The two halves of Edita, for a caller that drives the shown screen itself.
    void Prepara(const Apertura& apertura);
    std::optional<long> Mostra();

    // The program's two entry points: the current row of a list (or a new one), or a record by id.
    void EditaGriglia(ui::VetraGrid* grid, bool nuovo);
    void EditaRecordset(long id, bool nuovo);

    // btnConferma: check, save, close. btnAnnulla: close and nothing else.
    void Conferma();
    void Annulla();

    bool nuovo() const { return apertura_.modalita != Modalita::Modifica; }
    long id() const { return id_; }
    const std::string& tabella() const { return tabella_; }
    const Apertura& apertura() const { return apertura_; }

protected:
    // titolo: the screen's caption, shown with " - " and the new or change caption.
    EditorBase(const char* nome, std::string tabella, std::string titolo, QWidget* parent = nullptr);

    // Where the screen lays its controls, one captioned row each.
    QFormLayout* campi() const { return campi_; }
    void aggiungiCampo(const QString& etichetta, QWidget* controllo);
    // A control bound to a field of the entity's table (its DataField), captioned as the table says.
    void aggiungiCampo(const core::Campo& campo, QWidget* controllo);
    // A combo of a linked table with imgNew and imgEdit beside it, opening that table's editor (of
    // another area: FabbricaEditorDi its name).
    QWidget* conImmagini(ui::VetraCombo* combo, FabbricaEditor editor);

    // A list of the record's lines with its own commands; the screen places it. A new record is
    // saved (checks first) before its first line, so that the line has a master to belong to.
    ui::Dettaglio* aggiungiDettaglio(const ui::DefinizioneDettaglio& definizione);

    // Hooks. The first failed check shows its message (warning icon) and answers false.
    virtual bool Valida() = 0;
    // After the load, for a new record or an existing one: defaults, linked enabling.
    virtual void DopoCarica() {}
    // Fields outside the bound walk, written before the record is updated.
    virtual void PrimaDiAggiornare(store::Recordset&) {}
    // After the record is written, before the screen closes: totals, files, notices to the panel.
    // nuovo() still tells whether the record was added.
    virtual void DopoSalvato(long id) {}
    // After a line was saved or deleted: the master's totals, read again.
    virtual void DopoRigheCambiate() {}

    // A box that must not be blank after trimming: otherwise the text of the key, the focus to the box, false.
    bool richiesto(QLineEdit* casella, const std::string& chiave);

    // The write of the checked record: the bound controls, the screen's own fields, the id of a new
    // record. A screen whose record goes to the archive together with other rows (a payment and its
    // journal row) writes it through its area's logic instead; either way it answers the record's id.
    virtual long Salva();

    // Saves without closing: for a master record that must exist before its first line. Answers
    // the id, or nothing when a check failed.
    std::optional<long> SalvaSenzaChiudere();

    // The database of the record; unset, the open archive.
    void setDatabase(store::DatabasePtr db);
    store::DatabasePtr database() const;

    QPushButton* btnConferma;
    QPushButton* btnAnnulla;

private:
    void impostaTitolo();
    void Carica();
    void caricaDettagli();
    std::unique_ptr<store::Recordset> apriRecord(long id);

    Apertura apertura_;
    long id_ = 0;
    std::string tabella_;
    std::string titolo_;
    store::DatabasePtr db_;
    QFormLayout* campi_;
    std::optional<long> salvato_;
    std::vector<ui::Dettaglio*> dettagli_;
};

// What the screen registry runs for an editor opened on its own: a new record, whose id it answers.
template <class Editor>
std::optional<long> NuovoRecord() {
    Editor e;
    return e.Edita({Modalita::Nuovo});
}

// Puts an editor in both registries under its name: its factory, for the linked combos of other
// areas, and a new record opened on its own, for the panel's quick list.
template <class Editor>
void RegistraEditore() {
    registraFabbricaEditor(Editor::Nome, [](QWidget* parent) { return std::make_unique<Editor>(parent); });
    core::registraEditor(Editor::Nome, NuovoRecord<Editor>);
}
