// What the pattern and code-table tests share: a program folder with the Italian language file,
// a model archive as the session's archive, a dialog script, and helpers to drive screens by name.
#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "core/impostazioni.h"
#include "core/session.h"
#include "store/convert.h"
#include "store/dao.h"
#include "store/model/model.h"
#include "support/DialoghiScript.h"
#include "support/cartella_temporanea.h"

namespace pattern {

namespace fs = std::filesystem;

class Archivio : public ::testing::Test {
protected:
    void SetUp() override {
        prova::applicazioneDiProva();
        fs::copy_file(fs::path(BREVANO_SOURCE_DIR) / "data" / "Italiano.lng", cartella_ / "Italiano.lng");
        core::session().CartellaProgramma = cartella_.percorso();
        core::RipristinaLingua();
        db = store::Workspace::Default().CreateDatabase(cartella_ / "archivio.mdb");
        store::model::CreaArchivio(*db);
        core::session().dbArchivio = db;
        core::session().IDRecordEdit = 0;
        script = prova::installaScript();
    }
    void TearDown() override {
        core::session().dbArchivio.reset();
        core::installDialogs(nullptr);
        db->Close();
    }

    long conta(const std::string& tabella, const std::string& condizione = "") {
        auto rs = db->OpenRecordset("Select Count(*) as N from " + tabella + (condizione.empty() ? "" : " where " + condizione));
        return store::CLng(rs->get("N"));
    }
    store::Value campo(const std::string& sql, const std::string& nome) {
        auto rs = db->OpenRecordset(sql);
        return rs->Eof() ? store::Value::Null() : rs->get(nome);
    }
    const prova::ScriptedDialogs::Messaggio& ultimoMessaggio() const {
        static const prova::ScriptedDialogs::Messaggio nessuno{"(nessun messaggio)", -1, ""};
        return script->messaggi().empty() ? nessuno : script->messaggi().back();
    }

    store::DatabasePtr db;
    std::shared_ptr<prova::ScriptedDialogs> script;

private:
    test::CartellaTemporanea cartella_;
};

template <class T = QWidget>
T* trova(QWidget* schermo, const char* nome) {
    T* w = schermo->findChild<T*>(QString::fromLatin1(nome));
    EXPECT_NE(w, nullptr) << nome;
    return w;
}

inline void clicca(QWidget* schermo, const char* nome) {
    if (auto* b = trova<QAbstractButton>(schermo, nome)) b->click();
}

inline void scrivi(QWidget* schermo, const char* nome, const QString& testo) {
    if (auto* e = trova<QLineEdit>(schermo, nome)) {
        e->clear();
        QTest::keyClicks(e, testo);
    }
}

}  // namespace pattern
