#include <gtest/gtest.h>

#include <filesystem>

#include "core/file.h"
#include "core/varie.h"
#include "store/convert.h"
#include "store/errors.h"
#include "support/sessione_prova.h"

namespace {

TEST(ColonnaFoglio, UnaODueLettere) {
    struct Caso {
        const char* colonna;
        int scarto;
        const char* attesa;
    };
    const Caso casi[] = {
        {"A", 25, "Z"},  {"A", 26, "AA"},
        {"B", 50, "AZ"},  // 52 = 2 x 26: remainder 0 is Z with one less in front
        {"A", 701, "ZZ"}, {"AB", 1, "B"},  // only the first letter counts
    };
    for (const auto& c : casi)
        EXPECT_EQ(core::ColonnaFoglio(c.colonna, c.scarto), c.attesa) << c.colonna << "+" << c.scarto;
    EXPECT_THROW(core::ColonnaFoglio("", 1), store::JetError);
    EXPECT_THROW(core::ColonnaFoglio("A", -70), store::JetError);
}

class File : public ::testing::Test {
protected:
    void SetUp() override { test::SessioneNuova(cartella.percorso()); }
    test::CartellaTemporanea cartella;
};

TEST_F(File, CompattaDatabaseTieneIDati) {
    const std::string percorso = cartella / "Archivio.mdb";
    test::NuovoDatabase(percorso, {"CREATE TABLE T (ID LONG)", "INSERT INTO T (ID) VALUES (5)"})->Close();
    core::CompattaDatabase(percorso);
    EXPECT_FALSE(std::filesystem::exists(cartella / "~tmpArchivio.mdb"));
    auto db = store::Workspace::Default().OpenDatabase(percorso);
    EXPECT_EQ(store::CLng(db->OpenRecordset("Select ID from T")->get("ID")), 5);
    db->Close();

    test::ScriviFile(cartella / "~tmpArchivio.mdb", "avanzo");
    EXPECT_THROW(core::CompattaDatabase(percorso), store::JetError);
    EXPECT_TRUE(std::filesystem::exists(percorso));
}

TEST_F(File, RinominaFileNonSovrascrive) {
    test::ScriviFile(cartella / "a.txt", "a");
    test::ScriviFile(cartella / "b.txt", "b");
    EXPECT_THROW(core::RinominaFile(cartella / "a.txt", "b.txt"), store::JetError);
    EXPECT_EQ(test::LeggiFile(cartella / "b.txt"), "b");
}

}  // namespace
