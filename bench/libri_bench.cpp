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

#include <filesystem>
#include <string>
#include <vector>

#include "books/bilancio.h"
#include "books/estratto.h"
#include "core/archivio_sql.h"
#include "core/calendario.h"
#include "core/session.h"
#include "sales/totali.h"
#include "store/model/model.h"
#include "support/archive_gen.h"
#include "support/misure.h"

namespace fs = std::filesystem;

namespace {

// The session's archive at path, with SQLite alone on the same file beside it; the session is
// emptied when it goes.
struct Archivio {
    explicit Archivio(const std::string& path)
        : db((core::session().dbArchivio = store::Workspace::Default().OpenDatabase(path))), grezzo(path, db) {}
    ~Archivio() {
        core::Session& s = core::session();
        if (s.dbTemp) s.dbTemp->Close();
        db->Close();
        s = core::Session{};
    }
    store::DatabasePtr db;
    bench::Grezzo grezzo;
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

int colonna(sqlite3_stmt* s, const std::string& nome) {
    for (int c = 0; c < sqlite3_column_count(s); ++c)
        if (nome == sqlite3_column_name(s, c)) return c;
    return -1;
}

void BM_EstrattoCliente(benchmark::State& state) {
    Archivio a(archivioEstratto());
    bench::Grezzo& grezzo = a.grezzo;
    const fs::path temp = fs::temp_directory_path() / "brevano-estratto-temp.mdb";
    fs::remove(temp);
    core::session().dbTemp = store::Workspace::Default().CreateDatabase(temp.string());
    store::model::CreaTemp(*core::session().dbTemp);
    sqlite3_exec(grezzo.db(), ("ATTACH '" + temp.string() + "' AS t").c_str(), nullptr, nullptr, nullptr);
    bench::MisureCpu m;
    long righe = 0;
    m.inTurno(state, true, [] { books::GeneraEstratto(1, books::EstrattoCliente, false, 0, 0, false); }, [&] {
        sqlite3_exec(grezzo.db(), "BEGIN; DELETE FROM t.Estratto WHERE Tipo=0", nullptr, nullptr, nullptr);
        sqlite3_stmt* doc = grezzo.prepara("Select * from qrDocumentiDesc where EscludiEstrattoConto=0 And (Tipo=5 Or "
                                           "Tipo=6) and Cliente=1 Order By Data");
        int postoI = 0, postoP = 0;
        sqlite3_stmt* pagI =
            grezzo.prepara("Select * from qrIncassi where Documento=987654321 Order by DataPagamento", 987654321, &postoI);
        sqlite3_stmt* pagP =
            grezzo.prepara("Select * from qrPagamenti where Documento=987654321 Order by DataPagamento", 987654321, &postoP);
        sqlite3_stmt* ins = nullptr;
        sqlite3_prepare_v2(grezzo.db(), "INSERT INTO t.Estratto (ID,Tipo,Data,Descrizione,Dare,Avere,Saldo) VALUES (?,0,?,?,?,?,?)",
                           -1, &ins, nullptr);
        const int cId = 0, cData = colonna(doc, "Data"), cDesc = colonna(doc, "DescDocumento"),
                  cTot = colonna(doc, "ImportoTotale"), cTipo = colonna(doc, "Tipo");
        const int pData = colonna(pagI, "DataPagamento"), pDesc = colonna(pagI, "DescPagamento"),
                  pImp = colonna(pagI, "ImportoPagamento");
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
            sqlite3_stmt* pag = attivo ? pagI : pagP;
            sqlite3_bind_int64(pag, attivo ? postoI : postoP, sqlite3_column_int64(doc, cId));
            while (sqlite3_step(pag) == SQLITE_ROW) {
                const double importo = sqlite3_column_double(pag, pImp);
                scrivi(pag, pData, pDesc, attivo ? 0 : importo, attivo ? importo : 0);
            }
            sqlite3_reset(pag);
        }
        for (sqlite3_stmt* s : {doc, pagI, pagP, ins}) sqlite3_finalize(s);
        sqlite3_exec(grezzo.db(), "COMMIT", nullptr, nullptr, nullptr);
        righe = id;
    });
    state.counters["righe"] = static_cast<double>(righe);
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
    Archivio a(archivioBilancio());
    const double dal = state.range(0) ? store::DateSerial(2024, 3, 1) : store::DateSerial(2024, 1, 1);
    const double al = state.range(0) ? store::DateSerial(2024, 3, 31) : store::DateSerial(2024, 12, 31);
    const auto statementi = statementiBilancio(dal, al);
    bench::MisureCpu m;
    books::FigureBilancio f;
    m.inTurno(state, true, [&] { f = books::CalcolaBilancio(dal, al); }, [&] {
        for (const auto& st : statementi) benchmark::DoNotOptimize(a.grezzo.primoNumero(st));
    });
    state.counters["incassi"] = f.incassi;
    state.SetLabel(state.range(0) ? "marzo" : "anno intero");
}
BENCHMARK(BM_Bilancio)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

// The chart under the figures: the twelve months from January, each the six statements over its days.
void BM_BilancioGrafico(benchmark::State& state) {
    Archivio a(archivioBilancio());
    const double dal = store::DateSerial(2024, 1, 1);
    bench::MisureCpu m;
    m.inTurno(state, true, [dal] { benchmark::DoNotOptimize(books::MesiBilancio(dal)); }, [&] {
        for (int mese = 1; mese <= 12; ++mese)
            for (const auto& st : statementiBilancio(store::DateSerial(2024, mese, 1),
                                                     store::DateSerial(2024, mese, core::GiorniMese(mese, 2024))))
                benchmark::DoNotOptimize(a.grezzo.primoNumero(st));
    });
}
BENCHMARK(BM_BilancioGrafico)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace

BENCHMARK_MAIN();
