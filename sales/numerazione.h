// Titles of the document kinds and the numbering discipline of Documenti: where a number comes from, what makes a
// number a duplicate, what makes it out of order. Everything reads the session's archive.
//
// A numbering sequence is the set of documents with the same Tipo, Prefisso and Suffisso, counted
// from the first day of the current Esercizio: there is no table of counters, and a number freed by
// a deletion below the maximum is never handed out again.
#pragma once

#include <string>
#include <vector>

#include "core/documenti.h"

namespace sales {

// Every Prefisso / Suffisso ever used by a kind, in the engine's grouping order; a Null reads "".
// The combos stay open: these are offers, not the allowed values.
std::vector<std::string> CaricaPrefissi(long tipo);
std::vector<std::string> CaricaSuffissi(long tipo);

// Next free number of a sequence within the current Esercizio: the highest number dated from its
// first day on, plus one; 1 for a sequence with no such document. Documents whose Prefisso or
// Suffisso is Null belong to no sequence typed as "". The prefix goes into the statement as typed:
// an apostrophe in it surfaces as the engine's syntax error.
long ProssimoNumeroDocumento(long tipo, const std::string& prefisso, const std::string& suffisso);

// Next number of Spese, one sequence for all expenses, over the Numero texts that read as numbers.
// Never fails: a maximum that does not fit a 16-bit integer, or any engine error, gives 0.
short ProssimoNumeroSpesa();

// True when another document of the sequence, in any period, already holds numero.
// numeroAttuale is the number the record held when the editor opened (0 for a new record): keeping
// it is never a duplicate, and a new record numbered 0 never is.
bool NumeroDuplicato(long tipo, long numero, const std::string& prefisso, const std::string& suffisso,
                     long numeroAttuale);

// True when, within the sequence and from the start of the Esercizio on, no lower number carries a
// later date and no higher number an earlier one. Equal dates always pass; the time of day never
// counts.
bool SequenzaCronologicaValida(long tipo, long numero, double data, const std::string& prefisso,
                               const std::string& suffisso);


}  // namespace sales
