// What the start-up screen tests share: a throw-away program folder seeded with the installation
// files of the build, a clean session and registry, and a scripted dialogs service.
#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <fstream>
#include <optional>
#include <memory>
#include <string>

#include "core/avvio.h"
#include "core/archivio_sql.h"
#include "core/aziende.h"
#include "core/esercizi.h"
#include "core/impostazioni.h"
#include "core/login.h"
#include "core/pannello.h"
#include "core/registro_schermi.h"
#include "app/screens/Registra.h"
#include "app/screens/frmConfigurazione.h"
#include "app/screens/frmMain.h"
#include "core/session.h"
#include "core/stampa.h"
#include "store/convert.h"
#include "support/DialoghiScript.h"
#include "support/cartella_temporanea.h"
#include "ui/VText.h"
#include "ui/VetraPicker.h"

namespace prova {

namespace fs = std::filesystem;

class ProgrammaDiProva {
public:
    ProgrammaDiProva() {
        prova::applicazioneDiProva();
        programma = radice_ / "programma";
        dati = radice_ / "dati";
        fs::create_directories(programma / "Base");
        fs::create_directories(dati);
        const fs::path bin = BREVANO_BIN_DIR;
        for (const char* f : {"temp.mdb", "Utilità.mdb", "Italiano.lng", "Base/Aziende.mdb"})
            fs::copy_file(bin / f, programma / f);
        // The structure update is keyed on the program file's date: a fixed file keeps it still.
        std::ofstream(programma / "brevano") << "x";
        core::fissaEseguibile((programma / "brevano").string());
        pulisciSessione();
        core::session().CartellaProgramma = programma.string();
        core::RipristinaLingua();
        core::svuotaRegistroSchermi();
        RegistraSchermi();
        script = prova::installaScript();
    }
    ~ProgrammaDiProva() {
        chiudiFinestre();
        pulisciSessione();
        core::svuotaRegistroSchermi();
        core::installDialogs(nullptr);
        core::fissaEseguibile(std::nullopt);
    }

    static void chiudiFinestre() {
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (auto* p = qobject_cast<frmMain*>(w)) p->setAttribute(Qt::WA_DeleteOnClose, false);
            w->hide();
        }
        delete frmMain::istanza();
        QApplication::processEvents();
    }

    static void pulisciSessione() {
        core::Session& s = core::session();
        for (auto* db : {&s.dbAziende, &s.dbArchivio, &s.dbTemp, &s.dbUtilita}) db->reset();
        const std::string cartella = s.CartellaProgramma;
        s = core::Session{};
        s.CartellaProgramma = cartella;
    }

    fs::path programma;
    fs::path dati;
    std::shared_ptr<prova::ScriptedDialogs> script;

private:
    test::CartellaTemporanea radice_;
};

// A company with its first user and its 2026 Esercizio open, the session holding every right:
// where the screens of the archive are tested.
inline void apriEsercizioDiProva(ProgrammaDiProva& p) {
    core::ScegliCartellaDati(p.dati.string());
    auto& master = *core::session().dbAziende;
    master.Execute("Insert Into Aziende (ID,Denominazione,Citta) VALUES (1,'Alfa','Roma')");
    master.Execute("Insert Into Utenti (ID,Username,Password,Azienda) VALUES (1,'admin','x',1)");
    const long es = core::CreaEsercizioVuoto(1, "Alfa 2026", store::DateSerial(2026, 1, 1));
    ASSERT_TRUE(core::ConfermaConfigurazione(p.dati.string(), 1, es));
    auto& s = core::session();
    s.IDAzienda = 1;
    core::ApriEsercizio(es);
    s.MsgNegato = core::Testo("s55");
    s.Privilegi = std::string(14, '1');
    s.NomeUtente = "admin";
}

// A test on the period of apriEsercizioDiProva, its archive at hand.
class EsercizioAperto : public ::testing::Test {
protected:
    void SetUp() override {
        apriEsercizioDiProva(p);
        db = core::ArchivioAperto();
    }

    ProgrammaDiProva p;
    store::DatabasePtr db;
};

template <class W>
W* figlio(QWidget* schermo, const char* nome) {
    W* w = schermo ? schermo->findChild<W*>(nome) : nullptr;
    if (!w) ADD_FAILURE() << "manca " << nome;
    return w;
}

inline void clic(QWidget* schermo, const char* nome) {
    if (auto* b = figlio<QAbstractButton>(schermo, nome)) b->click();
}

// Types into a box as the keyboard does, so that its accepted characters count.
inline void digita(QLineEdit* box, const QString& testo) {
    box->clear();
    QTest::keyClicks(box, testo);
}

// The same into the box of that name.
inline void scrivi(QWidget* schermo, const char* nome, const QString& testo) {
    if (auto* box = figlio<QLineEdit>(schermo, nome)) digita(box, testo);
}

// The data folder chosen, its master file holding the companies "Alfa" (1) and "Beta" (2).
inline void aziendeAlfaEBeta(ProgrammaDiProva& p) {
    core::ScegliCartellaDati(p.dati.string());
    for (const char* a : {"1,'Alfa'", "2,'Beta'"})
        core::session().dbAziende->Execute(std::string("Insert Into Aziende (ID,Denominazione) VALUES (") + a + ")");
}

// The next login, as a company without users has it.
inline void loginVuoto(ScriptedDialogs& script) {
    script.schermo("frmLogin", [](QWidget*) {
        core::ApriLogin();
        return core::ConfermaLogin("", "");
    });
}

// The next showing of the company's editor: the name typed, then confirmed.
inline void scriviAzienda(ScriptedDialogs& script, const std::string& nome) {
    script.schermo("frmAziendeEdita", [nome](QWidget* e) {
        figlio<ui::VText>(e, "VText1")->setTesto(nome);
        clic(e, "btnConferma");
        return true;
    });
}

// The next showing of the period's editor: name and start typed, then confirmed (cancelled when refused).
inline void scriviEsercizio(ScriptedDialogs& script, const std::string& nome, const std::string& dal) {
    script.schermo("frmArchiviEdita", [nome, dal](QWidget* s) {
        figlio<ui::VText>(s, "VText1")->setTesto(nome);
        figlio<ui::VetraPicker>(s, "pkData")->setTesto(dal);
        clic(s, "btnConferma");
        if (s->isVisible()) clic(s, "btnAnnulla");
        return true;
    });
}

// The next configuration: the data folder given, a new company and a new period made through their
// (scripted) editors, then confirmed.
inline void configuraNuove(ScriptedDialogs& script, const fs::path& dati) {
    script.percorso(dati.string());
    script.schermo("frmConfigurazione", [](QWidget*) {
        frmConfigurazione conf;
        for (const char* comando : {"btnSfoglia", "imgNew3", "imgNew2", "btnConferma"}) clic(&conf, comando);
        return conf.result() == QDialog::Accepted;
    });
}

// The next showing of a register's search dialog: the criteria filled in, then the command clicked;
// a confirm that left the dialog open (a refused date) is followed by its cancel.
template <class Dialogo>
void cercaCon(ScriptedDialogs& script, std::function<void(Dialogo*)> compila, const char* comando) {
    const std::string c = comando;
    script.schermo(Dialogo::Nome, [compila, c](QWidget* w) {
        auto* cerca = static_cast<Dialogo*>(w);
        compila(cerca);
        clic(cerca, c.c_str());
        if (c == "Command1" && cerca->isVisible()) clic(cerca, "Command2");
        return true;
    });
}

// The next showing of an editor: filled in by compila, then confirmed.
template <class Editor>
void confermaCon(ScriptedDialogs& script, std::function<void(Editor*)> compila,
                 const std::string& nome = Editor::Nome) {
    script.schermo(nome, [compila](QWidget* w) {
        auto* e = static_cast<Editor*>(w);
        compila(e);
        clic(e, "btnConferma");
        return true;
    });
}

// The print requests made while it lives, collected instead of printed.
struct StampeRaccolte : std::vector<core::RichiestaStampa> {
    StampeRaccolte() { core::installaStampa([this](const core::RichiestaStampa& r) { push_back(r); }); }
    ~StampeRaccolte() { core::installaStampa(nullptr); }
};

// The refusal of a command without its right.
inline const char* const kNegato = "Non si dispone dei privilegi necessari per questa operazione!";

// How many rows a statement returns.
inline long contaRighe(store::Database& db, const std::string& sql) {
    long n = 0;
    for (auto rs = db.OpenRecordset(sql); !rs->Eof(); rs->MoveNext()) ++n;
    return n;
}

// How many rows a statement returns on the open archive.
inline long conta(const std::string& sql) { return contaRighe(*core::session().dbArchivio, sql); }

// A field of the first row of a statement on the open archive; Null when there is no row.
inline store::Value campo(const std::string& sql, const std::string& nome) {
    auto rs = core::session().dbArchivio->OpenRecordset(sql);
    return rs->Eof() ? store::Value::Null() : rs->get(nome);
}

// The texts of the messages shown so far.
inline std::vector<std::string> testiMostrati(const prova::ScriptedDialogs& s) {
    std::vector<std::string> t;
    for (const auto& m : s.messaggi()) t.push_back(m.testo);
    return t;
}

}  // namespace prova
