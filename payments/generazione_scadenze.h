// Turning a document and its payment term into instalments of Scadenze: how many, on which dates,
// for which amounts, with a reminder date for each. The screen shows the plan before it writes it;
// both come from PianoScadenze, so what is previewed is what is written.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace payments {

enum class VersoAvviso { GiorniPrima, GiorniDopo };

struct RegolaScadenze {
    double totale = 0;
    int rate = 0;                      // the term's instalment count; 0 when the document has none
    std::array<long, 12> giorni{};     // days from the counting date, instalment by instalment
    double dataConteggio = 0;          // the counting date ("Data Inizio Conteggio")
    bool fineMese = false;             // due dates go to the last day of their month
    std::string giorniAvviso = "0";    // the reminder offset as typed
    VersoAvviso verso = VersoAvviso::GiorniPrima;
};

struct RataPiano {
    double dataAvviso = 0;
    double dataScadenza = 0;
    int rata = 0;
    int rate = 0;
    double importo = 0;
};

// Each instalment's share: the total over the count, rounded half to even; 0 with no term.
double ImportoRata(double totale, int rate);
// The last instalment takes the whole rounding difference.
double ImportoUltimaRata(double totale, int rate);

// The last day of the date's month.
double FineMese(double data);
// The first day from data on that is neither a Sunday nor a holiday (Easter of today's year).
double PrimoGiornoLavorativo(double data);

// The schedule. In writing, a "Giorni Dopo" offset is read as a date, as the stored schedules were:
// a bare number such as "3" then stops the writing with a type mismatch, while the preview reads it
// as days. A "Giorni Prima" offset is days in both.
std::vector<RataPiano> PianoScadenze(const RegolaScadenze& regola, bool scrittura);

// ---- on the archive ---------------------------------------------------------------------------

// What generation reads of a document and of its term.
struct DocumentoDaScadenzare {
    long id = 0;
    long cliente = 0;
    long fornitore = 0;
    long tipo = 0;
    std::string descNum;
    double data = 0;
    double importoTotale = 0;
    long condizioniPagamento = 0;
};

struct CondizionePagamento {
    std::string descPagamento;
    int rate = 0;
    bool fineMese = false;
    std::array<long, 12> giorni{};  // only the first `rate` are filled
};

// Reads the document from qrDocumenti; error 3021 (no current record) when there is none.
DocumentoDaScadenzare LeggiDocumentoDaScadenzare(long id);
// Reads the term; error 3021 when there is none.
CondizionePagamento LeggiCondizionePagamento(long id);
// Whether a document's CondizioniPagamento is read at all: only a value above 0 names a term.
bool HaCondizionePagamento(const DocumentoDaScadenzare& documento);

// The rule as the screen starts it: the term's count, days and month-end flag; the counting date
// is the document's date, or today when the document has no term.
RegolaScadenze RegolaIniziale(const DocumentoDaScadenzare& documento, const CondizionePagamento* condizione);

// The document's caption: kind, " N.", number, " del ", date.
std::string DidascaliaDocumento(long tipo, const std::string& descNum, double data);
// Description of an instalment: s170 (closing) for the last, s226 (part payment) for the others.
std::string DescrizioneRata(const RataPiano& rata, const std::string& didascalia);

// Writes one row of Scadenze per instalment, each with its own add and update; a failure leaves
// the rows already written.
void ScriviScadenze(const DocumentoDaScadenzare& documento, const std::vector<RataPiano>& piano);

// Opens the generation screen by name on that id, which it reads among the documents (qrDocumenti)
// whoever opens it; true when the plan was written. A screen that is not registered raises 3265.
bool MostraGeneraScadenze(long id);

}  // namespace payments
