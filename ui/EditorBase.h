// The skeleton every editor shares: one record, edited on the caller's list (grid mode) or by its
// id (recordset mode), loaded and saved by walking the bound controls, confirmed or cancelled.
// An editor says only what differs: its controls, its validation, and what lies outside the walk.
#pragma once

#include <QDialog>

#include <functional>
#include <memory>
#include <string>

#include "store/dao.h"

class QFormLayout;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace ui {
class VetraCombo;
class VetraGrid;
}  // namespace ui

class EditorBase : public QDialog {
    Q_OBJECT
public:
    // Edit the caller's current row, or add one to its list.
    void EditaGriglia(ui::VetraGrid* grid, bool nuovo);
    // Edit the record of that id, or add one, with no list; the saved id goes to IDRecordEdit.
    void EditaRecordset(long id, bool nuovo);
    // Shows the editor modally over its caller; true when it was confirmed.
    bool Mostra();

    // btnConferma: validate, save, close. btnAnnulla: close and nothing else.
    void Conferma();
    void Annulla();

    bool nuovo() const { return Nuovo; }
    int modo() const { return Modo; }

protected:
    // titolo: the screen's caption (a text), shown with " - " and the new or change caption.
    EditorBase(const char* nome, std::string tabella, std::string titolo, QWidget* parent = nullptr);

    // Where the screen lays its controls, one captioned row each.
    QFormLayout* campi() const { return campi_; }
    void aggiungiCampo(const QString& etichetta, QWidget* controllo);
    // A combo of a linked table with imgNew and imgEdit beside it, opening that table's editor.
    QWidget* conImmagini(ui::VetraCombo* combo, std::function<std::unique_ptr<EditorBase>()> editor);

    // The first failed rule shows its message (warning icon) and answers false.
    virtual bool Valida() = 0;
    // A box that must not be blank after trimming: otherwise the text of the key, the focus to the box, false.
    bool richiesto(QLineEdit* casella, const std::string& chiave);
    // After the load, for a new record or an existing one: defaults, linked enabling.
    virtual void DopoCarica() {}
    // Fields outside the bound walk, written before Update.
    virtual void PrimaDiAggiornare(store::Recordset&) {}

    // The database of the record; unset, the session's archive.
    void setDatabase(store::DatabasePtr db);
    store::DatabasePtr database() const;
    const std::string& tabella() const { return tabella_; }

    ui::VetraGrid* Grid = nullptr;
    long ID = 0;
    bool Nuovo = false;
    int Modo = 0;   // 0 grid, 1 recordset

    QPushButton* btnConferma;
    QPushButton* btnAnnulla;

private:
    void impostaTitolo();
    void Carica();
    void Salva();
    void salvaSuGriglia();
    void salvaSuRecordset();
    std::unique_ptr<store::Recordset> apriRecord();

    std::string tabella_;
    std::string titolo_;
    store::DatabasePtr db_;
    QFormLayout* campi_;
    bool confermato_ = false;
};

// What the screen registry runs for an editor opened on its own: a new record by id, whose id the
// caller reads from IDRecordEdit.
template <class Editor>
bool NuovoRecord() {
    Editor e;
    e.EditaRecordset(0, true);
    return e.Mostra();
}
