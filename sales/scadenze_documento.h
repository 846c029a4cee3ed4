// The instalments and payments of one document as its register shows them: the settlement of the
// document in front, the figures of all the documents of the last search, and the refusals of the
// instalment commands.
#pragma once

#include <optional>
#include <string>

#include "core/campi.h"
#include "sales/documenti.h"

namespace sales {

// The payments of a document as its register lists them.
const core::TabellaCampi& CampiPagamentiDocumento();

// The filter both statements of the all-documents figures share, on Documenti itself: the kind,
// then each ticked criterion of the search. A prefix or suffix is matched exactly, an empty one
// also matching Null: " and (Prefisso='A')", " and (Prefisso='' or IsNull(Prefisso))".
std::string FiltroResocontoDocumenti(const CriteriDocumenti& c);
// "SELECT Sum([ImportoTotale]) AS ImportoDocumenti From Documenti Where (...)"
std::string SqlImportoDocumenti(const CriteriDocumenti& c);
// The payments of those documents, through a LEFT JOIN on Pagamenti.Documento.
std::string SqlImportoPagatoDocumenti(const CriteriDocumenti& c);

struct ResocontoDocumenti {
    double importo = 0;    // sum of the documents' totals, a Null sum as 0
    double pagato = 0;     // sum of their payments
    double daPagare = 0;   // importo less pagato, not rounded
};
ResocontoDocumenti CalcolaResocontoDocumenti(const CriteriDocumenti& c);

// What is collected and still due on one document, from qrDocumentiIncassi: only fatture emesse
// show it; nothing for any other kind or for a document the query does not have.
struct SaldoDocumento {
    double pagato = 0;
    double daPagare = 0;
};
std::optional<SaldoDocumento> SaldoDelDocumento(long tipo, long documento);

// The refusals of the instalment commands on a document, "" when the command may go on.
// A new instalment: none once the document has a payment (s271).
std::string RifiutoNuovaScadenza(long documento);
// A change: none once the instalment has a payment (s234).
std::string RifiutoModificaScadenza(long scadenza);

}  // namespace sales
