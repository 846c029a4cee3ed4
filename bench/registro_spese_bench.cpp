// The register of expenses on an archive of 500,000 expenses (1,000,000 lines, 500 suppliers): the
// real frmSpese offscreen, beside SQLite's own C interface running the very text the engine runs,
// on the same file.
//   PrimaSchermata  the register opened until its first screen of rows is painted, grouped by class
//                   and kind as it opens; SQLite: the statement prepared and its first 40 rows read.
//   SommeElenco     the sums of the whole list in the totals bar, which follow the first screen;
//                   SQLite: the same aggregate.
//   SalvaRiga       on the register showing the expense a search found,
//                   a line of a 200-line expense changed and saved, then the expense's totals
//                   written through the register's row and the row read again, as the register does
//                   after a line's save; SQLite: the line's UPDATE, the sums of the lines, the
//                   expense's UPDATE and its row.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "core/archivio_sql.h"
#include "expenses/screens/frmSpese.h"
#include "expenses/totali_spesa.h"
#include "support/registro_misure.h"

namespace {

using bench::Clock;
using bench::ms;

constexpr int kRigheGrandeSpesa = 200;
const char* const kNotaGrandeSpesa = "Spesa di 200 righe per le misure";

// An expense of 200 lines in the middle of the year, with a 20% withholding, made once.
long grandeSpesa(store::Database& db) {
    auto L = [](long v) { return store::Value::Long(static_cast<std::int32_t>(v)); };
    const bench::RecordConRighe spesa{
        "Spese", "MovimentiSpese", kNotaGrandeSpesa,
        [](long id) {
            return "Insert Into Spese (ID,Numero,Data,Fornitore,TipoSpesa,Classificazione,RitenutaAcconto,Pagata,Note) "
                   "VALUES (" + std::to_string(id) + ",'999999',#07/01/2024#,17,1,1,20,False,'" + kNotaGrandeSpesa + "')";
        },
        kRigheGrandeSpesa, {"ID", "Spesa", "DescMovimento", "Importo", "Iva"},
        [L](long riga, long id, int r) {
            return std::vector<store::Value>{L(riga), L(id), store::Value::Text("Voce " + std::to_string(r)),
                                             store::Value::Double(10.5 + r), L(1 + r % 4)};
        },
        [](long id) { expenses::CalcolaTotaliSpesa(id); }};
    return spesa.trovaOCrea(db);
}

bench::Dimensioni dimensioni() {
    return {.fornitori = 500, .documenti = 2000, .righe = 2, .scadenze = 2000, .pagamenti = 2000, .spese = 500000, .primaNota = false};
}

struct Ambiente : bench::Sessione {
    long spesa = 0;
    Ambiente() : bench::Sessione(bench::ArchivioProva(dimensioni()), "brevano-spese-bench", "01/01/2024") {
        spesa = grandeSpesa(*db);
    }
};

// Shown and its rows painted; with `tutto`, also whatever the register leaves for after (the sums).
std::unique_ptr<frmSpese> apriRegistro(bool tutto = true) {
    auto f = std::make_unique<frmSpese>();
    f->show();
    f->griglia()->viewport()->repaint();
    if (tutto) QApplication::processEvents();
    return f;
}

void BM_PrimaSchermata(benchmark::State& state) {
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    bench::Misure m;
    bench::PrimaSchermata(state, a, grezzo, m, [](Clock::time_point&) { return apriRegistro(false); });
}
BENCHMARK(BM_PrimaSchermata)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_SommeElenco(benchmark::State& state) {
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    bench::Misure m;
    for (auto _ : state) {
        auto f = apriRegistro(false);
        auto t = Clock::now();
        QApplication::processEvents();
        m.motore += ms(t);
        if (!a.senzaMessaggi(state)) break;
        state.PauseTiming();
        const std::string sorgente = f->griglia()->sorgente();
        f.reset();
        state.ResumeTiming();
        m.sqlite(grezzo, "Select Sum(Imponibile), Sum(TotIva), Sum(TotRitenutaAcconto), Sum(ImportoSpesa) from (" +
                             sorgente.substr(0, sorgente.find(" Order By")) + ")", 1);
    }
    m.riporta(state);
}
BENCHMARK(BM_SommeElenco)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_SalvaRiga(benchmark::State& state) {
    Ambiente& a = bench::unica<Ambiente>();
    bench::Grezzo grezzo(a.path, a.db);
    bench::Misure m;
    auto f = apriRegistro();
    // The expense found as a search finds it, rather than by reading the list down to it.
    const std::string s = std::to_string(a.spesa);
    f->griglia()->setSorgente("Select * from qrSpese where ID=" + s);
    f->griglia()->Aggiorna();
    if (!f->griglia()->vaiAId(a.spesa)) state.SkipWithError("the expense is not in the list");
    const long riga = store::CLng(a.db->OpenRecordset("Select Min(ID) as M from MovimentiSpese where Spesa=" + s)->get("M"));
    int giro = 0;
    double importo = 0;
    m.inTurno(
        state,
        [&] {
            importo = 10 + (++giro % 7);
            {
                auto rs = a.db->OpenRecordset("Select * from MovimentiSpese where ID=" + std::to_string(riga));
                rs->Edit();
                rs->set("Importo", store::Value::Double(importo));
                rs->Update();
            }
            expenses::CalcolaTotaliSpesa(a.spesa, f->griglia()->Recordset());
            f->griglia()->AggiornaRiga();
        },
        [&] { return a.senzaMessaggi(state); },
        [&] {
            grezzo.esegui("UPDATE MovimentiSpese SET Importo=" + core::NumeroSql(importo) +
                          " WHERE ID=" + std::to_string(riga));
            benchmark::DoNotOptimize(grezzo.leggi(expenses::SqlTotaliSpesa(a.spesa)));
            grezzo.esegui("UPDATE Spese SET Imponibile=Imponibile+0, TotIva=TotIva+0, ImportoSpesa=ImportoSpesa+0 "
                          "WHERE ID=" + s);
            benchmark::DoNotOptimize(grezzo.leggi("Select * from qrSpese where ID=" + s));
        });
}
BENCHMARK(BM_SalvaRiga)->Iterations(50)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
