// How the logic of every area talks to the archive: the statement text is
// built at the point of use, with each user text's apostrophes doubled, each number's decimal comma
// turned to a point and each date in the short form that DateValue reads back.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "store/dao.h"

namespace core {

// The session's archive; error 3420 (object no longer set) when none is open.
store::Database& Archivio();

// The session's archive, null when none is open: for those who choose a database before reading.
store::DatabasePtr ArchivioAperto();

std::unique_ptr<store::Recordset> Apri(std::string_view sql);
// True when the statement gives at least one row (RecordCount read right after opening).
bool HaRighe(std::string_view sql);

// A number as a statement must read it: "1234.5", never "1234,5".
std::string NumeroSql(double numero);
// A date as the program concatenates it: "05/03/2024", with " 14.30.00" when it has a time.
std::string DataSql(double data);
// A field that counts as 0 when Null.
double NumeroOZero(const store::Value& valore);
// A sum that may be Null, kept apart from 0.
std::optional<double> NumeroOpzionale(const store::Value& valore);

// Where a clause ("where", "order by") of the statement itself starts: outside quotes, brackets and
// parentheses, as whole words, any spacing and case; npos when it has none. With several, the last.
size_t PosizioneClausola(std::string_view sql, std::string_view clausola);

// The statement without its own Order By (a sum or a count over it needs none).
std::string SenzaOrdine(const std::string& sql);

// The statement with one more condition ANDed into its own filter: "... where (its filter) and
// condition", or " where condition" added before its Group By, Having or Order By when it has none.
std::string AggiungiCondizione(const std::string& sql, const std::string& condizione);

// The busy pointer for as long as the object lives.
class CursoreOccupato {
public:
    CursoreOccupato();
    ~CursoreOccupato();
    CursoreOccupato(const CursoreOccupato&) = delete;
    CursoreOccupato& operator=(const CursoreOccupato&) = delete;
};

}  // namespace core
