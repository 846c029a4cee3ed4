// The list of every register: one statement over one database, shown a page at a time.
// The grid owns the recordset of its statement; its current row is the recordset's current record,
// so a caller reads "the current row" through Recordset().
#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QTableView>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "store/dao.h"
#include "ui/Tratti.h"

class QWidget;

namespace ui {

enum class Direzione { Crescente = 1, Decrescente = 2 };

struct Colonna {
    std::string campo;        // field of the statement
    std::string titolo;       // caption as shown (a language text, already looked up)
    int larghezza = 0;        // twips; 0 fits the column to its caption
    std::string maschera{};   // "#,0.00", "#,0.000", "0000", "dd/mm/yyyy"; "" shows the value's own text
    Qt::Alignment allineamento = Qt::AlignLeft | Qt::AlignVCenter;
};

// Rows whose field satisfies the test are drawn in these colours (an invalid colour keeps the default).
struct RegolaColore {
    std::string campo;
    std::function<bool(const store::Value&)> condizione;
    QColor testo;
    QColor sfondo;
};

// Twips to pixels at the screen's 96 dpi: 15 twips a pixel.
int TwipsInPixel(int twips);

// The rows of the grid's recordset, fetched as the view scrolls to them. Rows of group captions
// are interleaved where the value of a grouping field changes.
// Read backwards (the statement in the opposite order), the model holds the last rows of the list
// and reads the rows above them as the view scrolls up: the end of a long list is shown without
// reading the rows before it.
class VetraGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit VetraGridModel(QObject* parent = nullptr);
    ~VetraGridModel() override;

    // Takes a recordset positioned on its first record; null empties the model. With `inverso`
    // the recordset gives the rows from the last one up.
    void impostaRecordset(std::unique_ptr<store::Recordset> rs, std::vector<Colonna> colonne,
                          std::vector<std::string> gruppi, std::vector<RegolaColore> regole, bool inverso = false);
    // Opens the piece k (from 1) of a list read in pieces.
    using ApriTratto = std::function<std::unique_ptr<store::Recordset>(std::size_t k)>;
    // The list as `quanti` statements read one after the other, the first one given, each of the
    // others opened once the one before is read to its end.
    void impostaTratti(std::unique_ptr<store::Recordset> primo, std::size_t quanti, ApriTratto apri,
                       std::vector<Colonna> colonne, std::vector<std::string> gruppi,
                       std::vector<RegolaColore> regole, bool inverso = false);
    bool inverso() const { return inverso_; }
    bool puoLeggereSopra() const;   // read backwards, with rows above the first one shown
    void leggiSopra();              // a block of the rows above, put on top
    // The recordset of the row positioned on last (of the first piece before any).
    store::Recordset* recordset() const { return attivo_ < tratti_.size() ? tratti_[attivo_].get() : nullptr; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;
    bool canFetchMore(const QModelIndex& parent) const override;
    void fetchMore(const QModelIndex& parent) override;

    static constexpr int RighePerBlocco = 200;

    bool rigaDiGruppo(int riga) const;
    int livelloGruppo(int riga) const;              // 0 outermost; -1 for a data row
    long righeLette() const;                        // data rows fetched so far
    void leggiFinoAllaFine();                       // fetches every row not read yet, in one go
    // Puts the recordset on the record of a shown row (false for a group caption or no row).
    bool posiziona(int riga);
    // Fetches on until found, or until `entro` data rows are read (no bound when negative); -1 when absent.
    int rigaConId(long id, long entro = -1);
    void rileggiRiga(int riga);                     // refreshes the cached values from the record
    void rimuoviRiga(int riga);
    store::Value valore(int riga, const std::string& campo) const;

private:
    struct Riga;
    void leggiBlocco(int quante);
    void leggiDallaVista(const std::function<void()>& lettura);  // errors shown once the view is done
    std::vector<Riga> leggiRighe(int quante);
    bool stessoGruppo(const Riga& a, const Riga& b, size_t livello) const;
    void aggiungiTitoliGruppi(const Riga& r, std::vector<Riga>& nuove);
    std::vector<store::Value> valoriCorrenti(std::size_t tratto);
    void apriTratto(std::size_t k);
    bool inModifica() const;   // a piece read or positioned on is being edited
    std::string testoCella(const Riga& r, int colonna) const;
    const RegolaColore* regolaPer(const Riga& r) const;
    int indiceCampo(const std::string& campo) const;

    std::vector<std::unique_ptr<store::Recordset>> tratti_;  // null until opened
    ApriTratto apri_;
    std::size_t inLettura_ = 0;   // the piece the next rows come from
    std::size_t attivo_ = 0;      // the piece positioned on last
    std::vector<Colonna> colonne_;
    std::vector<std::string> gruppi_;
    std::vector<RegolaColore> regole_;
    std::vector<std::string> campi_;          // fields kept per row: columns, groups, rules, ID
    std::vector<std::vector<store::Field*>> letti_;  // each piece's fields of campi_, found once
    std::vector<Riga> righe_;
    std::vector<store::Value> ultimiGruppi_;
    std::optional<store::Bookmark> ultimoLetto_;
    bool finito_ = true;
    bool inverso_ = false;
    long dati_ = 0;
};

class VetraGrid : public QTableView {
    Q_OBJECT
public:
    explicit VetraGrid(QWidget* parent = nullptr);
    ~VetraGrid() override;

    // The database of the statement; unset, the open archive.
    void setDatabase(store::DatabasePtr db);
    store::DatabasePtr database() const;

    void setSorgente(const std::string& sql);
    const std::string& sorgente() const { return sorgente_; }
    void setOrdinamento(const std::string& campi, Direzione direzione = Direzione::Crescente);
    const std::string& ordinamento() const { return ordinamento_; }
    Direzione direzione() const { return direzione_; }
    void aggiungiColonna(Colonna c);
    void pulisciColonne();
    const std::vector<Colonna>& colonne() const { return colonne_; }
    void aggiungiGruppo(const std::string& campo);  // one grouping level, outermost first
    void pulisciGruppi();
    // A grouping field that is the description of a lookup table: while every level is one, the
    // list is read in pieces, one per description (see ui/Tratti.h).
    void collegaGruppo(GruppoCollegato g);
    void aggiungiRegolaColore(RegolaColore r);
    // Controls kept in step with the current row: bound controls (DataField) take the row's value,
    // field panels (VBars) show the row.
    void aggiungiSeguace(QWidget* w);

    // The statement run: the source with its own Order By replaced by the groups and the sort.
    std::string istruzione() const;
    // The same statement in the opposite order; empty when the grid sets no order of its own.
    std::string istruzioneInversa() const;
    // The last row made current (Ctrl+End): the end of the list is read backwards, without reading
    // the rows before it, when the grid sets the order; Ctrl+Home goes back to the first row.
    void VaiAllUltima();
    void VaiAllaPrima();

    // Runs the statement again; the current row returns to the record it was on, when the new rows
    // hold it about as far down as the list had read, and is the first row otherwise: a new order of
    // a long list (a grouping ticked) is not read through to find it. A list read from its end is
    // read from its end again while its statement is the same. Errors reach the caller.
    void Aggiorna();
    // Rereads the current row's values from the database after a change made elsewhere.
    void AggiornaRiga();

    bool haRecordset() const;
    bool haRigaCorrente() const;
    // The recordset positioned on the current row (null with no statement run).
    store::Recordset* Recordset();
    store::Value valore(const std::string& campo);   // the current row's field; Null with no row
    long idCorrente();                                // the current row's ID; 0 with no row
    bool vaiAId(long id);                             // makes the row of that ID current
    int righeMostrate() const;                        // rows the view holds, group captions included
    VetraGridModel* modello() const { return model_; }

    // Deletes the current record and shows the next row; false when there was no row to delete.
    bool EliminaRiga();

signals:
    void rigaCambiata();
    void modificaRichiesta();   // Enter or a double click on a row
    void eliminaRichiesta();    // the Delete key on a row

protected:
    void keyPressEvent(QKeyEvent* e) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void applicaLarghezze();
    void aggiornaSeguaci();
    void selezionaRiga(int riga);
    void ordinaPerColonna(int colonna);
    void esegui(bool inverso, bool ripristina);
    std::string ordinata(bool inverso) const;
    std::vector<std::string> ordineCampi(bool inverso) const;   // the sort's terms, after the groups'
    std::vector<std::string> istruzioniATratti(store::Database& db, bool inverso) const;
    void leggiSopraSeInCima(int valore);

    VetraGridModel* model_;
    store::DatabasePtr db_;
    std::string sorgente_;
    std::string ordinamento_;
    Direzione direzione_ = Direzione::Crescente;
    std::vector<Colonna> colonne_;
    std::vector<std::string> gruppi_;
    std::vector<GruppoCollegato> collegati_;
    std::vector<RegolaColore> regole_;
    std::vector<QWidget*> seguaci_;
    std::optional<store::Bookmark> daRipristinare_;
    std::string eseguita_;    // the text of the statement last run
    bool leggendo_ = false;   // a statement being run: the scroll bar's moves read nothing
};

}  // namespace ui
