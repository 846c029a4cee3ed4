// Recording a collection on an archive of 1,000,000 documents: the payment row, its journal row and
// the flags of the document and of the instalment, in one commit, as the payment editor writes them
// (target under 10 ms). Beside it the same work as hand-written statements on SQLite's own C
// interface, over the same file: the two sides run in turn within every iteration, so whatever else
// loads the machine weighs on both alike. Each side reports its wall and processor time per payment,
// with the archive on disk (the commit waits for the disk) and in memory (the work alone).
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "core/session.h"
#include "payments/pagamenti.h"
#include "store/convert.h"
#include "store/dao.h"
#include "support/archive_gen.h"
#include "support/misure.h"

namespace fs = std::filesystem;

namespace {

struct Rata {
    long id, documento, cliente;
};

// A private copy of the archive (the benchmark writes), opened by the engine as the session's archive
// and by SQLite alone, with the instalments of fatture it pays, spread over the whole archive. Where
// it lies: 0 the temporary folder on disk, 1 /dev/shm, in memory, which leaves out the wait for the
// disk at each commit and shows the work of the two sides alone.
struct Copia {
    store::DatabasePtr db;
    sqlite3* grezzo = nullptr;
    std::vector<Rata> rate;
};

Copia& copia(int dove) {
    static std::map<int, Copia> copie;
    Copia& c = copie[dove];
    if (!c.db) {
        const fs::path cartella = dove == 0 ? fs::temp_directory_path() : fs::path("/dev/shm");
        const fs::path path = cartella / "brevano-pagamenti-1M.mdb";
        fs::copy_file(bench::ArchivioProva(bench::MilioneDiDocumenti()), path, fs::copy_options::overwrite_existing);
        c.db = store::Workspace::Default().OpenDatabase(path.string());
        bench::AggiungiIndiciMancanti(*c.db);
        auto rs = c.db->OpenRecordset(
            "Select Scadenze.ID, Scadenze.Documento, Documenti.Cliente from Scadenze INNER JOIN Documenti ON "
            "Scadenze.Documento = Documenti.ID where Documenti.Tipo=5 and Documenti.Cliente>0");
        for (int i = 0; !rs->Eof(); rs->MoveNext(), ++i)
            if (i % 37 == 0)
                c.rate.push_back(
                    {store::CLng(rs->get("ID")), store::CLng(rs->get("Documento")), store::CLng(rs->get("Cliente"))});
        sqlite3_open_v2(path.c_str(), &c.grezzo, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
        sqlite3_busy_timeout(c.grezzo, 4000);
    }
    core::session().dbArchivio = c.db;
    return c;
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

void BM_RegistraPagamento(benchmark::State& state) {
    const int dove = static_cast<int>(state.range(0));
    const Copia& c = copia(dove);
    const std::vector<Rata>& elenco = c.rate;
    std::size_t cursore = 0;
    bench::MisureCpu m;
    m.inTurno(state, false, [&] { registra(elenco[cursore++ % elenco.size()]); },
              [&] { registraGrezzo(c.grezzo, elenco[cursore++ % elenco.size()]); });
}
BENCHMARK(BM_RegistraPagamento)->ArgName("inMemoria")->Arg(0)->Arg(1)->Iterations(300)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
