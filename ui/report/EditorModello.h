// What the layout editor does to a report, without painting anything: the bands listed top to bottom
// as the editor draws them, the selection, moving and resizing with the mouse or the keys, the
// properties of an element as texts, new and deleted elements, undo and redo. Every change is one step
// of undo; a drag of the mouse is one step however many moves it makes. Whatever the editor accepts
// the file format reads back the same, so a change that the file would refuse is refused here with
// its reason and leaves the layout as it was.
//
// The drawing: the page's width to scale, from its left edge; down from the top margin each band is a
// strip of Striscia millimetres bearing its name, then the band itself. Lengths are millimetres.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "store/dao.h"
#include "ui/report/Impaginazione.h"
#include "ui/report/Modello.h"

namespace ui::report {

inline constexpr double Striscia = 5;           // the strip above each band, on the drawing
inline constexpr double UnPunto = 25.4 / 72;    // the arrow keys' step

struct Selezione {
    int banda = -1;      // among the editor's bands; -1 nothing chosen
    int elemento = -1;   // among the band's elements; -1 the band itself
    bool operator==(const Selezione&) const = default;
};

// What a press of the mouse takes hold of: an element's body, one of its edges or corners, a band's
// bottom edge.
enum class Presa { Nessuna, Corpo, Nord, Sud, Est, Ovest, NordEst, NordOvest, SudEst, SudOvest, FondoBanda };

enum class Proprieta {
    Testo, Campo, Somma, Ambito, Maschera, File, Carattere, Punti, Grassetto, Corsivo, Allinea, Spessore, Cresce,
    X, Y, Larghezza, Altezza
};

// The properties an element of that kind has in the file; a band has only its Altezza.
const std::vector<Proprieta>& ProprietaDi(TipoElemento tipo);

class EditorModello {
public:
    explicit EditorModello(Modello modello = {});

    const Modello& modello() const { return m_; }
    int Bande() const { return static_cast<int>(posti_.size()); }
    const Banda& banda(int i) const { return const_cast<EditorModello*>(this)->bandaMod(i); }
    std::string NomeBanda(int i) const;             // "Dettaglio", "Intestazione gruppo Cliente"...
    double Cima(int i) const;                        // top of band i on the drawing, under its strip
    double AltezzaDisegno() const;                   // the whole drawing, margins included

    const Selezione& selezione() const { return sel_; }
    const Elemento* Selezionato() const;            // the chosen element; null for a band or nothing
    void Seleziona(Selezione s);                     // an unknown place chooses nothing
    // The next thing in drawing order (each band, then its elements), or the previous; false, and
    // nothing chosen, past either end.
    bool SelezionaAccanto(bool avanti);
    // What lies under a point of the drawing: the topmost element, else the band; tolleranza widens
    // the grips of the chosen element and the bands' bottom edges.
    Selezione Colpito(double x, double y) const;
    Presa PresaIn(double x, double y, double tolleranza) const;

    // The chosen element moved; it stays inside its band as far as it already was. A band does not move.
    bool Sposta(double dx, double dy);
    // The edges a grip holds moved; an element keeps at least 1 mm, a band at least what it holds.
    bool Ridimensiona(Presa presa, double dx, double dy);
    // The value of a property of the chosen element (or band) as the panel shows it: numbers with a
    // comma, "Sì"/"No", "Sinistra"/"Centro"/"Destra", "Report"/"Gruppo"/"Pagina".
    std::string Valore(Proprieta p) const;
    // Sets it from the panel's text; the reason, in Italian, when the value is refused, and "" when
    // set (or unchanged).
    std::string Imposta(Proprieta p, const std::string& valore);

    // A new element of that kind at the top left of the chosen band (or of the detail, or of the
    // first band), chosen; a field named campo, a picture of that file. False when the layout has no band.
    bool Aggiungi(TipoElemento tipo, const std::string& campo = {});
    bool Elimina();                                  // the chosen element

    // A drag of the mouse: the changes between the two are one step of undo.
    void ApriGesto();
    void ChiudiGesto();
    bool InGesto() const { return gesto_; }

    bool Annulla();
    bool Ripeti();
    bool PuoAnnullare() const { return !indietro_.empty(); }
    bool PuoRipetere() const { return !avanti_.empty(); }

    bool Modificato() const { return !(m_ == salvato_); }
    void Salvato() { salvato_ = m_; }

private:
    struct Posto {
        int gruppo = -1;       // -1 a band of the report
        TipoBanda tipo{};
    };
    struct Stato {
        Modello m;
        Selezione sel;
    };
    Banda& bandaMod(int i);
    Elemento* selezionatoMod();
    void elenca();
    void registra();            // the state before a change, for undo
    bool passa(std::vector<Stato>& da, std::vector<Stato>& a);
    double larghezzaBande() const { return m_.pagina.larghezzaUtile(); }

    Modello m_;
    Modello salvato_;
    std::vector<Posto> posti_;
    Selezione sel_;
    std::vector<Stato> indietro_, avanti_;
    bool gesto_ = false;
    bool gestoRegistrato_ = false;
};

// The columns of each sub-report's statement, by the sub-report's name as declared: the statement
// opened on its own database, with what the engine knows put in it as a print does ({Azienda}, and
// {Sub.Campo} from the first row of a sub-report before it, the only row read). A statement that does
// not run gives no columns.
std::map<std::string, std::vector<std::string>> ColonneSubReport(const Modello& modello, store::Database* archivio,
                                                                 store::Database* temp, long azienda = 0,
                                                                 store::Database* aziende = nullptr);
// The fields an element would offer: the detail's columns by name, then the others' as "Sub.Campo".
std::vector<std::string> CampiScelti(const Modello& modello,
                                     const std::map<std::string, std::vector<std::string>>& colonne);
// The fields the layout names that the columns lack, each with its reason, as a report would refuse them.
std::vector<std::string> CampiSconosciuti(const Modello& modello,
                                          const std::map<std::string, std::vector<std::string>>& colonne);

// The first page of the layout on data already read: the detail's rows cut to what one page can show.
Documento PrimaPagina(const Modello& modello, const Dati& dati, const Misuratore& misuratore,
                      const std::string& cartellaImmagini, const std::string& nomeFile);

}  // namespace ui::report
