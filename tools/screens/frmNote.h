// User notes: the register of a category's records shown as a table with one column per field
// (frmNote), the category's editor with its list of fields (frmNoteEdita), the editor of one field
// (frmCampiEdita) and the editor of one record, built from the category's fields
// (frmNoteDettagliEdita).
#pragma once

#include <functional>

#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

class QCheckBox;
class QComboBox;
class QScrollArea;
class QToolButton;

namespace ui {
class VText;
}

class frmNote : public RegistroBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmNote";
    explicit frmNote(QWidget* parent = nullptr);

    long categoria() const;
    // cbCat anew, the default category first; then the one given, or the first.
    void CaricaCategorie(long scegli = 0);
    // The table of the chosen category: its scratch view, columns and search fields.
    void MostraCategoria();
    void NuovaCategoria();
    void ModificaCategoria();
    void EliminaCategoria();

    QComboBox* cbCat;
    QToolButton* imgNew;
    QToolButton* imgEdit;
    QToolButton* Image1;

protected:
    bool PrimaDiEliminare(long id) override;
    void DopoSalvato(long id) override;

private:
    std::optional<Apertura> aperturaPer(ui::Elenco&, Modalita modalita) override;

    long recordSalvato_ = 0;
};

class frmNoteEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmNoteEdita";
    explicit frmNoteEdita(QWidget* parent = nullptr);

    ui::VText* VText1;        // Descrizione
    QCheckBox* chkPredefinita;
    ui::Dettaglio* GridCampi;

protected:
    bool Valida() override;
    void PrimaDiAggiornare(store::Recordset& rs) override;
    void DopoRigheCambiate() override;

private:
    long campoInEliminazione_ = 0;
};

class frmCampiEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmCampiEdita";
    explicit frmCampiEdita(QWidget* parent = nullptr);

    ui::VText* VText1;   // NomeCampo
    ui::VText* VText2;   // Dimensione

protected:
    bool Valida() override;
};

// The record's editor edits the row of the scratch view; the values go to NoteDettagli as it is
// saved. `salvato` hears the record's number, which a new record takes across all categories.
class frmNoteDettagliEdita : public EditorBase {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmNoteDettagliEdita";
    frmNoteDettagliEdita(long categoria, QWidget* parent = nullptr, std::function<void(long)> salvato = {});

    QScrollArea* PicBase;

protected:
    bool Valida() override;
    void PrimaDiAggiornare(store::Recordset& rs) override;
    void DopoSalvato(long id) override;

private:
    std::vector<std::pair<long, std::string>> valori() const;

    long categoria_;
    long record_ = 0;
    std::vector<QWidget*> caselle_;
    std::function<void(long)> avvisa_;
};
