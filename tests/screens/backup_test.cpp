// Backup into a dated folder and its import back; the refusals leave the data as they were. A restore
// or a new period cut short by a kill: the next start, or the next try, finds the data as before the
// command or as after it, never half.
#include <QLineEdit>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "app/screens/frmBackup.h"
#include "core/aziende.h"
#include "core/backup.h"
#include "core/esercizi.h"
#include "support/avvio_prova.h"
#include "support/sessione_prova.h"

using namespace prova;

namespace {

void Scrivi(const fs::path& p, const std::string& testo) {
    fs::create_directories(p.parent_path());
    std::ofstream(p) << testo;
}

// The current company with rows in its archive and a report file of its own.
void PreparaDati(ProgrammaDiProva& p) {
    apriEsercizioDiProva(p);
    auto& db = *core::session().dbArchivio;
    for (int i = 1; i <= 3; ++i)
        db.Execute("Insert Into Clienti (ID,DescCliente) VALUES (" + std::to_string(i) + ",'Cliente " + std::to_string(i) + "')");
    Scrivi(p.dati / "Report" / "1" / "Fattura.rpf", "layout");
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

std::vector<std::string> Nascosti(const fs::path& cartella) {
    std::vector<std::string> nomi;
    for (const auto& voce : fs::directory_iterator(cartella))
        if (voce.path().filename().string()[0] == '.') nomi.push_back(voce.path().filename().string());
    return nomi;
}

}  // namespace

TEST(Backup, NomeDellaCartella) {
    std::tm t{};
    t.tm_sec = 7, t.tm_min = 4, t.tm_hour = 9, t.tm_mday = 5, t.tm_mon = 2, t.tm_year = 2026 - 1900;
    EXPECT_EQ(core::NomeCartellaBackup(t), "Backup 05-03-2026 09.04.07");
}

TEST(Backup, CopiaRipristinoERifiuti) {
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
    EXPECT_EQ(contaRighe(*s.dbArchivio, "Select * from Clienti"), 3);
    EXPECT_EQ(contaRighe(*s.dbAziende, "Select * from Utenti"), 1);
    EXPECT_EQ(s.dbArchivio->Name(), (p.dati / "Alfa 2026.mdb").string());
    EXPECT_TRUE(fs::exists(p.dati / "Report" / "1" / "Fattura.rpf"));
    EXPECT_EQ(Nascosti(p.dati), std::vector<std::string>{});

    // Each refusal leaves the data as they were.
    const fs::path vuota = dove / "vuota", senzaArchivio = dove / "senza archivio";
    fs::create_directories(vuota);
    fs::copy(backup, senzaArchivio, fs::copy_options::recursive);
    fs::remove(senzaArchivio / "Alfa 2026.mdb");

    struct Caso {
        const char* nome;
        fs::path salva, importa;   // a backup into the one, or an import from the other
        std::string messaggio;     // the start of the message shown
        bool inUso = false;        // another copy of the program holds the data
    };
    const std::vector<Caso> casi = {
        {"cartella di sola lettura", "/proc", {}, "Impossibile scrivere nella cartella /proc"},
        {"cartella mancante", dove / "manca", {}, "La cartella " + (dove / "manca").string() + " non esiste."},
        {"non è un backup", {}, vuota, "La cartella selezionata non contiene dati di backup!"},
        {"archivio di un esercizio mancante", {}, senzaArchivio,
         "Nella cartella di backup manca l'archivio dell'esercizio Alfa 2026 (Alfa 2026.mdb)."},
        {"dati in uso da un'altra copia", {}, backup,
         "I dati della cartella " + p.dati.string() + " sono in uso da un'altra copia del programma", true},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.nome);
        core::session().dbArchivio->Execute("Insert Into Clienti (ID,DescCliente) VALUES (99,'Nuovo')");
        p.script->dimentica();
        const int altro = c.inUso ? ::open((p.dati / "Aziende.mdb").c_str(), O_RDONLY) : -1;
        if (c.inUso) ::flock(altro, LOCK_SH);
        if (c.salva.empty()) {
            p.script->percorso(c.importa.string());
            frmBackup::ImportaBackup();
        } else {
            Salva(p, c.salva);
        }
        if (c.inUso) ::close(altro);
        ASSERT_EQ(testiMostrati(*p.script).size(), 1u);
        EXPECT_EQ(testiMostrati(*p.script)[0].substr(0, c.messaggio.size()), c.messaggio);
        EXPECT_EQ(contaRighe(*core::session().dbArchivio, "Select * from Clienti"), 4);
        core::session().dbArchivio->Execute("Delete * from Clienti where ID=99");
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(dove), fs::directory_iterator()), 3);
}

TEST(Interruzioni, RipristinoInterrotto) {
    struct Caso {
        const char* quando;
        bool lista;           // the restore had written the list of what to move
        bool archivioSpostato;  // and had moved the archive before the kill
        const char* archivio, *report;  // what the next start finds
    };
    const Caso casi[] = {
        {"ucciso mentre copiava", false, false, "vecchio", "vecchio"},
        {"ucciso prima di spostare", true, false, "dal backup", "dal backup"},
        {"ucciso a metà degli spostamenti", true, true, "dal backup", "dal backup"},
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.quando);
        ProgrammaDiProva p;
        const fs::path dati = p.dati;
        Scrivi(dati / "Alfa 2026.mdb", "vecchio");
        Scrivi(dati / "Report" / "1" / "Fattura.rpf", "vecchio");
        Scrivi(dati / "Report" / "1" / "Altro.rpf", "resta");
        Scrivi(dati / (c.archivioSpostato ? "Alfa 2026.mdb" : ".Alfa 2026.mdb.ripristino"), "dal backup");
        Scrivi(dati / ".Report.ripristino" / "1" / "Fattura.rpf", "dal backup");
        if (c.lista) Scrivi(dati / ".ripristino", "Alfa 2026.mdb\nReport\n");

        core::CompletaRipristinoInterrotto(dati.string());

        EXPECT_EQ(test::LeggiFile(dati / "Alfa 2026.mdb"), c.archivio);
        EXPECT_EQ(test::LeggiFile(dati / "Report" / "1" / "Fattura.rpf"), c.report);
        EXPECT_EQ(test::LeggiFile(dati / "Report" / "1" / "Altro.rpf"), "resta");
        EXPECT_EQ(Nascosti(dati), std::vector<std::string>{});
    }
}

TEST(Interruzioni, NuovoEsercizioInterrottoLasciaLiberoIlNome) {
    ProgrammaDiProva p;
    aziendeAlfaEBeta(p);
    // Killed after the archive took its name, before its row: the archive is there, marked.
    const fs::path orfano = p.dati / "Alfa 2027.mdb";
    Scrivi(orfano, "archivio senza riga");
    Scrivi(p.dati / ".Alfa 2027.mdb.creazione", "");
    // A file of that name that no creation marked is somebody's: the name stays taken.
    Scrivi(p.dati / "Beta 2027.mdb", "di qualcuno");

    EXPECT_FALSE(core::ControllaNuovoEsercizio(1, "Alfa 2027", "01/01/2027").has_value());
    EXPECT_FALSE(fs::exists(orfano));
    const auto preso = core::ControllaNuovoEsercizio(1, "Beta 2027", "01/01/2027");
    ASSERT_TRUE(preso.has_value());
    EXPECT_EQ(preso->messaggio, core::Testo("s80") + " 'Beta 2027'");
    EXPECT_EQ(test::LeggiFile(p.dati / "Beta 2027.mdb"), "di qualcuno");

    // Created in full, the period keeps its archive and leaves no mark behind.
    core::CreaEsercizioVuoto(1, "Alfa 2027", store::DateSerial(2027, 1, 1));
    EXPECT_TRUE(fs::exists(orfano));
    EXPECT_EQ(Nascosti(p.dati), std::vector<std::string>{});
    EXPECT_TRUE(core::ControllaNuovoEsercizio(1, "Alfa 2027", "01/01/2028").has_value());
    EXPECT_TRUE(fs::exists(orfano));
}
