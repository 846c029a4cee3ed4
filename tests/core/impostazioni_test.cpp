#include <gtest/gtest.h>

#include <filesystem>

#include "core/impostazioni.h"
#include "core/ini.h"
#include "store/errors.h"
#include "support/sessione_prova.h"

namespace {

class Impostazioni : public ::testing::Test {
protected:
    void SetUp() override { test::SessioneNuova(cartella.percorso()); }
    std::string ini() const { return cartella / "Impostazioni.ini"; }
    test::CartellaTemporanea cartella;
};

TEST_F(Impostazioni, FileMancanteDaVuotoEScritturaLoCreaOTieneLeAltreRighe) {
    EXPECT_EQ(core::LeggiIni("Azienda", "PATH"), "");
    EXPECT_FALSE(std::filesystem::exists(ini()));
    core::ScriviIni("Azienda", "PATH", "/dati");
    core::ScriviIni("Archivio", "ID", "7");
    core::ScriviIni("Azienda", "ID", "3");
    EXPECT_EQ(test::LeggiFile(ini()), "[Azienda]\r\nPATH=/dati\r\nID=3\r\n[Archivio]\r\nID=7\r\n");

    // Rewritten, the other lines stay.
    test::ScriviFile(ini(), "; settings\r\n[Azienda]\r\nPATH=/a\r\nID=1\r\n\r\n[Login]\r\nUsername=x\r\n");
    core::ScriviIni("azienda", "id", "2");
    core::ScriviIni("Azienda", "Nuova", "v");
    EXPECT_EQ(test::LeggiFile(ini()),
              "; settings\r\n[Azienda]\r\nPATH=/a\r\nid=2\r\nNuova=v\r\n\r\n[Login]\r\nUsername=x\r\n");

    core::session().CartellaProgramma = cartella / "manca";   // a folder that cannot be written
    EXPECT_THROW(core::ScriviIni("Azienda", "ID", "1"), store::JetError);
}

TEST_F(Impostazioni, LetturaSenzaMaiuscoleSpaziEVirgolette) {
    test::ScriviFile(ini(),
                     "; settings\r\n[azienda]\r\n  path =  /srv/dati  \r\nID=\"12\"\r\n\r\n[Login]\nUsername='Anna'\n");
    struct Caso {
        const char *sezione, *chiave, *atteso;
    };
    const Caso casi[] = {
        {"Azienda", "PATH", "/srv/dati"}, {"AZIENDA", "Id", "12"}, {"Login", "Username", "Anna"},
        {"Archivio", "ID", ""},           {"Azienda", "Username", ""},
    };
    for (const auto& c : casi) EXPECT_EQ(core::LeggiIni(c.sezione, c.chiave), c.atteso) << c.sezione << "/" << c.chiave;
}

TEST_F(Impostazioni, ValoriInWindows1252TagliatiA1023Caratteri) {
    struct Caso {
        std::string scritto, letto;
    };
    const std::string lungo(1023, 'x');
    const std::string accentati = "Città è più €";
    const Caso casi[] = {
        {lungo + "y", lungo},
        {std::string(1022, 'x') + "à€", std::string(1022, 'x') + "à"},  // cut by characters, not bytes
        {accentati, accentati},
        {"due\r\nrighe", "due"},
    };
    for (const auto& c : casi) {
        core::ScriviIni("Prova", "Valore", c.scritto);
        EXPECT_EQ(core::LeggiIni("Prova", "Valore"), c.letto) << c.scritto.substr(0, 20);
    }
    core::ScriviIni("Prova", "Valore", accentati);
    EXPECT_NE(test::LeggiFile(ini()).find("Valore=Citt\xE0 \xE8 pi\xF9 \x80\r\n"), std::string::npos);
}

class Lingua : public Impostazioni {
protected:
    std::string lng() const { return cartella / "Lang.lng"; }
};

TEST_F(Lingua, TestoSenzaRipiegoERilettoSeIlFileCambia) {
    test::ScriviFile(lng(), "[Stringhe]\r\ns1=Anagrafiche\r\ns55=Accesso negato!\r\ns60=\r\n[Altro]\r\ns2=x\r\n");
    EXPECT_EQ(core::Testo("s1"), "Anagrafiche");
    EXPECT_EQ(core::Testo("S55"), "Accesso negato!");
    EXPECT_EQ(core::Testo("s60"), "");
    EXPECT_EQ(core::Testo("s2"), "");    // another section
    EXPECT_EQ(core::Testo("s999"), "");  // not the key itself
    // A file changed on disk is read again.
    test::ScriviFile(lng(), "[Stringhe]\r\ns1=Dopo, pi\xF9 lunga\r\n");
    EXPECT_EQ(core::Testo("s1"), "Dopo, più lunga");
    core::ScriviLingua("Stringhe", "s1", "Terza");
    EXPECT_EQ(core::Testo("s1"), "Terza");
    EXPECT_EQ(core::LeggiLingua("Stringhe", "s1"), "Terza");
}

TEST_F(Lingua, RipristinoDallItaliano) {
    test::ScriviFile(cartella / "Italiano.lng", "[Stringhe]\r\ns1=Anagrafiche\r\n");
    test::ScriviFile(lng(), "[Stringhe]\r\ns1=Registries\r\n[Parametri]\r\nFile=/x/English.lng\r\n");
    core::RipristinaLingua();
    EXPECT_EQ(core::Testo("s1"), "Anagrafiche");
    EXPECT_EQ(core::LeggiLingua("Parametri", "File"), cartella / "Italiano.lng");
    EXPECT_EQ(test::LeggiFile(cartella / "Italiano.lng"), "[Stringhe]\r\ns1=Anagrafiche\r\n");

    std::filesystem::remove(cartella / "Italiano.lng");
    EXPECT_THROW(core::RipristinaLingua(), store::JetError);
}

// The Italian language file an installation supplies: Windows-1252, and a text for every key s1..s330
// (a missing one shows as an empty caption or an empty message box), read as the program reads it.
TEST_F(Lingua, IlFileItalianoDellInstallazione) {
    const std::string byte = test::LeggiFile(std::string(BREVANO_SOURCE_DIR) + "/data/Italiano.lng");
    ASSERT_FALSE(byte.empty());
    for (std::size_t i = 0; i < byte.size(); ++i) {
        const auto b = static_cast<unsigned char>(byte[i]);
        EXPECT_TRUE(b != 0x81 && b != 0x8D && b != 0x8F && b != 0x90 && b != 0x9D) << "nessun carattere al byte " << i;
        const bool seguito = i + 1 < byte.size() && (static_cast<unsigned char>(byte[i + 1]) & 0xC0) == 0x80;
        EXPECT_FALSE(b >= 0xC2 && b <= 0xF4 && seguito) << "sequenza UTF-8 al byte " << i;
    }
    test::ScriviFile(lng(), byte);
    for (int k = 1; k <= 330; ++k)
        EXPECT_NE(core::Testo("s" + std::to_string(k)).find_first_not_of(' '), std::string::npos) << "s" << k;
    EXPECT_EQ(core::LeggiLingua("Parametri", "File"), "");
    // Accents, and the blanks that joined messages depend on.
    EXPECT_EQ(core::Testo("s13"), "Contabilità");
    EXPECT_EQ(core::Testo("s57").front(), ' ');
    EXPECT_EQ(core::Testo("s57").back(), ' ');
    EXPECT_EQ(core::Testo("s263").back(), ' ');
}

}  // namespace
