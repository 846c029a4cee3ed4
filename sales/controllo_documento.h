// The checks every editor of Documenti runs before it writes a header, in this order: a date is
// there, it is a date, it lies in the current Esercizio, a counterparty is chosen, the number is
// not taken (else the user may take the next free one), the number fits the dates of its sequence.
// Each failure shows its message and nothing is written; a number out of order can never be
// overridden, and a duplicate can only be replaced, never saved.
#pragma once

#include <string>

namespace sales {

struct TestataDaControllare {
    long tipo = 0;
    std::string data;      // the date box's text
    long controparte = 0;  // the customer or supplier chosen; 0 when none
    long numero = 0;
    std::string prefisso;
    std::string suffisso;
    long numeroAttuale = 0;  // the number the record held when the editor opened, 0 for a new one
    bool controllaEsercizio = true;  // false: a date outside the current Esercizio passes
};

enum class EsitoControllo {
    Valido,
    DataNonValida,   // focus goes back to the date box
    Rifiutato,
};

// Runs the checks; when the user takes the next free number in place of a duplicate, the new
// number is left in testata.numero for the editor to show.
EsitoControllo ControllaTestataDocumento(TestataDaControllare& testata);

}  // namespace sales
