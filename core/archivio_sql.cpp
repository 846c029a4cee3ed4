#include "core/archivio_sql.h"

#include <algorithm>

#include "core/dialogs.h"
#include "core/session.h"
#include "store/convert.h"
#include "store/errors.h"

namespace core {

store::Database& Archivio() {
    auto& db = core::session().dbArchivio;
    if (!db || !db->isOpen()) store::raise(3420, "dbArchivio");
    return *db;
}

std::unique_ptr<store::Recordset> Apri(std::string_view sql) { return Archivio().OpenRecordset(sql); }

bool HaRighe(std::string_view sql) { return Apri(sql)->RecordCount() > 0; }

std::string NumeroSql(double numero) {
    std::string testo = store::NumberText(numero);
    std::replace(testo.begin(), testo.end(), ',', '.');
    return testo;
}

std::string DataSql(double data) { return store::DateText(data); }

double NumeroOZero(const store::Value& valore) { return valore.isNull() ? 0.0 : store::CDbl(valore); }

std::optional<double> NumeroOpzionale(const store::Value& valore) {
    if (valore.isNull()) return std::nullopt;
    return store::CDbl(valore);
}

CursoreOccupato::CursoreOccupato() { core::dialogs().setBusy(true); }
CursoreOccupato::~CursoreOccupato() { core::dialogs().setBusy(false); }

}  // namespace core
