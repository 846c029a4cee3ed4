// Backup into a dated folder and its import back; the refusals leave the data as they were.
#include <QLineEdit>
#include <QPushButton>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "app/screens/frmBackup.h"
#include "core/backup.h"
#include "support/avvio_prova.h"

using namespace prova;

namespace {

long Conta(store::Database& db, const std::string& tabella) {
    return store::CLng(db.OpenRecordset("Select Count(*) As N from " + tabella)->get("N"));
}

// The current company with rows in its archive and a report file of its own.
void PreparaDati(ProgrammaDiProva& p) {
    apriEsercizioDiProva(p);
    auto& db = *core::session().dbArchivio;
    for (int i = 1; i <= 3; ++i)
        db.Execute("Insert Into Clienti (ID,DescCliente) VALUES (" + std::to_string(i) + ",'Cliente " + std::to_string(i) + "')");
    fs::create_directories(p.dati / "Report" / "1");
    std::ofstream(p.dati / "Report" / "1" / "Fattura.rpf") << "layout";
}

// Runs frmBackup on a folder; returns the backup folder made, or "" with the message shown.
fs::path Salva(ProgrammaDiProva& p, const fs::path& dove) {
    frmBackup schermo;
    schermo.Dir->setText(QString::fromStdString(dove.string()));
    clic(&schermo, "btnConferma");
    if (testiMostrati(*p.script).back() != "Gli archivi sono stati salvati!") return {};
    for (const auto& voce : fs::directory_iterator(dove))
        if (voce.path().filename().string().rfind("Backup ", 0) == 0) return voce.path();
    return {};
}

}  // namespace

TEST(Backup, NomeDellaCartella) {
    std::tm t{};
    t.tm_sec = 7, t.tm_min = 4, t.tm_hour = 9, t.tm_mday = 5, t.tm_mon = 2, t.tm_year = 2026 - 1900;
    EXPECT_EQ(core::NomeCartellaBackup(t), "Backup 05-03-2026 09.04.07");
}

TEST(Backup, CopiaCancellazioneERipristino) {
    ProgrammaDiProva p;
    PreparaDati(p);
    const fs::path dove = p.dati.parent_path() / "copie";
    fs::create_directories(dove);
    // A backup cut short earlier left its hidden folder: the next one clears it.
    fs::create_directories(dove / ".Backup 01-01-2026 10.00.00.parziale");
    const fs::path backup = Salva(p, dove);
    ASSERT_FALSE(backup.empty()) << testiMostrati(*p.script).back();
    for (const char* f : {"Aziende.mdb", "Alfa 2026.mdb", "Report/1/Fattura.rpf", "Backup.ini"}) EXPECT_TRUE(fs::exists(backup / f)) << f;
    EXPECT_EQ(std::distance(fs::directory_iterator(dove), fs::directory_iterator()), 1);
    EXPECT_EQ(store::Workspace::Default().IntegrityCheck((backup / "Alfa 2026.mdb").string()), "");

    // The data lost, then put back: every row and the report file return, in the open archive too.
    auto& s = core::session();
    s.dbArchivio->Execute("Delete * from Clienti");
    s.dbAziende->Execute("Delete * from Utenti");
    fs::remove(p.dati / "Report" / "1" / "Fattura.rpf");
    p.script->percorso(backup.string());
    ASSERT_TRUE(frmBackup::ImportaBackup());
    EXPECT_EQ(testiMostrati(*p.script).back(), "Importazione completata!");
    EXPECT_EQ(Conta(*s.dbArchivio, "Clienti"), 3);
    EXPECT_EQ(Conta(*s.dbAziende, "Utenti"), 1);
    EXPECT_EQ(s.dbArchivio->Name(), (p.dati / "Alfa 2026.mdb").string());
    EXPECT_TRUE(fs::exists(p.dati / "Report" / "1" / "Fattura.rpf"));
    for (const auto& voce : fs::directory_iterator(p.dati))
        EXPECT_NE(voce.path().filename().string()[0], '.') << voce.path();
}

TEST(Backup, RifiutiLascianoIDatiComeErano) {
    ProgrammaDiProva p;
    PreparaDati(p);
    const fs::path dove = p.dati.parent_path() / "copie";
    fs::create_directories(dove);
    const fs::path buona = Salva(p, dove);
    ASSERT_FALSE(buona.empty());

    const fs::path vuota = dove / "vuota", senzaArchivio = dove / "senza archivio";
    fs::create_directories(vuota);
    fs::copy(buona, senzaArchivio, fs::copy_options::recursive);
    fs::remove(senzaArchivio / "Alfa 2026.mdb");

    struct Caso {
        const char* nome;
        std::function<void()> comando;
        std::string messaggio;  // the start of the message shown
    };
    int altro = -1;
    const std::vector<Caso> casi = {
        {"cartella di sola lettura", [&] { Salva(p, "/proc"); }, "Impossibile scrivere nella cartella /proc"},
        {"cartella mancante", [&] { Salva(p, dove / "manca"); }, "La cartella " + (dove / "manca").string() + " non esiste."},
        {"non è un backup",
         [&] {
             p.script->percorso(vuota.string());
             frmBackup::ImportaBackup();
         },
         "La cartella selezionata non contiene dati di backup!"},
        {"archivio di un esercizio mancante",
         [&] {
             p.script->percorso(senzaArchivio.string());
             frmBackup::ImportaBackup();
         },
         "Nella cartella di backup manca l'archivio dell'esercizio Alfa 2026 (Alfa 2026.mdb)."},
        {"dati in uso da un'altra copia",
         [&] {
             altro = ::open((p.dati / "Aziende.mdb").c_str(), O_RDONLY);
             ::flock(altro, LOCK_SH);
             p.script->percorso(buona.string());
             frmBackup::ImportaBackup();
             ::close(altro);
         },
         "I dati della cartella " + p.dati.string() + " sono in uso da un'altra copia del programma"},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        core::session().dbArchivio->Execute("Insert Into Clienti (ID,DescCliente) VALUES (99,'Nuovo')");
        p.script->dimentica();
        c.comando();
        ASSERT_EQ(testiMostrati(*p.script).size(), 1u);
        EXPECT_EQ(testiMostrati(*p.script)[0].substr(0, c.messaggio.size()), c.messaggio);
        EXPECT_EQ(Conta(*core::session().dbArchivio, "Clienti"), 4);
        core::session().dbArchivio->Execute("Delete * from Clienti where ID=99");
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(dove), fs::directory_iterator()), 3);
}
