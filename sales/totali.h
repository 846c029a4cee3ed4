// The figures of a document. They are never kept up by increments: every change of a line, a charge
// or the header recomputes all six stored totals from the rows. The per-line work (discount cascade,
// VAT, rounding per line) runs inside the engine; surcharge, withholding and grand total run here.
#pragma once

#include <optional>
#include <string>

#include "store/dao.h"

namespace sales {

// ---- arithmetic, no database ------------------------------------------------------------------

// The document's four discounts, in percent. They cascade, each on what the one before left.
struct Sconti {
    double s1 = 0, s2 = 0, s3 = 0, s4 = 0;
};

// The line amount after the four discounts, unrounded.
double NettoScontato(double importo, const Sconti& sconti);

struct RigaCalcolata {
    double netto = 0;               // rounded half to even to the cent
    std::optional<double> imposta;  // from the unrounded net; none when the line's VAT code is unknown
};
RigaCalcolata CalcolaRiga(double importo, const Sconti& sconti, std::optional<double> aliquota);

// What the aggregate over the lines gives: nothing at all, or one row whose sums may be Null.
struct SommeRighe {
    bool presente = false;
    std::optional<double> netto, imposta, imponibile;
};

struct DatiTestata {
    double ritenutaAcconto = 0;  // percent of the net
    double maggiorazione = 0;    // percent of the net
};

struct TotaliDocumento {
    double imponibile = 0;
    double totIva = 0;
    double totNetto = 0;
    double totSpese = 0;
    double totRitenutaAcconto = 0;
    double importoTotale = 0;
};

// The surcharge carries a flat 20 percent VAT whatever the lines' codes; withholding is taken from
// the net before the surcharge; charges stay outside discounts, surcharge and withholding.
// Nothing is rounded here: shown figures are rounded by their display mask.
TotaliDocumento ComponiTotali(const SommeRighe& righe, double spese, const DatiTestata& testata);

// ---- statements -------------------------------------------------------------------------------

// One row over the lines of a document: Netto, Imposta, Imponibile (Null when it has no lines).
std::string SqlTotaliMovimenti(long documento);
// Per VAT code, lines and charges folded by a Union that drops identical rows.
std::string SqlRiepilogoIvaDocumento(long documento);
// Taxable and VAT of one kind of document over a period, lines and charges folded the same way.
std::string SqlIvaPeriodo(long tipo, double dal, double al);

// ---- on the archive ---------------------------------------------------------------------------

// Charges of a document, taxable plus VAT, each rounded per charge.
double TotaleSpeseDocumento(long documento);

// Recomputes and stores the six totals, then refreshes the document's Pagato. When the caller works
// through a grid on the documents, it passes the grid's recordset, positioned on that document:
// the figures are written through it so that the row on screen changes at once, and the document
// refreshed is the one the grid's row names. A document that is not there is left alone.
void CalcolaTotaliDocumento(long documento, store::Recordset* griglia = nullptr);

}  // namespace sales
