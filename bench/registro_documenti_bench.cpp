// The register of fatture on an archive of 1,000,000 documents (about 600,000 fatture, 5,000
// customers): the real frmDocumenti offscreen, beside SQLite's own C interface running the very
// text the engine runs, on the same file.
//   PrimaSchermata  the register opened until its first screen of rows is shown, grouped by
//                   customer as it opens, and the list plain (by date) after chkRaggruppa is cleared;
//                   SQLite: the statement prepared and its first 40 rows read.
//   UltimaRiga      Ctrl+End on the list until its last row is current, the rows read (righe);
//                   SQLite: the statement in the opposite order, a block of rows read, and every row
//                   of the statement stepped (sqlite_tutte_ms), which is what reading on to the end costs.
//   SalvaRiga       a line of a 500-line fattura changed and saved, then the document's totals and
//                   the grid's row read again, as the register does after a line's save; SQLite:
//                   the line's UPDATE, the sums of the lines, the document's UPDATE and its row.
//   ApriDocumento   the header editor made and loaded on that fattura, and the register's list of its
//                   lines; SQLite: the statements the editor runs to fill its lists (customers, terms,
//                   prefixes, suffixes, next number), the document's row and its 500 lines.
#include <benchmark/benchmark.h>

#include <QCheckBox>

#include <initializer_list>
#include <memory>
#include <string>

#include "sales/screens/frmDocumenti.h"
#include "sales/screens/frmDocumentiEdita.h"
#include "sales/totali.h"
#include "support/registro_misure.h"
#include "ui/Dettaglio.h"

namespace {

constexpr int kRigheGrandeDocumento = 500;
const char* const kNotaGrandeDocumento = "Documento di 500 righe per le misure";

using bench::Clock;
using bench::Misure;
using bench::ms;

// A fattura of 500 lines in the middle of the year, made once and found again by its note.
long grandeDocumento(store::Database& db) {
    auto L = [](long v) { return store::Value::Long(static_cast<std::int32_t>(v)); };
    const bench::RecordConRighe fattura{
        "Documenti", "Movimenti", kNotaGrandeDocumento,
        [](long id) {
            return "Insert Into Documenti (ID,Tipo,Numero,Prefisso,Suffisso,Data,Cliente,CondizioniPagamento,Note) "
                   "VALUES (" + std::to_string(id) + ",5,999999,'','',#07/01/2024#,17,1,'" + kNotaGrandeDocumento + "')";
        },
        kRigheGrandeDocumento, {"ID", "Documento", "DescMovimento", "Quantita", "PrezzoUnitario", "Importo", "Iva"},
        [L](long riga, long id, int r) {
            return std::vector<store::Value>{L(riga), L(id), store::Value::Text("Riga " + std::to_string(r)),
                                             store::Value::Double(1 + r % 3), store::Value::Double(10 + r),
                                             store::Value::Double((1 + r % 3) * (10.0 + r)), L(1 + r % 4)};
        },
        [](long id) { sales::CalcolaTotaliDocumento(id); }};
    return fattura.trovaOCrea(db);
}

// The program's session on the generated archive, with the big fattura in it.
struct Ambiente : bench::Sessione {
    long documento = 0;
    Ambiente() : bench::Sessione(bench::ArchivioProva(bench::MilioneDiDocumenti()), "brevano-registro-bench", "01/01/2024") {
        documento = grandeDocumento(*db);
    }
};

void raggruppa(frmDocumenti& f, bool si) {
    QSignalBlocker blocco(f.chkRaggruppa);
    f.chkRaggruppa->setChecked(si);
    f.Raggruppa();
    QApplication::processEvents();
}

// Shown as it opens, grouped by customer; the list plain (by date) unless raggruppato.
std::unique_ptr<frmDocumenti> apriRegistro(bool raggruppato = true) {
    auto f = bench::Apri<frmDocumenti>(nullptr, 5);
    if (!raggruppato) raggruppa(*f, false);
    return f;
}

// ---- the benchmarks ------------------------------------------------------------------------------

void BM_PrimaSchermata(benchmark::State& state) {
    const bool raggruppato = state.range(0) != 0;
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    Misure m;
    bench::PrimaSchermata(state, a, grezzo, m, [raggruppato](Clock::time_point& inizio) {
        auto f = apriRegistro();
        if (!raggruppato) {
            inizio = Clock::now();   // the grouped list is what opens; the plain one is measured alone
            raggruppa(*f, false);
        }
        return f;
    });
}
BENCHMARK(BM_PrimaSchermata)->ArgName("raggruppato")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_UltimaRiga(benchmark::State& state) {
    const bool raggruppato = state.range(0) != 0;
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    Misure m;
    long righe = 0;
    double tutte = 0;
    bench::UltimaRiga(state, a, grezzo, m, [raggruppato] { return apriRegistro(raggruppato); }, [&](ui::VetraGrid& g) {
        righe = g.modello()->righeLette();
        if (g.currentIndex().row() != g.righeMostrate() - 1 || g.modello()->canFetchMore({}))
            state.SkipWithError("Ctrl+End did not reach the last row");
        return [&, istruzione = g.istruzione()] {
            const auto t = Clock::now();
            benchmark::DoNotOptimize(grezzo.leggi(istruzione));
            tutte += ms(t);
        };
    });
    state.counters["righe"] = static_cast<double>(righe);
    state.counters["sqlite_tutte_ms"] = m.volte ? tutte / m.volte : 0;
}
BENCHMARK(BM_UltimaRiga)->ArgName("raggruppato")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

// The register open on the big fattura, plain; range(0) 1: the first save after the register opened,
// 0: the saves after it.
void BM_SalvaRiga(benchmark::State& state) {
    const bool prima = state.range(0) != 0;
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    Misure m;
    std::unique_ptr<frmDocumenti> f;
    long riga = store::CLng(a.db->OpenRecordset("Select Min(ID) as M from Movimenti where Documento=" +
                                                std::to_string(a.documento))->get("M"));
    int giro = 0;
    for (auto _ : state) {
        if (!f || prima) {
            state.PauseTiming();
            f.reset();
            f = apriRegistro(false);
            if (!f->griglia()->vaiAId(a.documento)) state.SkipWithError("the document is not in the list");
            state.ResumeTiming();
        }
        const double quantita = 1 + (++giro % 5);
        auto t = Clock::now();
        {
            auto rs = a.db->OpenRecordset("Select * from qrMovimenti where ID=" + std::to_string(riga));
            rs->Edit();
            rs->set("Quantita", store::Value::Double(quantita));
            rs->set("Importo", store::Value::Double(quantita * 11));
            rs->Update();
        }
        sales::CalcolaTotaliDocumento(a.documento, f->griglia()->Recordset());
        f->griglia()->AggiornaRiga();
        m.motore += ms(t);
        if (!a.senzaMessaggi(state)) break;
        t = Clock::now();
        const std::string d = std::to_string(a.documento);
        grezzo.esegui("UPDATE Movimenti SET Quantita=" + std::to_string(quantita) + ", Importo=" +
                      std::to_string(quantita * 11) + " WHERE ID=" + std::to_string(riga));
        benchmark::DoNotOptimize(grezzo.leggi(sales::SqlTotaliMovimenti(a.documento)));
        grezzo.esegui("UPDATE Documenti SET Imponibile=Imponibile+0, ImportoTotale=ImportoTotale+0 WHERE ID=" + d);
        benchmark::DoNotOptimize(grezzo.leggi("Select * from qrDocumenti where ID=" + d));
        m.grezzo += ms(t);
        ++m.volte;
    }
    m.riporta(state);
}
BENCHMARK(BM_SalvaRiga)->ArgName("prima")->Arg(1)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SalvaRiga)->ArgName("prima")->Arg(0)->Iterations(50)->Unit(benchmark::kMillisecond);

void BM_ApriDocumento(benchmark::State& state) {
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    Misure m;
    auto f = apriRegistro();
    const std::string d = std::to_string(a.documento);
    m.inTurno(
        state,
        [&] {
            frmDocumentiEdita e(f.get(), 5);
            e.Prepara({Modalita::Modifica, a.documento, nullptr});
            f->Movimenti->Carica(a.documento);
            QApplication::processEvents();
        },
        [&] { return a.senzaMessaggi(state); },
        [&] {
            for (const std::string& sql : std::initializer_list<std::string>{
                     "Select * from qrClienti order by Denominazione",
                     "Select * from CondizioniPagamento order by DescPagamento",
                     "Select Prefisso From Documenti where Tipo=5 Group By Prefisso",
                     "Select Suffisso From Documenti where Tipo=5 Group By Suffisso",
                     "Select Max(Numero) as dNum from Documenti where Tipo=5 and Prefisso='' and Suffisso='' and "
                     "DateValue(Data)>=DateValue('01/01/2024')",
                     "Select * from qrDocumenti where ID=" + d,
                     "Select * from qrMovimenti where Documento=" + d + " Order By ID"})
                benchmark::DoNotOptimize(grezzo.leggi(sql));
        });
}
BENCHMARK(BM_ApriDocumento)->Iterations(10)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
