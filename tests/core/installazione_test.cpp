// The program folder of an installed copy: the executable's own when writable, else the user's,
// seeded once from the installed files without ever overwriting what the user has.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "core/installazione.h"
#include "support/sessione_prova.h"

namespace fs = std::filesystem;

namespace {

TEST(Installazione, CartellaDiLavoro) {
    test::CartellaTemporanea radice;
    const fs::path installata = radice / "usr/lib/brevano", utente = radice / "home/.local/share/Brevano";
    fs::create_directories(installata / "Base");
    fs::create_directories(installata / "guida");
    const char* const fileDelProgramma[] = {"Servizio.mdb", "Base/Aziende.mdb", "temp.mdb", "Utilità.mdb",
                                            "Italiano.lng", "Fatture.rpf", "guida/index.html"};
    for (const char* f : fileDelProgramma) std::ofstream(installata / f) << "installato " << f;
    std::ofstream(installata / "brevano") << "installato brevano";

    // A writable folder is used as it is, and nothing is made elsewhere.
    EXPECT_EQ(core::CartellaDiLavoro(installata.string(), true, utente.string()), installata.string());
    EXPECT_FALSE(fs::exists(utente));

    // The first start of a user: every program file copied, the executable not.
    EXPECT_EQ(core::CartellaDiLavoro(installata.string(), false, utente.string()), utente.string());
    for (const char* f : fileDelProgramma) EXPECT_EQ(test::LeggiFile(utente / f), std::string("installato ") + f);
    EXPECT_FALSE(fs::exists(utente / "brevano"));

    // Later starts keep the user's files and add only what is missing (a file a new version brings).
    std::ofstream(utente / "temp.mdb") << "dell'utente";
    fs::remove(utente / "Italiano.lng");
    std::ofstream(installata / "Nuovo.rpf") << "installato Nuovo.rpf";
    core::CartellaDiLavoro(installata.string(), false, utente.string());
    EXPECT_EQ(test::LeggiFile(utente / "temp.mdb"), "dell'utente");
    EXPECT_EQ(test::LeggiFile(utente / "Italiano.lng"), "installato Italiano.lng");
    EXPECT_EQ(test::LeggiFile(utente / "Nuovo.rpf"), "installato Nuovo.rpf");
    for (const auto& voce : fs::recursive_directory_iterator(utente))
        EXPECT_NE(voce.path().filename().string()[0], '.') << voce.path();
}

}  // namespace
