// What the kit's tests share: the application object, a throw-away SQLite archive made through the
// engine, and a fast way to fill it with many rows.
#pragma once

#include <sqlite3.h>

#include <functional>
#include <string>

#include "core/session.h"
#include "store/dao.h"
#include "support/DialoghiScript.h"
#include "support/cartella_temporanea.h"

namespace prova {

class ArchivioProva {
public:
    ArchivioProva() : percorso_(cartella_ / "archivio.mdb") {
        prova::applicazioneDiProva();
        db = store::Workspace::Default().CreateDatabase(percorso_);
        core::session().dbArchivio = db;
        script = prova::installaScript();
    }
    ~ArchivioProva() {
        core::session().dbArchivio.reset();
        core::installDialogs(nullptr);
        if (db) db->Close();
    }

    // Many rows at once, written straight into the file in one transaction: the engine's own
    // inserts are what the other tests prove, here only the volume matters.
    void inserisciInBlocco(const std::string& insertSql, int righe, const std::function<void(sqlite3_stmt*, int)>& lega) {
        sqlite3* raw = nullptr;
        sqlite3_open(percorso_.c_str(), &raw);
        sqlite3_exec(raw, "BEGIN", nullptr, nullptr, nullptr);
        sqlite3_stmt* st = nullptr;
        sqlite3_prepare_v2(raw, insertSql.c_str(), -1, &st, nullptr);
        for (int i = 1; i <= righe; ++i) {
            lega(st, i);
            sqlite3_step(st);
            sqlite3_reset(st);
        }
        sqlite3_finalize(st);
        sqlite3_exec(raw, "COMMIT", nullptr, nullptr, nullptr);
        sqlite3_close(raw);
    }

    store::DatabasePtr db;
    std::shared_ptr<prova::ScriptedDialogs> script;

private:
    test::CartellaTemporanea cartella_;
    std::string percorso_;
};

}  // namespace prova
