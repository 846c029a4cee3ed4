// What the benchmarks of the registers share: the program's session on a generated archive, the
// indexes the structure update would add to it, SQLite alone on the same file running the text the
// engine runs, and each side's mean with their ratio.
#pragma once

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QByteArray>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/impostazioni.h"
#include "core/session.h"
#include "store/catalog_database.h"
#include "store/convert.h"
#include "store/model/model.h"
#include "support/DialoghiScript.h"
#include "support/archive_gen.h"

namespace bench {

using Clock = std::chrono::steady_clock;
inline double ms(Clock::time_point da) { return std::chrono::duration<double, std::milli>(Clock::now() - da).count(); }

struct RecordConRighe {
    std::string tabella, tabellaRighe, nota;
    std::function<std::string(long id)> testata;
    int n = 0;
    std::vector<std::string> campi;
    std::function<std::vector<store::Value>(long idRiga, long id, int r)> riga;
    std::function<void(long id)> totali;

    long trovaOCrea(store::Database& db) const {
        if (auto rs = db.OpenRecordset("Select ID from " + tabella + " where Note='" + nota + "'"); !rs->Eof())
            return store::CLng(rs->get("ID"));
        const long id = store::CLng(db.OpenRecordset("Select Max(ID) as M from " + tabella)->get("M")) + 1;
        const long ultima = store::CLng(db.OpenRecordset("Select Max(ID) as M from " + tabellaRighe)->get("M"));
        db.Execute(testata(id));
        std::vector<std::vector<store::Value>> righe;
        for (int r = 1; r <= n; ++r) righe.push_back(riga(ultima + r, id, r));
        store::model::InserisciRighe(db, tabellaRighe, campi, righe);
        totali(id);
        return id;
    }
};

// The program's session on the archive at path, its period from dal, with every right and the
// language read; the scripted dialogs answer for the screens.
struct Sessione {
    std::string path;
    store::DatabasePtr db;
    std::shared_ptr<prova::ScriptedDialogs> script;

    Sessione(const std::string& archivio, const std::string& cartella, const std::string& dal) : path(archivio) {
        namespace fs = std::filesystem;
        qputenv("QT_QPA_PLATFORM", "offscreen");
        prova::applicazioneDiProva();
        const fs::path programma = fs::temp_directory_path() / cartella;
        fs::create_directories(programma);
        fs::copy_file(fs::path(store::model::CartellaDatiSorgente()) / "Italiano.lng", programma / "Italiano.lng",
                      fs::copy_options::overwrite_existing);
        core::Session& s = core::session();
        s.CartellaProgramma = programma.string();
        core::RipristinaLingua();
        db = store::Workspace::Default().OpenDatabase(path);
        s.dbArchivio = db;
        AggiungiIndiciMancanti(*db);
        s.dbAziende = store::Workspace::Default().OpenMemory();
        store::model::CreaAziende(*s.dbAziende);
        s.dbAziende->Execute("Insert Into Aziende (ID,Denominazione) VALUES (1,'Studio Rossi')");
        s.dbAziende->Execute("Insert Into Esercizi (ID,Azienda,Nome,Dal,File) VALUES (1,1,'Esercizio',#" + dal + "#,'" +
                             path + "')");
        s.IDEsercizio = 1;
        s.Privilegi = std::string(14, '1');
        s.NomeUtente = "admin";
        s.IDAzienda = 1;
        script = prova::installaScript();
    }

    // A message shown on the way means a step failed and was skipped: the time would be a lie.
    bool senzaMessaggi(benchmark::State& state) const {
        if (script->messaggi().empty()) return true;
        state.SkipWithError(script->messaggi().front().testo.c_str());
        return false;
    }
};

// SQLite alone on the same file, with the engine's functions and collation, running the text the
// engine runs for a statement of the dialect.
class Grezzo {
public:
    explicit Grezzo(const Sessione& s) : motore_(s.db) {
        sqlite3_open_v2(s.path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
        store::sql::registerFunctions(db_);
        sqlite3_busy_timeout(db_, 4000);
    }
    ~Grezzo() { sqlite3_close_v2(db_); }
    Grezzo(const Grezzo&) = delete;
    Grezzo& operator=(const Grezzo&) = delete;

    sqlite3_stmt* prepara(const std::string& dialetto) {
        const store::sql::Translation t = motore_->impl().translate(dialetto);
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(db_, t.sql.c_str(), static_cast<int>(t.sql.size()), &s, nullptr);
        store::sql::bindParams(s, t.params);
        return s;
    }

    // Steps up to n rows (all with n < 0), reading every column as a row shown would be.
    long leggi(const std::string& dialetto, long n = -1) {
        sqlite3_stmt* s = prepara(dialetto);
        long righe = 0;
        while ((n < 0 || righe < n) && sqlite3_step(s) == SQLITE_ROW) {
            for (int c = 0, k = sqlite3_column_count(s); c < k; ++c) benchmark::DoNotOptimize(sqlite3_column_text(s, c));
            ++righe;
        }
        sqlite3_finalize(s);
        return righe;
    }

    void esegui(const std::string& sqlite) { sqlite3_exec(db_, sqlite.c_str(), nullptr, nullptr, nullptr); }

private:
    store::DatabasePtr motore_;
    sqlite3* db_ = nullptr;
};

struct Misure {
    double motore = 0, grezzo = 0;
    int volte = 0;
    void riporta(benchmark::State& state) const {
        if (volte == 0) return;
        state.counters["motore_ms"] = motore / volte;
        state.counters["sqlite_ms"] = grezzo / volte;
        state.counters["rapporto"] = grezzo > 0 ? motore / grezzo : 0;
    }
    // SQLite's side of one iteration, timed: up to n rows of the statement (all with n < 0).
    void sqlite(Grezzo& g, const std::string& istruzione, long n) {
        const auto t = Clock::now();
        benchmark::DoNotOptimize(g.leggi(istruzione, n));
        grezzo += ms(t);
        ++volte;
    }
};

// The first screen of a register, side by side: apri opens the register and shows it (it may move
// the start of the time forward, to leave out what is not to be measured); then SQLite alone reads
// the same first rows of the statement the grid ran. full: a first screen short of rows is an error.
template <class Apri, class Tempi>
void PrimaSchermata(benchmark::State& state, const Sessione& s, Grezzo& g, Tempi& m, Apri apri, bool full = true) {
    constexpr long kRigheSchermata = 40;
    for (auto _ : state) {
        auto inizio = Clock::now();
        auto registro = apri(inizio);
        m.motore += ms(inizio);
        if (!s.senzaMessaggi(state)) break;
        const long mostrate = registro->griglia()->righeMostrate();
        state.counters["righe"] = static_cast<double>(mostrate);
        if (full && mostrate < kRigheSchermata) state.SkipWithError("the first screen is not full");
        const std::string istruzione = registro->griglia()->istruzione();
        state.PauseTiming();
        registro.reset();
        state.ResumeTiming();
        m.sqlite(g, istruzione, kRigheSchermata);
    }
    m.riporta(state);
}

}  // namespace bench
