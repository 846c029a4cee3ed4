// A list grouped by descriptions of lookup tables, read in pieces: no index gives the rows in the
// order of descriptions held by other tables, so SQLite would sort the whole list before its first
// row. One piece per description instead (the rows linking to it, in an order an index gives), the
// pieces in the order of the descriptions: the first rows come at once, however long the list.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "store/dao.h"

namespace ui {

// A grouping level whose captions are the descriptions of a lookup table keyed by ID.
struct GruppoCollegato {
    std::string campo;    // the description: a field of the list and of the table
    std::string tabella;  // the lookup table
    std::string legame;   // the list's field holding the table's ID
};

// A level's conditions, in the order of its captions: first the rows linking to no description
// (Null, no row, a row with no description: an empty caption sorts first), as disjoint terms each an
// index can serve; then one per description, on every ID bearing it (texts equal as the engine
// compares them).
struct CondizioniLivello {
    std::vector<std::string> mancanti;
    std::vector<std::string> descrizioni;
};
CondizioniLivello CondizioniDelLivello(store::Database& db, const GruppoCollegato& g);

// The pieces' statements, in the order of the list: `base` (a statement with no Order By of its own)
// filtered on one description of each level, ordered by `ordine` (the sort's terms); and before the
// descriptions of a level, its rows linking to none, ordered by the deeper levels' fields and
// `ordine`. With `inverso` the list is read from its end: the pieces come last first and the levels'
// fields are in descending order (`ordine` is given already turned). Empty when there would be more
// than `massimo` pieces, or when `base` groups or joins statements.
std::vector<std::string> IstruzioniATratti(store::Database& db, const std::string& base,
                                           const std::vector<GruppoCollegato>& livelli,
                                           const std::vector<std::string>& ordine, bool inverso, std::size_t massimo);

// Whether the statement gives at least `quante` rows (read up to there, no further).
bool RigheAlmeno(store::Database& db, const std::string& sql, std::size_t quante);

}  // namespace ui
