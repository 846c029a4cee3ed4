// What the pattern and code-table tests share: the program's folder with an empty period open, its
// archive and dialog script at hand.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/archivio_sql.h"
#include "support/avvio_prova.h"

namespace pattern {

class Archivio : public prova::EsercizioAperto {
protected:
    void SetUp() override {
        EsercizioAperto::SetUp();
        script = p.script;
    }

    const prova::ScriptedDialogs::Messaggio& ultimoMessaggio() const {
        static const prova::ScriptedDialogs::Messaggio nessuno{"(nessun messaggio)", -1, ""};
        return script->messaggi().empty() ? nessuno : script->messaggi().back();
    }

    std::shared_ptr<prova::ScriptedDialogs> script;
};

}  // namespace pattern
