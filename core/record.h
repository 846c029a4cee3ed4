// Record ids, existence tests and the delete guard, on the session's databases.
#pragma once

#include <string>
#include <vector>

#include "store/dao.h"

namespace core {

// Gives a record being added its id, Max(id)+1 of its table (1 on an empty table), writes it and
// leaves the recordset on it in edit mode, so that the editor fills it and updates again. A null
// database means the archive. A recordset with no field id is left to the caller.
void NuovoID(store::Recordset& rs, const store::DatabasePtr& db = nullptr);

// The next free id of a table, touching nothing: 1 when the table is empty or has no field id.
long ProssimoID(const std::string& tabella, const store::DatabasePtr& db = nullptr);

// The word after "from" (found without case anywhere in the statement): a field whose name holds
// "from" ahead of the clause defeats it. A bare table name, with no "from", is itself the answer.
std::string NomeTabellaDaSql(const std::string& sql);

// Whether the field is in the first recordset, or in the second when the first is null.
bool CampoEsiste(const std::string& campo, store::Recordset* rs, store::Recordset* altro = nullptr);
// A null database means the archive. Any failure counts as "not there".
bool TabellaEsiste(const std::string& nome, const store::DatabasePtr& db = nullptr);
bool QueryEsiste(const std::string& nome, const store::DatabasePtr& db);

// One table the delete guard searches, with the text the user reads for it.
struct VoceTabella {
    std::string Tabella;
    std::string Descrizione;
};

// True, with the message to show, when a table of the list has a row whose field equals id.
// Each line is numbered by its table's place in the list (1-based), not by a count of the hits.
// On false the message is left as it was.
bool RecordMovimentato(long id, const std::string& campo, const std::vector<VoceTabella>& voci,
                       std::string& messaggio);

}  // namespace core
