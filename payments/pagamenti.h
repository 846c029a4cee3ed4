// Recording a collection or a payment: the lists its picks offer, what a picked document, expense
// or instalment still has to pay, the description proposed, the checks of the confirm, and the one
// write of the row with its journal twin and the settlement flags.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace payments {

// What a payment is recorded against: a document (collected in mode incasso, paid in mode
// pagamento) or an expense (always paid).
enum class Contro { Documento, Spesa };
inline constexpr int ModoIncasso = 1;
inline constexpr int ModoPagamento = 0;

// The sources of the picks when the editor opens: only what is still due for a new payment,
// everything for a change.
std::string ListaDocumentiPagabili(bool nuovo, int modo);
std::string ListaScadenzePagabili(bool nuovo, int modo, Contro contro);
std::string ListaSpesePagabili(bool nuovo);
// The same once a counterpart is picked (0: none).
std::string DocumentiDelCliente(long cliente, int modo);
std::string ScadenzeDelCliente(long cliente);
std::string SpeseDelFornitore(long fornitore);
std::string ScadenzeSpeseDelFornitore(long fornitore);
// The open instalments of one document or expense (0: of any).
std::string ScadenzeDi(Contro contro, long id);

// A document, expense or instalment as its settlement query shows it, figures rounded to the cent.
struct Dovuto {
    long id = 0;
    long cliente = 0, fornitore = 0;
    long documento = 0, spesa = 0;   // an instalment's owner; for a document or expense its own id
    double pagato = 0;               // ImportoPagato
    double daPagare = 0;             // DaPagare
    std::string descrizione;         // DescDocumento
};
// Nothing when the row is not there (deleted meanwhile, or never existed).
std::optional<Dovuto> LeggiDocumento(long documento, int modo);
std::optional<Dovuto> LeggiSpesa(long spesa);
std::optional<Dovuto> LeggiScadenza(long scadenza);
// The editor's mode for a document: incasso for the kinds settled by collections.
int ModoDelDocumento(long documento);

// "Saldo" (s170) when the amount covers what is due, "Acconto" (s226) otherwise, a blank and the
// description of the document or expense. On a change the amount is first lowered by what is
// already paid, since that includes the payment itself.
std::string DescrizioneProposta(double importo, double dovuto, double giaPagato, bool nuovo,
                                const std::string& descDocumento);

// Everything the confirm looks at, read from the screen.
struct PagamentoDaControllare {
    Contro contro = Contro::Documento;
    bool nuovo = true;
    bool dataVuota = true;
    bool dataValida = false;
    std::string data;        // as typed, for the period test
    long cliente = 0, fornitore = 0;
    long documento = 0;      // the document or, against an expense, the expense
    long scadenza = 0;
    double importo = 0;
    bool importoLeggibile = true;
    std::optional<Dovuto> scelto;            // the document or expense as its pick holds it
    std::optional<Dovuto> sceltaScadenza;    // the instalment likewise
    double giaPagato = 0;
};
// The first check that fails, in the order of the confirm, as a language key or a text of its own
// (core::Didascalia shows either); "" when all pass. Reads
// whether the document or expense still has open instalments.
std::string ControllaPagamento(const PagamentoDaControllare& p);

// A payment to write. id 0: a new one.
struct Pagamento {
    long id = 0;
    int modo = ModoIncasso;          // the journal's entrata for incasso, uscita otherwise
    Contro contro = Contro::Documento;
    double data = 0;
    std::string descrizione;
    double importo = 0;
    std::string tipoPagamento, cc, numeroAssegno;
    long cliente = 0, fornitore = 0, documento = 0, spesa = 0, scadenza = 0;
    int destinazione = 0;            // of the journal row: 0 Banca, 1 Cassa, 2 Altro
};
inline constexpr const char* MsgDocumentoSparito =
    "Il documento non esiste più: è stato eliminato da un altro utente. Il pagamento non è stato registrato.";
inline constexpr const char* MsgSpesaSparita =
    "La spesa non esiste più: è stata eliminata da un altro utente. Il pagamento non è stato registrato.";
inline constexpr const char* MsgScadenzaSparita =
    "La scadenza non esiste più: è stata eliminata da un altro utente. Il pagamento non è stato registrato.";
// The text that stops the write because what the payment settles has gone; "" when all is there.
std::string MotivoNonRegistrabile(const Pagamento& p);
// Writes the row and its journal twin, then brings Pagato/Pagata of the document or expense and of
// the instalment in line with what is now paid, all in one transaction. Answers the payment's id.
// Raises, with nothing written, when the document, expense or instalment has gone meanwhile.
long RegistraPagamento(const Pagamento& p);
// Deletes a payment with its journal row and puts the flags of what it settled back in line.
void EliminaPagamento(long pagamento);

// The distinct values of a text field of Pagamenti already typed (TipoPagamento, CC), sorted.
std::vector<std::string> ValoriUsati(const std::string& campo);

}  // namespace payments
