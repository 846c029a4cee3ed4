// The customers or the suppliers to a delimited text file, with the fields the user chose in the
// order chosen. The choice is kept per list in EsportazioneCampi.
#pragma once

#include <string>
#include <vector>

#include "store/dao.h"

namespace output {

// A list: "Clienti" or "Fornitori", which is also the table it reads.
inline const char* const ElenchiEsportabili[] = {"Clienti", "Fornitori"};

struct CampoEsportato {
    std::string campo;
    bool incluso = true;
    long id = 0;   // its row in EsportazioneCampi
};

// The list's fields by Posizione; a list with no rows gets its default ones first.
std::vector<CampoEsportato> CaricaCampiEsportati(store::Database& db, const std::string& elenco);
// Keeps the tick and the place of every field (Posizione from 1, in the order given).
void SalvaCampiEsportati(store::Database& db, const std::vector<CampoEsportato>& campi);

// Writes the list: a first line with the ticked names, then one line per row with their values,
// joined by the separator; rows sorted by the first field given, ticked or not. Windows-1252 (a
// character it lacks becomes '?'), CR LF after every line; a line break inside a value becomes a
// blank, a separator inside a value stays as it is. Returns the rows written.
long EsportaElenco(store::Database& db, const std::string& elenco, const std::vector<CampoEsportato>& campi,
                   const std::string& separatore, const std::string& percorso);

}  // namespace output
