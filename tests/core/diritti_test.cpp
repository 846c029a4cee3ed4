#include <gtest/gtest.h>

#include "core/diritti.h"
#include "store/convert.h"
#include "support/sessione_prova.h"

namespace {

std::string Da1252(std::initializer_list<int> codici) {
    std::string byte;
    for (int c : codici) byte += static_cast<char>(c);
    return store::Cp1252ToUtf8(byte);
}

TEST(Cifra, CasiCalcolatiAMano) {
    struct Caso {
        std::string testo, chiave, cifrato;
    };
    const Caso casi[] = {
        // key "AB": text positions 1, 2, 3 take key positions 2, 1, 2 (66, 65, 66); 'a' is 97.
        {"aaa", "AB", Da1252({163, 162, 163})},
        // empty key: the default "kqzrtwpy/xs", whose second character 'q' (113) serves first.
        {"1", "", Da1252({49 + 113})},
        {"11", "", Da1252({49 + 113, 49 + 122})},
        // modulus 255: 200 + 100 = 300 gives 45, not 44.
        {Da1252({200}), "d", Da1252({45})},
        {"", "chiave", ""},
    };
    for (const auto& c : casi) {
        EXPECT_EQ(core::Cifra(c.testo, c.chiave), c.cifrato) << c.testo << " / " << c.chiave;
        EXPECT_EQ(core::Decifra(c.cifrato, c.chiave), c.testo) << c.testo << " / " << c.chiave;
    }
}

TEST(Cifra, AndataERitornoPerOgniCodice) {
    std::string byte;
    for (int codice = 0; codice <= 254; ++codice) byte += static_cast<char>(codice);
    const std::string testo = store::Cp1252ToUtf8(byte);
    for (const std::string chiave : {"", "Mario", "d'Àngelo", "ÿÿ"})
        EXPECT_EQ(core::Decifra(core::Cifra(testo, chiave), chiave), testo) << chiave;
}

TEST(Cifra, IlCodice255TornaComeZero) {
    const std::string y255 = Da1252({255});
    EXPECT_EQ(core::Cifra(y255, "A"), "A");
    EXPECT_EQ(core::Decifra(core::Cifra("x" + y255, "A"), "A"), std::string("x") + '\0');
}

// The positions of the rights are walked by the registers' and the instalments tab's tests.
TEST(HaPrivilegio, SenzaUtenteChiedeLAccessoFinoAlLogin) {
    auto script = test::SessioneNuova("/nessuna");
    int tentativi = 0;
    script->sempre("frmLogin", [&] {
        if (++tentativi == 2) core::session().Privilegi = "01";
        return tentativi == 2;
    });
    EXPECT_TRUE(core::HaPrivilegio(2));
    EXPECT_EQ(script->schermiMostrati(), (std::vector<std::string>{"frmLogin", "frmLogin"}));
}

}  // namespace
