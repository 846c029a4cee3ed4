#include "core/archivio_sql.h"

#include <algorithm>

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

namespace {

bool spazio(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
char minuscola(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// The length of the clause's words at i (any spacing between them, case ignored), 0 when they are not there.
size_t parolaA(std::string_view sql, size_t i, std::string_view clausola) {
    size_t j = i;
    for (size_t k = 0; k < clausola.size(); ++k) {
        if (clausola[k] == ' ') {
            if (j >= sql.size() || !spazio(sql[j])) return 0;
            while (j < sql.size() && spazio(sql[j])) ++j;
        } else {
            if (j >= sql.size() || minuscola(sql[j]) != clausola[k]) return 0;
            ++j;
        }
    }
    const bool finisce = j >= sql.size() || spazio(sql[j]) || sql[j] == '(' || sql[j] == '[';
    return finisce ? j - i : 0;
}

}  // namespace

size_t PosizioneClausola(std::string_view sql, std::string_view clausola) {
    size_t trovata = std::string::npos;
    int profondita = 0;
    char chiusura = 0;
    for (size_t i = 0; i < sql.size(); ++i) {
        const char c = sql[i];
        if (chiusura) {
            if (c == chiusura) chiusura = 0;
            continue;
        }
        if (c == '\'' || c == '"') chiusura = c;
        else if (c == '[') chiusura = ']';
        else if (c == '(') ++profondita;
        else if (c == ')') --profondita;
        else if (profondita == 0 && (i == 0 || spazio(sql[i - 1])) && parolaA(sql, i, clausola) > 0) trovata = i;
    }
    return trovata;
}

std::string SenzaOrdine(const std::string& sql) {
    const size_t ordine = PosizioneClausola(sql, "order by");
    return ordine == std::string::npos ? sql : sql.substr(0, ordine);
}

std::string AggiungiCondizione(const std::string& sql, const std::string& condizione) {
    size_t fine = sql.size();
    for (const char* coda : {"group by", "having", "order by"}) fine = std::min(fine, PosizioneClausola(sql, coda));
    std::string testa = sql.substr(0, fine);
    const std::string resto = fine < sql.size() ? " " + sql.substr(fine) : std::string();
    while (!testa.empty() && spazio(testa.back())) testa.pop_back();
    const size_t where = PosizioneClausola(testa, "where");
    if (where == std::string::npos) return testa + " where " + condizione + resto;
    const size_t filtro = where + parolaA(testa, where, "where");
    size_t inizio = filtro;
    while (inizio < testa.size() && spazio(testa[inizio])) ++inizio;
    return testa.substr(0, filtro) + " (" + testa.substr(inizio) + ") and " + condizione + resto;
}

store::DatabasePtr ArchivioAperto() { return core::session().dbArchivio; }

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
