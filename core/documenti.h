// The kinds of Documenti.Tipo and what each kind means for money and counterparty. Sales, payments
// and the books all decide by these, so they live below every area.
#pragma once

#include <string>

namespace core {

// The four kinds the program writes into Documenti.Tipo.
enum TipoDocumentoCodice : long {
    TipoFatturaEmessa = 5,
    TipoNotaCreditoEmessa = 6,
    TipoPreventivo = 7,
    TipoNotaCreditoRicevuta = 9,
};

// Title of the register of a kind; "" for 8 and any value that is no kind.
std::string TitoloTipoDocumento(long tipo);
// Title printed on the document (also its caption when instalments are generated); "" as above.
std::string TitoloStampaDocumento(long tipo);

// Money comes in (5, 9): collections settle it, and its settlement is read from qrDocumentiIncassi.
bool TipoAttivo(long tipo);
// The counterparty is a customer (5, 6, 7); otherwise a supplier.
bool TipoVersoCliente(long tipo);
// Tipo of a document of the session's archive, 0 when no document has that id.
long TipoDocumento(long id);

}  // namespace core
