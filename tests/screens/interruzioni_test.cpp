// A restore or a new period cut short by a kill: the next start, or the next try, finds the data as
// before the command or as after it, never half.
#include <fstream>

#include "core/aziende.h"
#include "core/backup.h"
#include "core/esercizi.h"
#include "store/clock.h"
#include "support/avvio_prova.h"

using namespace prova;

namespace {

std::string Leggi(const fs::path& p) {
    std::ifstream in(p);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void Scrivi(const fs::path& p, const std::string& testo) {
    fs::create_directories(p.parent_path());
    std::ofstream(p) << testo;
}

std::vector<std::string> Nascosti(const fs::path& cartella) {
    std::vector<std::string> nomi;
    for (const auto& voce : fs::directory_iterator(cartella))
        if (voce.path().filename().string()[0] == '.') nomi.push_back(voce.path().filename().string());
    return nomi;
}

}  // namespace

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

        EXPECT_EQ(Leggi(dati / "Alfa 2026.mdb"), c.archivio);
        EXPECT_EQ(Leggi(dati / "Report" / "1" / "Fattura.rpf"), c.report);
        EXPECT_EQ(Leggi(dati / "Report" / "1" / "Altro.rpf"), "resta");
        EXPECT_EQ(Nascosti(dati), std::vector<std::string>{});
    }
}

TEST(Interruzioni, NuovoEsercizioInterrottoLasciaLiberoIlNome) {
    ProgrammaDiProva p;
    core::ScegliCartellaDati(p.dati.string());
    core::session().dbAziende->Execute("Insert Into Aziende (ID,Denominazione) VALUES (1,'Alfa')");
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
    EXPECT_EQ(Leggi(p.dati / "Beta 2027.mdb"), "di qualcuno");

    // Created in full, the period keeps its archive and leaves no mark behind.
    core::CreaEsercizioVuoto(1, "Alfa 2027", store::DateSerial(2027, 1, 1));
    EXPECT_TRUE(fs::exists(orfano));
    EXPECT_EQ(Nascosti(p.dati), std::vector<std::string>{});
    EXPECT_TRUE(core::ControllaNuovoEsercizio(1, "Alfa 2027", "01/01/2028").has_value());
    EXPECT_TRUE(fs::exists(orfano));
}
