#include "core/record.h"

#include <cctype>

#include "core/session.h"
#include "store/convert.h"

namespace core {

namespace {

store::DatabasePtr ArchivioSeNullo(const store::DatabasePtr& db) { return db ? db : session().dbArchivio; }

store::Database& Aperto(const store::DatabasePtr& db) {
    if (!db) store::raise(91, "(database non aperto)");
    return *db;
}

std::string PrimaParola(const std::string& testo) {
    const auto inizio = testo.find_first_not_of(" \t\r\n");
    if (inizio == std::string::npos) return {};
    const auto fine = testo.find_first_of(" \t\r\n", inizio);
    return testo.substr(inizio, fine == std::string::npos ? std::string::npos : fine - inizio);
}

// Max(id)+1 as the statement gives it; Null (an empty table) gives 1.
long MassimoPiuUno(store::Database& db, const std::string& tabella) {
    auto rs = db.OpenRecordset("select Max(id) as NewCont from " + tabella);
    const store::Value massimo = rs->get("NewCont");
    return massimo.isNull() ? 1 : store::CLng(massimo) + 1;
}

bool TabellaSenzaId(const store::Database& db, const std::string& tabella) {
    const auto def = db.GetTableDef(tabella);
    if (!def) return false;  // a saved query: the statement itself tells
    for (const auto& campo : def->Fields) {
        if (store::CompareText(campo.Name, "id") == 0) return false;
    }
    return true;
}

bool HaRighe(store::Database& db, const std::string& sql) { return !db.OpenRecordset(sql)->Eof(); }

}  // namespace

void NuovoID(store::Recordset& rs, const store::DatabasePtr& db) {
    store::Database& database = Aperto(ArchivioSeNullo(db));
    if (!rs.HasField("id")) return;
    rs.set("id", store::Value::Long(MassimoPiuUno(database, NomeTabellaDaSql(rs.Name()))));
    rs.Update();
    rs.setBookmark(rs.LastModified());
    rs.Edit();
}

long ProssimoID(const std::string& tabella, const store::DatabasePtr& db) {
    store::Database& database = Aperto(ArchivioSeNullo(db));
    if (TabellaSenzaId(database, tabella)) return 1;
    return MassimoPiuUno(database, tabella);
}

std::string NomeTabellaDaSql(const std::string& sql) {
    const auto from = store::AsciiLower(sql).find("from");
    if (from == std::string::npos) return PrimaParola(sql);
    return PrimaParola(sql.substr(from + 4));
}

bool CampoEsiste(const std::string& campo, store::Recordset* rs, store::Recordset* altro) {
    store::Recordset* usato = rs ? rs : altro;
    return usato && usato->HasField(campo);
}

bool TabellaEsiste(const std::string& nome, const store::DatabasePtr& db) {
    try {
        const auto database = ArchivioSeNullo(db);
        return database && database->TableExists(nome);
    } catch (const store::JetError&) {
        return false;
    }
}

bool QueryEsiste(const std::string& nome, const store::DatabasePtr& db) {
    try {
        return db && db->QueryExists(nome);
    } catch (const store::JetError&) {
        return false;
    }
}

bool RecordMovimentato(long id, const std::string& campo, const std::vector<VoceTabella>& voci,
                       std::string& messaggio) {
    store::Database& archivio = Aperto(session().dbArchivio);
    std::string elenco;
    for (std::size_t i = 0; i < voci.size(); ++i) {
        const std::string sql =
            "Select * from " + voci[i].Tabella + " where " + campo + "=" + std::to_string(id);
        if (HaRighe(archivio, sql)) elenco += std::to_string(i + 1) + ") " + voci[i].Descrizione + "\r\n";
    }
    if (elenco.empty()) return false;
    messaggio = "Impossibile eliminare. Il record risulta movimentato nelle seguenti tabelle:\r\n" + elenco;
    return true;
}

}  // namespace core
