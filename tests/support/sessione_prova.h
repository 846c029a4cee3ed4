// What the core tests share: a throw-away program folder, a clean session, and the dialog script
// that answers the screens by name and records what the user would have seen.
#pragma once

#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "core/dialogs.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "store/dao.h"
#include "support/DialoghiScript.h"
#include "support/cartella_temporanea.h"

namespace test {

inline void ScriviFile(const std::string& percorso, const std::string& byte) {
    std::ofstream(percorso, std::ios::binary | std::ios::trunc) << byte;
}

inline std::string LeggiFile(const std::string& percorso) {
    std::ifstream in(percorso, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// A session with nothing open, the program folder given, no screens and a fresh script.
inline std::shared_ptr<prova::ScriptedDialogs> SessioneNuova(const std::string& cartellaProgramma) {
    core::session() = core::Session{};
    core::session().CartellaProgramma = cartellaProgramma;
    core::svuotaRegistroSchermi();
    return prova::installaScript();
}

// A new database file with the given statements run on it.
inline store::DatabasePtr NuovoDatabase(const std::string& percorso, const std::vector<std::string>& istruzioni) {
    auto db = store::Workspace::Default().CreateDatabase(percorso);
    for (const auto& sql : istruzioni) db->Execute(sql);
    return db;
}

}  // namespace test
