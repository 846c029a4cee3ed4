// The data-keeping commands on large archives: a backup of a company whose archive is about 1 GB,
// beside a raw copy by SQLite's own console (.backup); and a new period made from an archive of
// 1,000,000 documents, half of them paid, with the count of progress updates it showed.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "core/backup.h"
#include "payments/primanota.h"
#include "support/archive_gen.h"
#include "support/avvio_prova.h"

namespace fs = std::filesystem;

namespace {


// About 1 GB: the same archive with three times its document lines, copied in by SQLite itself
// (generating that many lines record by record takes far longer than the measure). Made once.
std::string UnGigabyte() {
    const fs::path path = fs::temp_directory_path() / "brevano-esercizi-1gb.mdb";
    if (fs::exists(path)) return path.string();
    const fs::path parziale = path.string() + ".parziale";
    fs::copy_file(bench::ArchivioProva(bench::MilioneDiDocumenti()), parziale, fs::copy_options::overwrite_existing);
    auto db = store::Workspace::Default().OpenDatabase(parziale.string());
    const long righe = store::CLng(db->OpenRecordset("Select Max(ID) As M from Movimenti")->get("M"));
    for (long volta = 1; volta <= 2; ++volta)
        db->Execute("Insert Into Movimenti (ID,Documento,Servizio,DescMovimento,Riferimenti,Quantita,PrezzoUnitario,"
                    "Sconto1,Sconto2,Importo,Iva) Select ID+" + std::to_string(volta * righe) +
                    ",Documento,Servizio,DescMovimento,Riferimenti,Quantita,PrezzoUnitario,Sconto1,Sconto2,Importo,Iva "
                    "from Movimenti where ID<=" + std::to_string(righe));
    db->Close();
    fs::rename(parziale, path);
    return path.string();
}

// The test program folder, with company 1 and its 2026 period on a copy of the archive in the data
// folder, opened as the session's; half of the documents and expenses paid.
struct Dati : prova::ProgrammaDiProva {
    fs::path archivio = dati / "Alfa 2026.mdb";

    explicit Dati(const std::string& sorgente) {
        fs::copy_file(sorgente, archivio);
        core::ScegliCartellaDati(dati.string());
        auto& master = *core::session().dbAziende;
        master.Execute("Insert Into Aziende (ID,Denominazione) VALUES (1,'Alfa')");
        master.Execute("Insert Into Esercizi (ID,Azienda,Nome,Dal,Al,File) VALUES (1,1,'Alfa 2026','01/01/2026',"
                       "'31/12/2026','" + archivio.string() + "')");
        auto& s = core::session();
        s.IDAzienda = 1;
        s.IDEsercizio = 1;
        s.dbArchivio = store::Workspace::Default().OpenDatabase(archivio.string());
        s.dbArchivio->Execute("Update Documenti set Pagato=True where ID Mod 2 = 0");
        s.dbArchivio->Execute("Update Spese set Pagata=True where ID Mod 2 = 0");
    }
};

void BM_CopiaDiBackup(benchmark::State& state) {
    Dati d(UnGigabyte());
    const fs::path copie = d.dati / "copie";
    fs::create_directories(copie);
    std::tm istante{};
    istante.tm_year = 126;
    istante.tm_mday = 1;
    int aggiornamenti = 0;
    for (auto _ : state) {
        ++istante.tm_sec;
        const core::EsitoCopia esito =
            core::EseguiBackup(copie.string(), istante, [&](const std::string&, int) { ++aggiornamenti; });
        if (!esito.riuscito()) state.SkipWithError(esito.messaggio.c_str());
        state.PauseTiming();
        fs::remove_all(esito.cartella);
        state.ResumeTiming();
    }
    state.counters["MB"] = static_cast<double>(fs::file_size(d.archivio)) / (1 << 20);
    state.counters["avanzamenti"] = aggiornamenti;
}
BENCHMARK(BM_CopiaDiBackup)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

// The floor: SQLite's console copying the archive alone, page by page, without compaction or check.
void BM_BackupGrezzoSqlite3(benchmark::State& state) {
    Dati d(UnGigabyte());
    const fs::path copia = d.dati / "grezza.db";
    for (auto _ : state) {
        const std::string comando = "sqlite3 '" + d.archivio.string() + "' \".backup '" + copia.string() + "'\"";
        if (std::system(comando.c_str()) != 0) state.SkipWithError("sqlite3 .backup");
        state.PauseTiming();
        fs::remove(copia);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_BackupGrezzoSqlite3)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

void BM_NuovoEsercizio(benchmark::State& state) {
    Dati d(bench::ArchivioProva(bench::MilioneDiDocumenti()));
    const double dal = store::DateSerial(2027, 1, 1);
    int aggiornamenti = 0, n = 0;
    for (auto _ : state) {
        const core::SaldiIniziali saldi{payments::SaldoPrecedente(dal - 1, 0), payments::SaldoPrecedente(dal - 1, 1)};
        const std::string nome = "Alfa 2027 " + std::to_string(++n);
        core::CreaEsercizioConRiporto(1, nome, dal, saldi, [&](const std::string&, int) { ++aggiornamenti; });
        state.PauseTiming();
        auto nuovo = store::Workspace::Default().OpenDatabase(core::FileEsercizio(nome), false, true);
        state.counters["documenti"] =
            static_cast<double>(store::CLng(nuovo->OpenRecordset("Select Count(*) As N from Documenti")->get("N")));
        nuovo->Close();
        fs::remove(core::FileEsercizio(nome));
        core::session().IDEsercizio = 1;
        state.ResumeTiming();
    }
    state.counters["avanzamenti"] = aggiornamenti;
}
BENCHMARK(BM_NuovoEsercizio)->Unit(benchmark::kSecond)->Iterations(1)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
