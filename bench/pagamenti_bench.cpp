// Recording a collection on an archive of 1,000,000 documents: the payment row, its journal row and
// the flags of the document and of the instalment, in one commit, as the payment editor writes them
// (target under 10 ms). Beside it the same work as hand-written statements on SQLite's own C
// interface, over the same file: the two sides run in turn within every iteration, so whatever else
// loads the machine weighs on both alike. Each side reports its wall and processor time per payment,
// with the archive on disk (the commit waits for the disk) and in memory (the work alone).
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <ctime>
#include <map>
#include <filesystem>
#include <string>
#include <vector>

#include "core/session.h"
#include "payments/pagamenti.h"
#include "store/convert.h"
#include "store/dao.h"
#include "support/archive_gen.h"

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

struct Rata {
    long id, documento, cliente;
};

// Where the private copy lies: 0 the temporary folder on disk, 1 /dev/shm, in memory, which
// leaves out the wait for the disk at each commit and shows the work of the two sides alone.
fs::path copia(int dove) {
    return (dove == 0 ? fs::temp_directory_path() : fs::path("/dev/shm")) / "brevano-pagamenti-1M.mdb";
}

// A private copy of the archive (the benchmark writes), opened as the session's archive, and the
// instalments of fatture it pays, spread over the whole archive.
const std::vector<Rata>& rate(int dove) {
    static std::map<int, std::vector<Rata>> elenchi;
    static std::map<int, store::DatabasePtr> aperti;
    if (!aperti[dove]) {
        fs::copy_file(bench::ArchivioProva(bench::MilioneDiDocumenti()), copia(dove), fs::copy_options::overwrite_existing);
        store::DatabasePtr db = store::Workspace::Default().OpenDatabase(copia(dove).string());
        bench::AggiungiIndiciMancanti(*db);
        aperti[dove] = db;
        std::vector<Rata>& r = elenchi[dove];
        auto rs = db->OpenRecordset(
            "Select Scadenze.ID, Scadenze.Documento, Documenti.Cliente from Scadenze INNER JOIN Documenti ON "
            "Scadenze.Documento = Documenti.ID where Documenti.Tipo=5 and Documenti.Cliente>0");
        for (int i = 0; !rs->Eof(); rs->MoveNext(), ++i)
            if (i % 37 == 0)
                r.push_back({store::CLng(rs->get("ID")), store::CLng(rs->get("Documento")), store::CLng(rs->get("Cliente"))});
    }
    core::session().dbArchivio = aperti[dove];
    return elenchi[dove];
}

sqlite3* grezzo(int dove) {
    static std::map<int, sqlite3*> aperti;
    sqlite3*& h = aperti[dove];
    if (!h) {
        sqlite3_open_v2(copia(dove).c_str(), &h, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
        sqlite3_busy_timeout(h, 4000);
    }
    return h;
}

void esegui(sqlite3* db, const std::string& sql) {
    if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(db));
}

double numero(sqlite3* db, const std::string& sql) {
    sqlite3_stmt* s = nullptr;
    sqlite3_prepare_v2(db, sql.c_str(), -1, &s, nullptr);
    const double v = sqlite3_step(s) == SQLITE_ROW ? sqlite3_column_double(s, 0) : 0;
    sqlite3_finalize(s);
    return v;
}

// The engine: the payment editor's write.
void registra(const Rata& r) {
    payments::Pagamento p;
    p.modo = payments::ModoIncasso;
    p.data = store::DateSerial(2026, 6, 15);
    p.descrizione = "Acconto fattura";
    p.importo = 0.01;
    p.tipoPagamento = "Bonifico";
    p.cc = "IT60X0542811101000000123456";
    p.cliente = r.cliente;
    p.documento = r.documento;
    p.scadenza = r.id;
    payments::RegistraPagamento(p);
}

// The same rows and flags by hand: new ids, two inserts, the two remainders and the two updates.
void registraGrezzo(sqlite3* db, const Rata& r) {
    esegui(db, "BEGIN IMMEDIATE");
    const long id = static_cast<long>(numero(db, "SELECT coalesce(max(ID),0)+1 FROM Pagamenti"));
    const long pn = static_cast<long>(numero(db, "SELECT coalesce(max(ID),0)+1 FROM PrimaNota"));
    const std::string d = std::to_string(r.documento), s = std::to_string(r.id), i = std::to_string(id);
    esegui(db, "INSERT INTO Pagamenti (ID,Documento,Spesa,Scadenza,Cliente,Fornitore,DescPagamento,DataPagamento,"
               "ImportoPagamento,NumeroAssegno,TipoPagamento,CC) VALUES (" + i + "," + d + ",0," + s + "," +
               std::to_string(r.cliente) + ",0,'Acconto fattura',46188,0.01,'','Bonifico','IT60X0542811101000000123456')");
    esegui(db, "INSERT INTO PrimaNota (ID,Data,Descrizione,CC,Importo,Tipo,Destinazione,Pagamento,TipoPagamento) VALUES (" +
                   std::to_string(pn) + ",46188,'Acconto fattura','IT60X0542811101000000123456',0.01,0,0," + i +
                   ",'Bonifico')");
    const double daPagare = numero(db, "SELECT round(coalesce(ImportoTotale,0)-(SELECT coalesce(sum(ImportoPagamento),0) "
                                       "FROM Pagamenti WHERE Documento=" + d + "),2) FROM Documenti WHERE ID=" + d);
    esegui(db, "UPDATE Documenti SET Pagato=" + std::string(daPagare > 0 ? "0" : "-1") + " WHERE ID=" + d);
    const double rata = numero(db, "SELECT round(coalesce(ImportoScadenza,0)-(SELECT coalesce(sum(ImportoPagamento),0) "
                                   "FROM Pagamenti WHERE Scadenza=" + s + "),2) FROM Scadenze WHERE ID=" + s);
    esegui(db, "UPDATE Scadenze SET Pagata=" + std::string(rata > 0 ? "0" : "-1") + " WHERE ID=" + s);
    esegui(db, "COMMIT");
}

double msDa(Clock::time_point t) { return std::chrono::duration<double, std::milli>(Clock::now() - t).count(); }
double msCpuDa(std::clock_t c) { return 1000.0 * static_cast<double>(std::clock() - c) / CLOCKS_PER_SEC; }

// Wall and processor time of each side, per payment.
void BM_RegistraPagamento(benchmark::State& state) {
    const int dove = static_cast<int>(state.range(0));
    const std::vector<Rata>& elenco = rate(dove);
    sqlite3* db = grezzo(dove);
    std::size_t cursore = 0;
    double motore = 0, sqlite = 0, motoreCpu = 0, sqliteCpu = 0;
    for (auto _ : state) {
        auto t = Clock::now();
        std::clock_t c = std::clock();
        registra(elenco[cursore++ % elenco.size()]);
        motore += msDa(t);
        motoreCpu += msCpuDa(c);
        t = Clock::now();
        c = std::clock();
        registraGrezzo(db, elenco[cursore++ % elenco.size()]);
        sqlite += msDa(t);
        sqliteCpu += msCpuDa(c);
    }
    const double n = static_cast<double>(state.iterations());
    state.counters["motore_ms"] = motore / n;
    state.counters["sqlite_ms"] = sqlite / n;
    state.counters["motore_cpu_ms"] = motoreCpu / n;
    state.counters["sqlite_cpu_ms"] = sqliteCpu / n;
    state.counters["rapporto"] = sqlite > 0 ? motore / sqlite : 0;
}
BENCHMARK(BM_RegistraPagamento)->ArgName("inMemoria")->Arg(0)->Arg(1)->Iterations(300)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
