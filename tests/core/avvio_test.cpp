#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>

#include "core/avvio.h"
#include "core/impostazioni.h"
#include "store/convert.h"
#include "store/errors.h"
#include "store/model/model.h"
#include "support/sessione_prova.h"

namespace {

namespace fs = std::filesystem;
using core::EsitoAvvio;

const char* const kLingua = "[Stringhe]\r\ns55=Negato (copia)\r\ns324=Rete (copia)\r\ns325=Manca (copia)\r\n"
                            "[Parametri]\r\nFile=/altrove/English.lng\r\n";
const char* const kItaliano = "[Stringhe]\r\ns55=Accesso negato!\r\ns324=Rete!\r\ns325=Manca!\r\n";

// The executable's time stamp as the structure update stored it: 15/03/2024 10.20.30.
const char* const kDataEseguibile = "#03/15/2024 10:20:30#";

// A working program folder with its data folder: master, one archive of Esercizio 1 of Azienda 1
// brought up to date by the executable, temp.mdb, Utilità.mdb, the two language files and the
// settings. The screens are scripted; frmMain records that it was shown.
class Avvio : public ::testing::Test {
protected:
    void SetUp() override {
        script = test::SessioneNuova(programma.percorso());
        core::registraSchermo("frmMain", [this] { return ++pannelliAperti, true; });
        core::installaFineCaricamento([this] { caricamentoFinito = true; });
        const std::string eseguibile = programma / "brevano";
        test::ScriviFile(eseguibile, "");
        std::tm t{};
        t.tm_year = 2024 - 1900, t.tm_mon = 2, t.tm_mday = 15, t.tm_hour = 10, t.tm_min = 20, t.tm_sec = 30;
        t.tm_isdst = -1;
        const timespec istante{std::mktime(&t), 700'000'000};  // a fraction of a second does not count
        const timespec tempi[2] = {istante, istante};
        ASSERT_EQ(::utimensat(AT_FDCWD, eseguibile.c_str(), tempi, 0), 0);
        core::fissaEseguibile(eseguibile);
        fs::create_directory(dati());
        auto master = store::Workspace::Default().CreateDatabase(dati() + "/Aziende.mdb");
        store::model::CreaAziende(*master);
        master->Execute("INSERT INTO Esercizi (ID, Azienda, Nome, Dal, File, DataAggiornamento) VALUES (1, 1, "
                        "'2024', #01/01/2024#, '" + archivio() + "', " + kDataEseguibile + ")");
        master->Execute("INSERT INTO Utenti (ID, Azienda, Username) VALUES (1, 2, 'altra azienda')");
        master->Close();
        store::model::GeneraArchivioVuoto(archivio());
        auto temp = store::Workspace::Default().CreateDatabase(programma / "temp.mdb");
        store::model::CreaTemp(*temp);
        temp->Execute("INSERT INTO Estratto (ID) VALUES (-1)");
        temp->Close();
        auto utilita = store::Workspace::Default().CreateDatabase(programma / "Utilità.mdb");
        store::model::CreaTabelle(*utilita, store::model::TabelleUtilita());
        utilita->Close();
        test::ScriviFile(programma / "Lang.lng", kLingua);
        test::ScriviFile(programma / "Italiano.lng", kItaliano);
        ImpostaIni("[Azienda]\r\nPATH=" + dati() + "\r\nID=1\r\n[Archivio]\r\nID=1\r\n");
    }
    void TearDown() override {
        core::fissaEseguibile(std::nullopt);
        core::session() = core::Session{};
        core::svuotaRegistroSchermi();
    }

    std::string dati() const { return programma / "dati"; }
    std::string archivio() const { return programma / "dati/2024.mdb"; }

    store::DatabasePtr Master() { return store::Workspace::Default().OpenDatabase(dati() + "/Aziende.mdb"); }

    void ImpostaIni(const std::string& testo) { test::ScriviFile(programma / "Impostazioni.ini", testo); }

    std::vector<std::string> FileDelProgramma() const {
        std::vector<std::string> nomi;
        for (const auto& voce : fs::directory_iterator(programma.percorso())) nomi.push_back(voce.path().filename());
        std::sort(nomi.begin(), nomi.end());
        return nomi;
    }

    test::CartellaTemporanea programma;
    std::shared_ptr<prova::ScriptedDialogs> script;
    int pannelliAperti = 0;
    bool caricamentoFinito = false;
};

TEST_F(Avvio, SenzaUtentiApreTuttoConOgniDirittoELinguaItaliana) {
    ASSERT_EQ(core::Main(), EsitoAvvio::Aperto);
    const auto& s = core::session();
    EXPECT_EQ(s.IDAzienda, 1);
    EXPECT_EQ(s.IDEsercizio, 1);
    EXPECT_EQ(s.Privilegi, "111111111111111");
    EXPECT_EQ(s.NomeUtente, "Amministratore");
    EXPECT_EQ(s.MsgNegato, "Accesso negato!");  // read after the reset to Italian
    EXPECT_EQ(s.dbArchivio->Name(), archivio());
    EXPECT_TRUE(s.dbUtilita->isOpen());
    EXPECT_EQ(store::CLng(s.dbTemp->OpenRecordset("Select ID from Estratto")->get("ID")), -1);
    EXPECT_EQ(core::LeggiLingua("Parametri", "File"), programma / "Italiano.lng");
    EXPECT_TRUE(script->schermiMostrati().empty());
    EXPECT_TRUE(script->messaggi().empty());
    EXPECT_EQ(pannelliAperti, 1);
    EXPECT_TRUE(caricamentoFinito);
    EXPECT_FALSE(fs::exists(programma / "tempCompact.mdb"));

    auto tempPrecedente = s.dbTemp;  // the main panel runs Main again after the data folder changes
    ASSERT_EQ(core::Main(), EsitoAvvio::Aperto);
    EXPECT_FALSE(tempPrecedente->isOpen());
    EXPECT_TRUE(s.dbTemp->isOpen());
}

TEST_F(Avvio, CartellaDiReteMostraS324ESiFerma) {
    const auto primaDi = FileDelProgramma();
    for (const std::string& cartella : {"//" + programma.percorso(), std::string("\\\\server\\brevano")}) {
        core::session().CartellaProgramma = cartella;
        EXPECT_EQ(core::Main(), EsitoAvvio::Termina) << cartella;
    }
    ASSERT_EQ(script->messaggi().size(), 2u);
    EXPECT_EQ(script->messaggi()[0].testo, "Rete (copia)");
    EXPECT_EQ(script->messaggi()[0].stile, core::vbCritical);
    EXPECT_EQ(FileDelProgramma(), primaDi);
    EXPECT_EQ(test::LeggiFile(programma / "Lang.lng"), kLingua);
    EXPECT_FALSE(core::session().dbAziende);
    EXPECT_EQ(pannelliAperti, 0);
}

TEST_F(Avvio, UnaSecondaIstanzaTerminaInSilenzio) {
    const int fd = ::open((programma / "brevano.lock").c_str(), O_RDWR | O_CREAT, 0644);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::flock(fd, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(core::Main(), EsitoAvvio::Termina);
    ::close(fd);
    EXPECT_TRUE(script->messaggi().empty());
    EXPECT_TRUE(script->schermiMostrati().empty());
    EXPECT_FALSE(core::session().dbAziende);
    EXPECT_EQ(core::Main(), EsitoAvvio::Aperto);  // once the other has ended
}

TEST_F(Avvio, EsercizioEliminatoCostaUnRiavvio) {
    ImpostaIni("[Azienda]\r\nPATH=" + dati() + "\r\nID=1\r\n[Archivio]\r\nID=9\r\n");
    script->sempre("frmConfigurazione", [] {
        EXPECT_EQ(core::LeggiIni("Archivio", "ID"), "0");
        EXPECT_EQ(core::session().IDEsercizio, 0);
        core::ScriviIni("Archivio", "ID", "1");
        return true;
    });
    EXPECT_EQ(core::Main(), EsitoAvvio::Termina);
    EXPECT_EQ(script->schermiMostrati(), std::vector<std::string>{"frmConfigurazione"});
    EXPECT_EQ(pannelliAperti, 0);

    EXPECT_EQ(core::Main(), EsitoAvvio::Aperto);  // the next start uses the choice just made
    EXPECT_EQ(core::session().IDEsercizio, 1);
}

TEST_F(Avvio, ArchivioSenzaRigaInEserciziMostraS325ETermina) {
    core::session().dbAziende = Master();
    EXPECT_THROW(core::ArchivioAggiornato(dati() + "/altro.mdb"), core::TerminaProgramma);
    ASSERT_EQ(script->messaggi().size(), 1u);
    EXPECT_EQ(script->messaggi()[0].testo, "Manca (copia)");
    EXPECT_EQ(script->messaggi()[0].stile, core::vbExclamation);
}

TEST_F(Avvio, ConUtentiChiedeIlLogin) {
    Master()->Execute("INSERT INTO Utenti (ID, Azienda, Username) VALUES (2, 1, 'anna')");
    EXPECT_EQ(core::Main(), EsitoAvvio::Termina);  // login cancelled
    EXPECT_EQ(script->schermiMostrati(), std::vector<std::string>{"frmLogin"});
    EXPECT_EQ(pannelliAperti, 0);

    // A login accepted is walked by the users' screens; the language stays the user's.
    script->sempre("frmLogin", [] {
        core::session().Privilegi = "11000000000000";
        core::session().NomeUtente = "anna";
        return true;
    });
    EXPECT_EQ(core::Main(), EsitoAvvio::Aperto);
    EXPECT_EQ(test::LeggiFile(programma / "Lang.lng"), kLingua);
    EXPECT_EQ(core::session().MsgNegato, "Negato (copia)");
}

TEST_F(Avvio, ErroriDellaPiattaformaArrivanoAlChiamante) {
    store::Workspace::Default().OpenDatabase(archivio())->Execute("DROP TABLE PrimaNota");
    EXPECT_THROW(core::Main(), store::JetError);

    test::ScriviFile(programma / "tempCompact.mdb", "avanzo di un arresto");
    EXPECT_THROW(core::Main(), store::JetError);
    EXPECT_TRUE(fs::exists(programma / "temp.mdb"));

    fs::remove(programma / "tempCompact.mdb");
    ImpostaIni("[Azienda]\r\nPATH=" + programma / "manca" + "\r\nID=1\r\n[Archivio]\r\nID=1\r\n");
    EXPECT_THROW(core::Main(), store::JetError);
}

}  // namespace
