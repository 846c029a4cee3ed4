// What the benchmarks of the registers share: the program's session on a generated archive, and the
// first screen and Ctrl+End measured side by side. The archive is generated once into the system's
// temporary folder (minutes the first time); the structure update's indexes are added to it when
// missing, as the update does to an old archive. Each iteration runs the two sides in turn, so
// whatever else loads the machine weighs on both; the counters give each side's mean in milliseconds
// and their ratio.
#pragma once

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QByteArray>
#include <QTest>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/impostazioni.h"
#include "core/session.h"
#include "store/convert.h"
#include "store/model/model.h"
#include "support/DialoghiScript.h"
#include "support/archive_gen.h"
#include "support/misure.h"
#include "ui/VetraGrid.h"

namespace bench {

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

// A register of type R made with args and shown, its pending events run.
template <class R, class... A>
std::unique_ptr<R> Apri(A&&... args) {
    auto f = std::make_unique<R>(std::forward<A>(args)...);
    f->show();
    QApplication::processEvents();
    return f;
}

// The one session of type A of a benchmark program, made at its first use.
template <class A>
A& unica() {
    static A a;
    return a;
}

// Ctrl+End on the list of a register apri opens (not timed), until its last row is current; then
// SQLite alone reads a block of rows of the statement in the opposite order. dopo(grid) looks at the
// grid before the register goes and gives what is to run after SQLite's block.
template <class Apri, class Dopo>
void UltimaRiga(benchmark::State& state, const Sessione& s, Grezzo& g, Misure& m, Apri apri, Dopo dopo) {
    for (auto _ : state) {
        state.PauseTiming();
        auto registro = apri();
        ui::VetraGrid* griglia = registro->griglia();
        state.ResumeTiming();
        const auto inizio = Clock::now();
        QTest::keyClick(griglia, Qt::Key_End, Qt::ControlModifier);
        QApplication::processEvents();
        m.motore += ms(inizio);
        if (!s.senzaMessaggi(state)) break;
        const std::string inversa = griglia->istruzioneInversa();
        auto poi = dopo(*griglia);
        state.PauseTiming();
        registro.reset();
        state.ResumeTiming();
        m.sqlite(g, inversa, ui::VetraGridModel::RighePerBlocco);
        poi();
    }
    m.riporta(state);
}

}  // namespace bench
