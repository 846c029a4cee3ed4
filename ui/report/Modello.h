// A report file (*.rpf) is ours: an XML text that declares its page, its named parameters, its named
// sub-reports (each with its own statement in the program's SQL dialect and the parameters it takes),
// and its bands with their elements. Lengths are millimetres from the band's top left corner.
//
// Texts of elements are templates: [Campo] is a field of the current row of the detail's sub-report,
// [SubReport.Campo] the first row of another sub-report, [Campo|#,0.00] the same through a mask;
// {Nome} is a declared parameter, {Pagina} and {Pagine} the page number and the page count.
// A statement may also carry {Nome}: the value of the sub-report's (or else the report's) parameter is
// put in its place as it is, as the program writes its statements; {Azienda} is the current company's
// ID and {Sub.Campo} a field of the first row of a sub-report declared before.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/errors.h"

namespace ui::report {

// A report that cannot be run is an engine error: its number as the platform numbers the cause (53 a
// missing file, 321 a file not of our format, 3265 a name that is not there) and a text that names
// the file.
using ErroreReport = store::JetError;

inline constexpr int ErrFileMancante = 53;
inline constexpr int ErrFormato = 321;
inline constexpr int ErrNomeMancante = 3265;

enum class TipoBanda {
    IntestazioneReport,   // once, at the top of the first page
    IntestazionePagina,   // at the top of every page (column headings)
    Riporto,              // under the page heading of a page that continues the list
    IntestazioneGruppo,
    Dettaglio,            // once per row of the detail's sub-report
    PiedeGruppo,
    ARiportare,           // at the foot of a page whose list goes on to the next
    PiedePagina,          // at the bottom of every page
    PiedeReport,          // once, after the list
};

enum class TipoElemento { Testo, Campo, Linea, Riquadro, Immagine };
enum class Allineamento { Sinistra, Centro, Destra };
enum class Ambito { Report, Gruppo, Pagina };

struct Carattere {
    std::string famiglia = "DejaVu Sans";
    double punti = 9;
    bool grassetto = false;
    bool corsivo = false;
    bool operator==(const Carattere&) const = default;
};

struct Elemento {
    TipoElemento tipo = TipoElemento::Testo;
    double x = 0, y = 0, larghezza = 0, altezza = 0;   // a line runs from (x,y) to (x+larghezza, y+altezza)
    std::string testo;       // Testo: the template
    std::string campo;       // Campo: the field shown ("Sub.Campo" for another sub-report)
    std::string somma;       // Campo: the field summed instead, over the scope
    Ambito ambito = Ambito::Report;
    std::string maschera;    // Campo: "#,0.00", "dd/mm/yyyy"...
    std::string file;        // Immagine: a file of the pictures' folder
    Allineamento allinea = Allineamento::Sinistra;
    Carattere carattere;
    double spessore = 0.2;   // lines and boxes
    bool cresce = false;     // the text wraps and the band grows to hold it
    // Testo, Campo: drawn once per row of this sub-report, each copy under the last, and
    // [Sub.Campo] of that sub-report reads the row in turn (a VAT summary, the instalments); the
    // band grows when the rows need more room than it has.
    std::string ripeti;
    bool operator==(const Elemento&) const = default;
};

struct Banda {
    TipoBanda tipo = TipoBanda::Dettaglio;
    double altezza = 0;
    std::vector<Elemento> elementi;
    bool operator==(const Banda&) const = default;
};

struct Gruppo {
    std::string campo;                 // a field of the detail's sub-report
    std::optional<Banda> intestazione;
    std::optional<Banda> piede;
    bool operator==(const Gruppo&) const = default;
};

struct ParametroDichiarato {
    std::string nome;
    std::string valore;
    bool operator==(const ParametroDichiarato&) const = default;
};

// Aziende: the master file, for the current company's own data.
enum class Archivio { Archivio, Temp, Aziende };

struct SubReportDichiarato {
    std::string nome;
    Archivio database = Archivio::Archivio;
    std::string query;
    std::vector<ParametroDichiarato> parametri;
    // The layout's own: its statement reads what the engine knows ({Azienda}, or {Sub.Campo} of a
    // sub-report declared before it), so a caller never passes it and is never asked for it.
    bool interno = false;
    bool operator==(const SubReportDichiarato&) const = default;
};

struct Pagina {
    double larghezza = 210, altezza = 297;
    double sinistro = 15, destro = 15, alto = 12, basso = 12;
    double larghezzaUtile() const { return larghezza - sinistro - destro; }
    double altezzaUtile() const { return altezza - alto - basso; }
    bool operator==(const Pagina&) const = default;
};

struct Modello {
    std::string titolo;
    Pagina pagina;
    std::vector<ParametroDichiarato> parametri;
    std::vector<SubReportDichiarato> subReports;
    std::string sorgente;              // the sub-report the detail runs over ("" when there is no list)
    std::vector<Banda> bande;          // all but the groups' own, at most one of each kind
    std::vector<Gruppo> gruppi;        // outermost first

    const Banda* banda(TipoBanda tipo) const;
    SubReportDichiarato* subReport(const std::string& nome);   // compared without case
    const SubReportDichiarato* subReport(const std::string& nome) const;
    bool operator==(const Modello&) const = default;
};

// Reads a report from its text; nomeFile is only for the messages. ErroreReport 321 when the text is
// empty, truncated, not XML, not a report of ours, or names what it does not declare.
Modello Leggi(const std::string& testo, const std::string& nomeFile);
// Reads the file; 53 when it is missing.
Modello Carica(const std::string& percorso);
std::string Scrivi(const Modello& modello);
// Writes beside the file and then replaces it, so that a failure leaves the old file whole.
void Salva(const Modello& modello, const std::string& percorso);

// The placeholders of a template in order: {"[", "Importo|#,0.00"}, {"{", "Pagina"}, and the literal
// text between them as {"", text}.
struct Pezzo {
    char tipo;          // 0 literal, '[' field, '{' name
    std::string testo;
};
std::vector<Pezzo> Pezzi(const std::string& modello);

}  // namespace ui::report
