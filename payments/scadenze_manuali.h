// An instalment typed by hand against a document: the documents it may be put on, the description
// it proposes, and the checks of its confirm.
#pragma once

#include <string>

namespace payments {

// The kinds offered on each side. Only the 5 of the customers' list is a kind the program writes;
// the others stay, for archives that may hold them.
inline constexpr const char* TipiLatoClienti = " and (Tipo=5 or Tipo=13 or Tipo=16 or Tipo=18 or Tipo=23 or Tipo=28)";
inline constexpr const char* TipiLatoFornitori =
    " and (Tipo=2 or Tipo=12 or Tipo=15 or Tipo=17 or Tipo=20 or Tipo=27)";

// The documents of qrDocumentiScadenze on one side, latest first: for a new instalment only
// those with something left to schedule.
std::string ListaDocumentiScadenze(bool nuova, bool latoFornitori);
// The documents of one customer ("Cliente") or supplier ("Fornitore"), those with something left
// when the instalment is new.
std::string ListaDocumentiDi(const std::string& campo, long id, bool nuova);

// The same for an instalment of an expense, on qrSpeseScadenze: every expense, or one supplier's.
std::string ListaSpeseScadenze(bool nuova);
std::string ListaSpeseDi(long fornitore, bool nuova);

// What a document picked says about an instalment: its total already scheduled and what is left,
// each rounded to the cent. On a change the instalment's own amount is among the scheduled, so the
// amount typed is first lowered by what is scheduled before it is compared with what is left.
struct DocumentoScelto {
    double scadenze = 0;     // ImportoScadenze
    double rimanente = 0;    // Rimanente
    std::string descrizione;   // DescDocumento
};
double ImportoDaConfrontare(double importo, const DocumentoScelto& d, bool modifica);

// "Saldo" (s170) when the amount covers what is left, "Acconto" (s226) otherwise, a blank and the
// document's description.
std::string DescrizioneScadenza(double importo, const DocumentoScelto& d, bool modifica);

struct ScadenzaDaControllare {
    bool dataVuota = true;
    bool dataValida = false;
    long cliente = 0, fornitore = 0, documento = 0;
    double importo = 0;
    DocumentoScelto scelto;
    bool modifica = false;
    bool spesa = false;   // an instalment of an expense: its supplier, its expense and the amount have their own texts
};
// The key of the text of the first check that fails, in the order of the confirm; "" when none.
std::string ControllaScadenza(const ScadenzaDaControllare& s);

}  // namespace payments
