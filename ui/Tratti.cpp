#include "ui/Tratti.h"

#include <algorithm>

#include "core/archivio_sql.h"
#include "core/varie.h"
#include "store/convert.h"

namespace ui {

namespace {

// More gaps than this between the IDs, and the rows linking to none are found by a lookup per row.
constexpr std::size_t kMassimoIntervalli = 64;

std::string Elenco(const std::vector<long>& id) {
    std::string s;
    for (long i : id) s += (s.empty() ? "" : ",") + std::to_string(i);
    return s;
}

// The rows whose link is Null or falls outside every ID: ranges around the IDs, which an index on
// the link serves.
std::vector<std::string> Mancanti(const std::string& e, std::vector<long> id) {
    if (id.empty()) return {e + " Is Null", e + " Is Not Null"};
    std::sort(id.begin(), id.end());
    std::vector<std::string> fuori{e + " Is Null", e + "<" + std::to_string(id.front()), e + ">" + std::to_string(id.back())};
    for (std::size_t i = 1; i < id.size(); ++i)
        if (id[i] > id[i - 1] + 1)
            fuori.push_back(e + " Between " + std::to_string(id[i - 1] + 1) + " And " + std::to_string(id[i] - 1));
    if (fuori.size() > 3 + kMassimoIntervalli) return {e + " Is Null", e + " Not In (" + Elenco(id) + ")"};
    return fuori;
}

class Tratti {
public:
    Tratti(const std::string& base, const std::vector<GruppoCollegato>& g, std::vector<CondizioniLivello> c,
           const std::vector<std::string>& ordine, bool inverso)
        : gruppi_(g), condizioni_(std::move(c)), ordine_(ordine), inverso_(inverso) {
        const std::size_t where = core::PosizioneClausola(base, "where");
        testa_ = core::Trim(base.substr(0, where));
        if (where != std::string::npos) filtro_ = "(" + core::Trim(base.substr(where + 5)) + ")";
    }

    std::size_t quanti(std::size_t livello = 0) const {
        if (livello == condizioni_.size()) return 1;
        return 1 + condizioni_[livello].descrizioni.size() * quanti(livello + 1);
    }

    // The pieces under the descriptions already chosen (`scelte`, one per level above `livello`).
    void aggiungi(std::size_t livello, const std::vector<std::string>& scelte, std::vector<std::string>& out) const {
        if (livello == condizioni_.size()) {
            out.push_back(testa_ + " where " + Tutte(scelte, "") + OrderBy(livello));
            return;
        }
        // Each term carries the list's filter and the choices above it: SQLite serves every one from
        // an index on the links.
        std::vector<std::string> mancanti;
        for (const std::string& m : condizioni_[livello].mancanti) mancanti.push_back("(" + Tutte(scelte, m) + ")");
        out.push_back(testa_ + " where " + core::Unisci(mancanti, " Or ") + OrderBy(livello + 1));
        for (const std::string& d : condizioni_[livello].descrizioni) {
            std::vector<std::string> sotto = scelte;
            sotto.push_back(d);
            aggiungi(livello + 1, sotto, out);
        }
    }

private:
    // The list's filter, the choices and one more condition, all together.
    std::string Tutte(const std::vector<std::string>& scelte, const std::string& ancora) const {
        std::vector<std::string> termini;
        if (!filtro_.empty()) termini.push_back(filtro_);
        termini.insert(termini.end(), scelte.begin(), scelte.end());
        if (!ancora.empty()) termini.push_back(ancora);
        return core::Unisci(termini, " And ");
    }

    // The order within a piece: the fields of the levels from `livello` down, then the sort.
    std::string OrderBy(std::size_t livello) const {
        std::vector<std::string> termini;
        for (std::size_t l = livello; l < gruppi_.size(); ++l) termini.push_back(gruppi_[l].campo + (inverso_ ? " DESC" : ""));
        termini.insert(termini.end(), ordine_.begin(), ordine_.end());
        return termini.empty() ? "" : " ORDER BY " + core::Unisci(termini, ", ");
    }

    std::string testa_, filtro_;  // the statement up to its Where, and its filter in parentheses
    const std::vector<GruppoCollegato>& gruppi_;
    std::vector<CondizioniLivello> condizioni_;
    const std::vector<std::string>& ordine_;
    bool inverso_;
};

}  // namespace

CondizioniLivello CondizioniDelLivello(store::Database& db, const GruppoCollegato& g) {
    auto rs = db.OpenRecordset("Select ID, " + g.campo + " from " + g.tabella + " Order By " + g.campo);
    std::vector<long> tutti;
    std::vector<std::pair<std::string, std::vector<long>>> descrizioni;
    for (; !rs->Eof(); rs->MoveNext()) {
        const store::Value id = rs->get("ID"), desc = rs->get(g.campo);
        if (id.isNull() || desc.isNull()) continue;
        const std::string testo = store::ConcatText(desc);
        if (descrizioni.empty() || store::CompareText(descrizioni.back().first, testo) != 0)
            descrizioni.push_back({testo, {}});
        descrizioni.back().second.push_back(store::CLng(id));
        tutti.push_back(store::CLng(id));
    }
    CondizioniLivello out{Mancanti(g.legame, tutti), {}};
    for (auto& d : descrizioni) {
        std::sort(d.second.begin(), d.second.end());
        out.descrizioni.push_back(g.legame + " In (" + Elenco(d.second) + ")");
    }
    return out;
}

std::vector<std::string> IstruzioniATratti(store::Database& db, const std::string& base,
                                           const std::vector<GruppoCollegato>& livelli,
                                           const std::vector<std::string>& ordine, bool inverso, std::size_t massimo) {
    if (livelli.empty()) return {};
    for (const char* clausola : {"group by", "having", "union"})
        if (core::PosizioneClausola(base, clausola) != std::string::npos) return {};
    std::vector<CondizioniLivello> condizioni;
    for (const GruppoCollegato& g : livelli) condizioni.push_back(CondizioniDelLivello(db, g));
    const Tratti tratti(base, livelli, std::move(condizioni), ordine, inverso);
    if (tratti.quanti() > massimo) return {};
    std::vector<std::string> out;
    tratti.aggiungi(0, {}, out);
    if (inverso) std::reverse(out.begin(), out.end());
    return out;
}

bool RigheAlmeno(store::Database& db, const std::string& sql, std::size_t quante) {
    auto rs = db.OpenRecordset(sql);
    std::size_t lette = 0;
    for (; lette < quante && !rs->Eof(); rs->MoveNext()) ++lette;
    return lette >= quante;
}

}  // namespace ui
