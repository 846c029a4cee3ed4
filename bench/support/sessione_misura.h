// The program's session for the benchmarks of the real screens: offscreen, the language read, a
// generated archive with the model's indexes, a company with its period and every right, and the
// scripted dialogs, whose messages tell that a measured step failed.
#pragma once

#include <QtGlobal>

#include <filesystem>
#include <memory>
#include <string>

#include "core/impostazioni.h"
#include "core/session.h"
#include "support/DialoghiScript.h"
#include "support/archive_gen.h"
#include "support/confronto_sqlite.h"

namespace bench {

struct SessioneMisura {
    std::string path;
    store::DatabasePtr db;
    std::filesystem::path programma;
    std::shared_ptr<prova::ScriptedDialogs> script;

    // cartella: the program folder's name under the system's temporary folder.
    SessioneMisura(const std::string& cartella, const Dimensioni& d)
        : programma(std::filesystem::temp_directory_path() / cartella) {
        namespace fs = std::filesystem;
        qputenv("QT_QPA_PLATFORM", "offscreen");
        prova::applicazioneDiProva();
        fs::create_directories(programma);
        fs::copy_file(fs::path(store::model::CartellaDatiSorgente()) / "Italiano.lng", programma / "Italiano.lng",
                      fs::copy_options::overwrite_existing);
        core::Session& s = core::session();
        s.CartellaProgramma = programma.string();
        core::RipristinaLingua();
        path = ArchivioProva(d);
        db = store::Workspace::Default().OpenDatabase(path);
        s.dbArchivio = db;
        aggiungiIndiciMancanti(*db);
    }

    // The company, its period from the first of January of anno, the user with every right.
    void apriEsercizio(int anno) {
        core::Session& s = core::session();
        s.dbAziende = store::Workspace::Default().OpenMemory();
        store::model::CreaAziende(*s.dbAziende);
        s.dbAziende->Execute("Insert Into Aziende (ID,Denominazione) VALUES (1,'Studio Rossi')");
        s.dbAziende->Execute("Insert Into Esercizi (ID,Azienda,Nome,Dal,File) VALUES (1,1,'Esercizio " +
                             std::to_string(anno) + "',#01/01/" + std::to_string(anno) + "#,'" + path + "')");
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

}  // namespace bench
