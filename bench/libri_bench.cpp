// The books on large archives, beside SQLite's own C interface running the very text the engine
// runs, on the same files.
//   EstrattoCliente  a customer's statement over 10,000 documents (fatture and credit notes) and
//                    20,000 payments, written into the scratch file; SQLite: the documents' statement
//                    and each document's payments, translated once and stepped, the rows inserted.
//   Bilancio         the ten figures of the bilancio on 1,000,000 documents and 1,000,000 payments,
//                    over the whole year (the screen's first entry) and over one month; SQLite: the
//                    six statements' text stepped.
//   BilancioGrafico  the chart's twelve months on the same archive, each month's six statements.
// The archives are made once under the system's temporary folder: the statement's by itself, the
// bilancio's as a copy of the register benchmark's archive of 1,000,000 documents whose payments are
// brought to 1,000,000 by copying rows.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "books/bilancio.h"
#include "books/estratto.h"
#include "core/archivio_sql.h"
#include "core/calendario.h"
#include "core/session.h"
#include "sales/totali.h"
#include "store/catalog_database.h"
#include "store/convert.h"
#include "store/model/model.h"
#include "store/sql/translator.h"
#include "support/archive_gen.h"

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

// The processor's time of this process, apart from the wall clock: on a loaded machine the wall
// clock also counts the time others had the processor.
double cpuMs() { return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

struct Misure {
    double motore = 0, grezzo = 0, motoreCpu = 0, grezzoCpu = 0;
    int volte = 0;
    double t0 = 0, c0 = 0;
    void via() { t0 = ora(), c0 = cpuMs(); }
    void motoreFatto() { motore += ora() - t0, motoreCpu += cpuMs() - c0; }
    void grezzoFatto() { grezzo += ora() - t0, grezzoCpu += cpuMs() - c0; }
    static double ora() { return std::chrono::duration<double, std::milli>(Clock::now().time_since_epoch()).count(); }
    void riporta(benchmark::State& state) const {
        if (volte == 0) return;
        state.counters["motore_ms"] = motore / volte;
        state.counters["sqlite_ms"] = grezzo / volte;
        state.counters["motore_cpu_ms"] = motoreCpu / volte;
        state.counters["sqlite_cpu_ms"] = grezzoCpu / volte;
        state.counters["rapporto_cpu"] = grezzoCpu > 0 ? motoreCpu / grezzoCpu : 0;
    }
};

// SQLite alone on a file, with the engine's functions, running the engine's text of a statement.
class Grezzo {
public:
    Grezzo(const std::string& path, store::Database& motore) : motore_(motore) {
        sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
        store::sql::registerFunctions(db_);
        sqlite3_busy_timeout(db_, 4000);
    }
    ~Grezzo() { sqlite3_close_v2(db_); }
    sqlite3* db() { return db_; }

    // segnaposto: a number of the statement whose placeholder is answered, for binding it again.
    sqlite3_stmt* prepara(const std::string& dialetto, double segnaposto = 0, int* posto = nullptr) {
        const store::sql::Translation t = motore_.impl().translate(dialetto);
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(db_, t.sql.c_str(), static_cast<int>(t.sql.size()), &s, nullptr);
        store::sql::bindParams(s, t.params);
        for (size_t i = 0; posto && i < t.params.size(); ++i)
            if (t.params[i].isNumeric() && store::CDbl(t.params[i]) == segnaposto) *posto = static_cast<int>(i) + 1;
        return s;
    }
    double primoNumero(const std::string& dialetto) {
        sqlite3_stmt* s = prepara(dialetto);
        const double v = sqlite3_step(s) == SQLITE_ROW ? sqlite3_column_double(s, 0) : 0;
        sqlite3_finalize(s);
        return v;
    }

private:
    sqlite3* db_ = nullptr;
    store::Database& motore_;
};

// ---- the statement ---------------------------------------------------------------------------

constexpr int kDocumenti = 10000;

std::string archivioEstratto() {
    const fs::path path = fs::temp_directory_path() / "brevano-estratto-10000.mdb";
    if (fs::exists(path)) return path.string();
    const std::string parziale = path.string() + ".parziale";
    fs::remove(parziale);
    store::model::GeneraArchivioVuoto(parziale);
    auto db = store::Workspace::Default().OpenDatabase(parziale);
    db->Execute("Insert Into Clienti (ID,DescCliente) VALUES (1,'Rossi Srl')");
    db->Execute("Insert Into Clienti (ID,DescCliente) VALUES (2,'Bianchi')");
    using V = store::Value;
    std::vector<std::vector<V>> documenti, pagamenti;
    for (int i = 1; i <= kDocumenti; ++i) {
        const double data = store::DateSerial(2024, 1, 1) + (i * 365.0) / kDocumenti;
        const double totale = 100 + (i * 37) % 5000 + 0.25 * (i % 4);
        documenti.push_back({V::Long(i), V::Long(i % 10 == 0 ? 6 : 5), V::Long(i), V::Date(data), V::Long(1 + (i % 50 == 0)),
                             V::Double(totale), V::Bool(false)});
        for (int p = 0; p < 2; ++p)
            pagamenti.push_back({V::Long(2 * i - 1 + p), V::Long(i), V::Long(1), V::Text("Pagamento " + std::to_string(p + 1)),
                                 V::Date(data + 10 + 20 * p), V::Double(totale / (p == 0 ? 2 : 4))});
    }
    store::model::InserisciRighe(*db, "Documenti", {"ID", "Tipo", "Numero", "Data", "Cliente", "ImportoTotale", "EscludiEstrattoConto"},
                                 documenti);
    store::model::InserisciRighe(*db, "Pagamenti", {"ID", "Documento", "Cliente", "DescPagamento", "DataPagamento", "ImportoPagamento"},
                                 pagamenti);
    db->Close();
    fs::rename(parziale, path);
    return path.string();
}

void BM_EstrattoCliente(benchmark::State& state) {
    const std::string path = archivioEstratto();
    auto& s = core::session();
    s.dbArchivio = store::Workspace::Default().OpenDatabase(path);
    const fs::path temp = fs::temp_directory_path() / "brevano-estratto-temp.mdb";
    fs::remove(temp);
    s.dbTemp = store::Workspace::Default().CreateDatabase(temp.string());
    store::model::CreaTemp(*s.dbTemp);
    Grezzo grezzo(path, *s.dbArchivio);
    sqlite3_exec(grezzo.db(), ("ATTACH '" + temp.string() + "' AS t").c_str(), nullptr, nullptr, nullptr);
    Misure m;
    long righe = 0;
    for (auto _ : state) {
        m.via();
        books::GeneraEstratto(1, books::EstrattoCliente, false, 0, 0, false);
        m.motoreFatto();

        m.via();
        sqlite3_exec(grezzo.db(), "BEGIN; DELETE FROM t.Estratto WHERE Tipo=0", nullptr, nullptr, nullptr);
        sqlite3_stmt* doc = grezzo.prepara("Select * from qrDocumentiDesc where EscludiEstrattoConto=0 And (Tipo=5 Or "
                                           "Tipo=6) and Cliente=1 Order By Data");
        int postoI = 0, postoP = 0;
        sqlite3_stmt* pagI =
            grezzo.prepara("Select * from qrIncassi where Documento=987654321 Order by DataPagamento", 987654321, &postoI);
        sqlite3_stmt* pagP =
            grezzo.prepara("Select * from qrPagamenti where Documento=987654321 Order by DataPagamento", 987654321, &postoP);
        sqlite3_stmt* pag = pagI;
        sqlite3_stmt* ins = nullptr;
        sqlite3_prepare_v2(grezzo.db(), "INSERT INTO t.Estratto (ID,Tipo,Data,Descrizione,Dare,Avere,Saldo) VALUES (?,0,?,?,?,?,?)",
                           -1, &ins, nullptr);
        const int cId = 0;
        int cData = -1, cDesc = -1, cTot = -1, cTipo = -1, pData = -1, pDesc = -1, pImp = -1;
        for (int c = 0; c < sqlite3_column_count(doc); ++c) {
            const std::string n = sqlite3_column_name(doc, c);
            if (n == "Data") cData = c;
            if (n == "DescDocumento") cDesc = c;
            if (n == "ImportoTotale") cTot = c;
            if (n == "Tipo") cTipo = c;
        }
        for (int c = 0; c < sqlite3_column_count(pag); ++c) {
            const std::string n = sqlite3_column_name(pag, c);
            if (n == "DataPagamento") pData = c;
            if (n == "DescPagamento") pDesc = c;
            if (n == "ImportoPagamento") pImp = c;
        }
        long id = 0;
        double saldo = 0;
        auto scrivi = [&](sqlite3_stmt* da, int data, int desc, double dare, double avere) {
            saldo += dare - avere;
            sqlite3_bind_int64(ins, 1, ++id);
            sqlite3_bind_value(ins, 2, sqlite3_column_value(da, data));
            sqlite3_bind_value(ins, 3, sqlite3_column_value(da, desc));
            dare ? sqlite3_bind_double(ins, 4, dare) : sqlite3_bind_null(ins, 4);
            avere ? sqlite3_bind_double(ins, 5, avere) : sqlite3_bind_null(ins, 5);
            sqlite3_bind_double(ins, 6, saldo);
            sqlite3_step(ins);
            sqlite3_reset(ins);
        };
        while (sqlite3_step(doc) == SQLITE_ROW) {
            const bool attivo = sqlite3_column_int(doc, cTipo) == 5;
            const double totale = sqlite3_column_double(doc, cTot);
            scrivi(doc, cData, cDesc, attivo ? totale : 0, attivo ? 0 : totale);
            pag = attivo ? pagI : pagP;
            sqlite3_bind_int64(pag, attivo ? postoI : postoP, sqlite3_column_int64(doc, cId));
            while (sqlite3_step(pag) == SQLITE_ROW) {
                const double importo = sqlite3_column_double(pag, pImp);
                scrivi(pag, pData, pDesc, attivo ? 0 : importo, attivo ? importo : 0);
            }
            sqlite3_reset(pag);
        }
        sqlite3_finalize(doc);
        sqlite3_finalize(pagI);
        sqlite3_finalize(pagP);
        sqlite3_finalize(ins);
        sqlite3_exec(grezzo.db(), "COMMIT", nullptr, nullptr, nullptr);
        m.grezzoFatto();
        ++m.volte;
        righe = id;
    }
    m.riporta(state);
    state.counters["righe"] = static_cast<double>(righe);
    s.dbTemp->Close();
    s.dbArchivio->Close();
    s = core::Session{};
}
BENCHMARK(BM_EstrattoCliente)->Unit(benchmark::kMillisecond)->Iterations(5);

// ---- the bilancio ------------------------------------------------------------------------------

constexpr long kPagamenti = 1000000;

std::string archivioBilancio() {
    const fs::path path = fs::temp_directory_path() / "brevano-bilancio-1000000.mdb";
    if (fs::exists(path)) return path.string();
    const std::string parziale = path.string() + ".parziale";
    fs::copy_file(bench::ArchivioProva(bench::MilioneDiDocumenti()), parziale, fs::copy_options::overwrite_existing);
    sqlite3* db = nullptr;
    sqlite3_open(parziale.c_str(), &db);
    sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
    for (int copia = 1;; ++copia) {
        sqlite3_stmt* n = nullptr;
        sqlite3_prepare_v2(db, "SELECT count(*), max(ID) FROM Pagamenti", -1, &n, nullptr);
        sqlite3_step(n);
        const long conta = sqlite3_column_int64(n, 0), massimo = sqlite3_column_int64(n, 1);
        sqlite3_finalize(n);
        if (conta >= kPagamenti) break;
        const std::string sql =
            "INSERT INTO Pagamenti (ID,Documento,Spesa,Scadenza,Cliente,Fornitore,DescPagamento,DataPagamento,"
            "ImportoPagamento,TipoPagamento) SELECT ID+" + std::to_string(massimo) + ",Documento,Spesa,0,Cliente,"
            "Fornitore,DescPagamento,DataPagamento,ImportoPagamento,TipoPagamento FROM Pagamenti WHERE ID<=" +
            std::to_string(massimo) + " ORDER BY ID LIMIT " + std::to_string(kPagamenti - conta);
        if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK || copia > 10) break;
    }
    sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(db);
    fs::rename(parziale, path);
    return path.string();
}

// The six statements of the figures, as the routines build them.
std::vector<std::string> statementiBilancio(double dal, double al) {
    auto tra = [&](const std::string& campo) {
        return "DateValue(" + campo + ")>=DateValue('" + core::DataSql(dal) + "') And DateValue(" + campo +
               ")<=DateValue('" + core::DataSql(al) + "')";
    };
    std::vector<std::string> v = {
        "SELECT Sum(Round([Importo],2)) AS TotImponibile, Sum(Round([Importo]/100*[AliquotaIva],2)) AS TotImposta "
        "FROM (MovimentiSpese LEFT JOIN Spese ON MovimentiSpese.Spesa = Spese.ID) LEFT JOIN CodiciIva ON "
        "MovimentiSpese.Iva = CodiciIva.ID WHERE " + tra("Spese.Data"),
        "Select round(Sum(ImportoPagamento),2) as Pagato from qrPagamenti Where " + tra("DataPagamento"),
        "Select round(Sum(ImportoPagamento),2) as Incassato from qrIncassi Where " + tra("DataPagamento")};
    for (long tipo : {6, 5, 9})
        v.push_back("Select Round(Sum(Imponibile),2) AS TotImponibile, Round(Sum(Imposta),2) AS TotImposta from (" +
                    sales::SqlIvaPeriodo(tipo, dal, al) + ")");
    return v;
}

void BM_Bilancio(benchmark::State& state) {
    const std::string path = archivioBilancio();
    auto& s = core::session();
    s.dbArchivio = store::Workspace::Default().OpenDatabase(path);
    Grezzo grezzo(path, *s.dbArchivio);
    const double dal = state.range(0) ? store::DateSerial(2024, 3, 1) : store::DateSerial(2024, 1, 1);
    const double al = state.range(0) ? store::DateSerial(2024, 3, 31) : store::DateSerial(2024, 12, 31);
    const auto statementi = statementiBilancio(dal, al);
    Misure m;
    books::FigureBilancio f;
    for (auto _ : state) {
        m.via();
        f = books::CalcolaBilancio(dal, al);
        m.motoreFatto();
        m.via();
        for (const auto& st : statementi) benchmark::DoNotOptimize(grezzo.primoNumero(st));
        m.grezzoFatto();
        ++m.volte;
    }
    m.riporta(state);
    state.counters["incassi"] = f.incassi;
    state.SetLabel(state.range(0) ? "marzo" : "anno intero");
    s.dbArchivio->Close();
    s = core::Session{};
}
BENCHMARK(BM_Bilancio)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

// The chart under the figures: the twelve months from January, each the six statements over its days.
void BM_BilancioGrafico(benchmark::State& state) {
    const std::string path = archivioBilancio();
    auto& s = core::session();
    s.dbArchivio = store::Workspace::Default().OpenDatabase(path);
    Grezzo grezzo(path, *s.dbArchivio);
    const double dal = store::DateSerial(2024, 1, 1);
    Misure m;
    for (auto _ : state) {
        m.via();
        benchmark::DoNotOptimize(books::MesiBilancio(dal));
        m.motoreFatto();
        m.via();
        for (int mese = 1; mese <= 12; ++mese)
            for (const auto& st : statementiBilancio(store::DateSerial(2024, mese, 1),
                                                     store::DateSerial(2024, mese, core::GiorniMese(mese, 2024))))
                benchmark::DoNotOptimize(grezzo.primoNumero(st));
        m.grezzoFatto();
        ++m.volte;
    }
    m.riporta(state);
    s.dbArchivio->Close();
    s = core::Session{};
}
BENCHMARK(BM_BilancioGrafico)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace

BENCHMARK_MAIN();
