// What the pattern and code-table tests share: the program's folder with an empty period open, its
// archive and dialog script at hand, and typing into a box by its name.
#pragma once

#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "core/archivio_sql.h"
#include "support/avvio_prova.h"

namespace pattern {

class Archivio : public ::testing::Test {
protected:
    void SetUp() override {
        prova::apriEsercizioDiProva(p);
        db = core::ArchivioAperto();
        script = p.script;
    }

    const prova::ScriptedDialogs::Messaggio& ultimoMessaggio() const {
        static const prova::ScriptedDialogs::Messaggio nessuno{"(nessun messaggio)", -1, ""};
        return script->messaggi().empty() ? nessuno : script->messaggi().back();
    }

    prova::ProgrammaDiProva p;
    store::DatabasePtr db;
    std::shared_ptr<prova::ScriptedDialogs> script;
};

inline void scrivi(QWidget* schermo, const char* nome, const QString& testo) {
    if (auto* e = prova::figlio<QLineEdit>(schermo, nome)) {
        e->clear();
        QTest::keyClicks(e, testo);
    }
}

}  // namespace pattern
