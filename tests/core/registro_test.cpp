#include <gtest/gtest.h>

#include "core/registro_schermi.h"
#include "store/errors.h"
#include "support/sessione_prova.h"

namespace {

TEST(RegistroSchermi, LoSchermoRegistratoRispondeELoScriptPuoSostituirlo) {
    test::SessioneNuova("/nessuna");
    core::installDialogs(nullptr);  // the silent service shows what is registered
    int mostrati = 0;
    core::registraSchermo("frmLogin", [&] { return ++mostrati == 1; });
    EXPECT_TRUE(core::MostraModale("frmLogin"));
    EXPECT_FALSE(core::MostraModale("frmLogin"));
    EXPECT_THROW(core::MostraModale("frmAggiorna"), store::JetError);
    EXPECT_THROW(core::MostraPannello("frmMain"), store::JetError);
    EXPECT_FALSE(core::ChiudiFormAperta("frmDocumenti"));  // nothing installed, nothing open

    auto script = test::SessioneNuova("/nessuna");
    script->sempre("frmAggiorna", [] { return true; });
    EXPECT_TRUE(core::MostraModale("frmAggiorna"));  // answered by the script, no factory needed
    std::vector<std::string> chiusi;
    core::installaChiusuraSchermo([&](const std::string& nome) { return chiusi.push_back(nome), true; });
    EXPECT_TRUE(core::ChiudiFormAperta("frmDocumenti"));
    EXPECT_EQ(chiusi, std::vector<std::string>{"frmDocumenti"});
    EXPECT_EQ(mostrati, 2);
}

}  // namespace
