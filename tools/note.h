// User notes: categories ([Note]) with their own fields (NoteCampi) and records kept one value per
// row (NoteDettagli, the values of one record sharing its Record number). The register shows a
// category as a table with one column per field, through the scratch table [Note] of temp.mdb.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "store/dao.h"

namespace tools {

struct CampoNota {
    long id = 0;
    std::string nome;
    long dimensione = 0;   // maximum length; 0 no limit
};

// The fields of a category, in the order they were made.
std::vector<CampoNota> CampiCategoria(store::Database& archivio, long categoria);

// Builds the scratch [Note] of temp.mdb anew for the category: ID, the record's number, and a text
// column per field named as the field, then one row per record with its values. Two fields of the
// same name cannot both be columns: the database's error stops the view.
std::vector<CampoNota> PreparaVistaNote(store::Database& archivio, store::Database& temp, long categoria);

// The values of one record, by field id.
using ValoriScheda = std::vector<std::pair<long, std::string>>;

// The check before a record is written: a value for a field the category does not have, or
// longer than its field allows, gives the message; "" when the record can be written.
std::string ControllaScheda(store::Database& archivio, long categoria, const ValoriScheda& valori);

// Writes a record's values: a new record (record 0) takes the next Record number across all
// categories; an existing one changes its values, adding those of fields made after it. Answers
// the record's number. When ControllaScheda refuses, nothing is written and its message is raised.
long SalvaScheda(store::Database& archivio, long categoria, long record, const ValoriScheda& valori);

// The check of a field before it is written: an empty name, a name the category already has, or
// a changed field made smaller than it was (0, no limit, is the largest). "" when it may be saved.
std::string ControllaCampo(store::Database& archivio, long categoria, long campo, const std::string& nome,
                           long dimensione);

// The deletes, each with what hangs on it.
void EliminaScheda(store::Database& archivio, long record);
void EliminaCampo(store::Database& archivio, long campo);
void EliminaCategoria(store::Database& archivio, long categoria);

}  // namespace tools
