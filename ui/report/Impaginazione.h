// From a report and its data to pages of things to draw: the statements of the sub-reports run
// through the engine, the rows flow into pages with the page heading repeated, groups kept with their
// first row, the running total carried from the foot of one page to the head of the next. Nothing
// here paints: the text is measured through Misuratore, and the pages are lists of Primitiva.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "store/dao.h"
#include "store/value.h"
#include "ui/report/Modello.h"

namespace ui::report {

// The rows of one sub-report's statement.
struct Tabella {
    std::vector<std::string> campi;
    std::vector<std::vector<store::Value>> righe;
    int indice(const std::string& campo) const;   // -1 when absent, compared without case
};

// The tables by sub-report name (lower case).
using Dati = std::map<std::string, Tabella>;

// The statement of a sub-report with each {Nome} replaced by the value of the sub-report's parameter
// of that name, or else of the report's.
std::string TestoQuery(const Modello& modello, const SubReportDichiarato& sub);

// What the engine itself knows, put in a statement's place: {Azienda} is the company's ID, {Sub.Campo}
// the field of the first row of that sub-report among dati (Null when it has no row); any other {name}
// stays as it was.
std::string TestoNoto(const std::string& sql, const Dati& dati, long azienda);

// The database a sub-report's statement runs on, among those given (null when that one is not).
store::Database* DatabaseDi(const SubReportDichiarato& sub, store::Database* archivio, store::Database* temp,
                            store::Database* aziende);

// Runs every sub-report's statement on the archive, the scratch file or the master file, in the order
// declared: {Azienda} in a statement is the company's ID, {Sub.Campo} the field of the first row of a
// sub-report already run. A failing statement, or a field the layout names that its statement lacks,
// is an ErroreReport naming the file and the cause.
Dati CaricaDati(const Modello& modello, store::Database* archivio, store::Database* temp, const std::string& nomeFile,
                long azienda = 0, store::Database* aziende = nullptr);

// Tells the height a text takes wrapped in the given width, in millimetres.
class Misuratore {
public:
    virtual ~Misuratore() = default;
    virtual double altezza(const Carattere& carattere, double larghezza, const std::string& testo) const = 0;
};

struct Primitiva {
    TipoElemento tipo = TipoElemento::Testo;   // Campo never: a field is drawn as its text
    double x = 0, y = 0, larghezza = 0, altezza = 0;   // on the page, millimetres from its top left
    std::string testo;                         // a text; for a picture, its full path
    Carattere carattere;
    Allineamento allinea = Allineamento::Sinistra;
    double spessore = 0;
    bool aCapo = false;                        // wraps from the top of its frame
};

// What an element draws, where its band puts it: its kind (a field as a text), frame and look; the
// text is the caller's, the printed value or the editor's placeholder.
Primitiva PrimitivaDi(const Elemento& e, double x, double y);

struct PaginaStampata {
    std::vector<Primitiva> primitive;
};

struct Documento {
    Pagina pagina;
    std::string titolo;
    std::vector<PaginaStampata> pagine;
};

// Lays the report out. cartellaImmagini is where pictures are looked for: a picture that is not
// there is ErroreReport 53 naming it.
Documento Impagina(const Modello& modello, const Dati& dati, const Misuratore& misuratore,
                   const std::string& cartellaImmagini, const std::string& nomeFile);

}  // namespace ui::report
