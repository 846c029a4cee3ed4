// The exports on a real archive: the two files of the outside accounting program compared byte for
// byte with files written by hand from their format, the list export and its remembered choice, the
// spreadsheet read back from its XML, and the faults of folder, name and file.

#include <cstdio>
#include <fstream>
#include <map>
#include <regex>

#include "core/esporta_excel.h"
#include "core/esportazione.h"
#include "output/esporta_elenchi.h"
#include "output/esporta_fatture.h"
#include "support/DialoghiScript.h"
#include "support/archivio_logica.h"
#include "support/sessione_prova.h"

namespace {

namespace fs = std::filesystem;

class Esporta : public prova::ArchivioProva {
protected:
    // A text with line breaks, which a statement cannot write.
    void Imposta(const std::string& tabella, long id, const std::string& campo, const std::string& valore) {
        auto rs = db().OpenRecordset("Select * from " + tabella + " where ID=" + std::to_string(id));
        rs->Edit();
        rs->set(campo, store::Value::Text(valore));
        rs->Update();
    }
    test::CartellaTemporanea cartella;
};

class FileFatture : public Esporta {
protected:
    void SetUp() override {
        Esporta::SetUp();
        for (const char* iva : {"1,'Ordinaria 22%',22", "2,'Art. 10, l''esente',4.5", "3,'Ridotta 4%',4"})
            Esegui(std::string("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (") + iva + ")");
        // ID, kind, number, date, customer, total, taxable, VAT; inserted out of date order: the file follows Data.
        for (const char* d : {"4,5,8,'31/03/2026',12345,1234567.891,-50,0", "1,5,7,'05/03/2026',12,1234.5,1011.89,222.61",
                              "2,9,12345,'10/03/2026',0,999.99,961.53,38.46", "3,7,3,'20/03/2026',5,0,Null,Null",
                              "5,5,9,'01/04/2026',12,10,10,0", "6,5,6,'28/02/2026',12,10,10,0"})
            Doc(d);
        Riga(11, 1, 100, 1);   // the first line gives the VAT of the document
        Riga(10, 4, 50, 2);
        Riga(12, 1, 100, 3);
        Riga(13, 2, 100, 3);

        Esegui("Insert Into Clienti (ID,DescCliente,DescCliente2,Indirizzo,Citta,Cap,Provincia,PartitaIva) VALUES "
               "(12,'Rossi Mario & Figli S.r.l. con nome lunghissimo','Sede \"legale\" di Perugia centro',"
               "'Via della Repubblica Italiana 123 int. 4','Città di Castello','06012','PG','01234567890')");
        Esegui("Insert Into Clienti (ID,DescCliente,Citta,Cap,Provincia,PartitaIva,CodiceFiscale) VALUES "
               "(5,'Bianchi €','Milano','201234567','Milano','IT012345678901','BNCGNN80A01F205XYZ')");
        Imposta("Clienti", 5, "Indirizzo", "Corso\r\nItalia");
        Esegui("Insert Into Clienti (ID,DescCliente) VALUES (12345,'Ωmega')");
    }

    void Doc(const std::string& valori) {
        Esegui("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,ImportoTotale,Imponibile,TotIva) VALUES (" + valori + ")");
    }

    output::EsitoFatture Scrivi() {
        return output::EsportaFatture(db(), store::DateSerial(2026, 3, 1), store::DateSerial(2026, 3, 31),
                                      cartella / "FATS.txt", cartella / "ANAS.txt");
    }
};

TEST_F(FileFatture, ScrittiByteperByte) {
    const std::string fats =
        "\"    7\",20260305,\"         7\",20260305,\"3\",\"0012\",1.234.50,\"EMESSO FATTURA\",\"001\","
        "\"Ordinaria 22%\",22,\"1\",\"F\",1.011.89,222.61\r\n"
        "\"12345\",20260310,\"     12345\",20260310,\"3\",\"0000\",999.99,\"EMESSO FATTURA\",\"001\","
        "\"Ridotta 4%\",04,\"1\",\"F\",961.53,38.46\r\n"
        "\"    3\",20260320,\"         3\",20260320,\"3\",\"0005\",0.00,\"EMESSO FATTURA\",\"001\","
        "\"0\",00,\"1\",\"F\",,\r\n"
        "\"    8\",20260331,\"         8\",20260331,\"3\",\"12345\",1.234.567.89,\"EMESSO FATTURA\",\"001\","
        "\"Art. 10. l''esente\",05,\"1\",\"F\",-50.00,0.00\r\n";
    const std::string anas =
        "\"0005\",\"Bianchi \x80\",\"\",\"Corso  Italia\",\"Milano\",\"20123\",\"Mi\",\"IT012345678\","
        "\"BNCGNN80A01F205X\"\r\n"
        "\"0012\",\"Rossi Mario & Figli S.r.l. con\",\"Sede \"legale\" di\",\"Via della Repubblica Italiana \","
        "\"Citt\xE0 di Castello\",\"06012\",\"PG\",\"01234567890\",\"\"\r\n"
        "\"12345\",\"?mega\",\"\",\"\",\"\",\"\",\"\",\"\",\"\"\r\n";

    const output::EsitoFatture esito = Scrivi();
    EXPECT_EQ(esito.documenti, 4);
    EXPECT_EQ(esito.clienti, 3);
    EXPECT_EQ(test::LeggiFile(cartella / "FATS.txt"), fats);
    EXPECT_EQ(test::LeggiFile(cartella / "ANAS.txt"), anas);
    EXPECT_FALSE(fs::exists(cartella / "FATS.txt.~tmp"));
}

TEST_F(FileFatture, NumeroTroppoLungoNonToccaIFile) {
    test::ScriviFile(cartella / "FATS.txt", "precedente");
    Doc("7,5,123456,'15/03/2026',12,1,1,0");
    try {
        Scrivi();
        ADD_FAILURE() << "nessun errore";
    } catch (const core::ErroreEsportazione& e) {
        EXPECT_NE(std::string(e.what()).find("123456"), std::string::npos) << e.what();
    }
    EXPECT_EQ(test::LeggiFile(cartella / "FATS.txt"), "precedente");
    EXPECT_EQ(fs::directory_iterator(cartella.percorso())->path().filename(), "FATS.txt");
}

TEST(NomeFile, CaratteriCheUnFileNonPuoAvere) {
    for (const char* buono : {"FATS", "Fatture marzo 2026", "Città.txt"}) EXPECT_EQ(core::ControllaNomeFile(buono), "");
    for (const char* cattivo : {"", "a/b", "a\\b", "a:b", "\"a\"", "a|b", "a\tb", "nome.", "nome ", ".."})
        EXPECT_NE(core::ControllaNomeFile(cattivo), "") << cattivo;
}

TEST(FileEsportazione, GuastiDiCartellaEFile) {
    test::CartellaTemporanea t;
    fs::create_directory(t / "sola");
    fs::permissions(t / "sola", fs::perms::owner_read | fs::perms::owner_exec);
    std::ofstream(t / "bloccato.txt") << "vecchio";
    fs::permissions(t / "bloccato.txt", fs::perms::owner_read);
    fs::create_directory(t / "cartella.txt");
    struct Caso {
        std::string percorso;
        std::string messaggio;
    } casi[] = {
        {t / "manca/FATS.txt", "non esiste"},
        {t / "sola/FATS.txt", "sola lettura"},
        {t / "bloccato.txt", "sola lettura"},
        {t / "cartella.txt", "cartella"},
        {t / "a?.txt", "non può essere usato"},
    };
    for (const Caso& c : casi) {
        try {
            core::FileEsportazione f(c.percorso);
            ADD_FAILURE() << "accettato: " << c.percorso;
        } catch (const core::ErroreEsportazione& e) {
            EXPECT_NE(std::string(e.what()).find(c.messaggio), std::string::npos) << e.what();
        }
    }
    EXPECT_EQ(test::LeggiFile(t / "bloccato.txt"), "vecchio");
    EXPECT_TRUE(fs::is_empty(t / "sola"));
    fs::permissions(t / "sola", fs::perms::owner_all);
}

class Elenchi : public Esporta {
protected:
    void SetUp() override {
        Esporta::SetUp();
        Esegui("Insert Into Fornitori (ID,DescFornitore,Citta,ABI,CAB,Telefono) VALUES "
               "(1,'Zeta; Srl','Bergamo','03069','11101','035 1')");
        Esegui("Insert Into Fornitori (ID,Citta,ABI,Telefono) VALUES (2,'Ancona','01005',Null)");
        Imposta("Fornitori", 2, "DescFornitore", "Àlfa\nDue");
    }
};

TEST_F(Elenchi, FileScrittoNellOrdineDellaLista) {
    using C = output::CampoEsportato;
    struct Caso {
        const char* nome;
        std::vector<C> campi;
        std::string separatore;
        std::string atteso;
    } casi[] = {
        {"ordine della lista, separatore lungo, Abi e Cab in minuscolo",
         {{"Citta", true, 0}, {"DescFornitore", true, 0}, {"Abi", true, 0}, {"cab", true, 0}, {"Telefono", true, 0}},
         " | ",
         "Citta | DescFornitore | Abi | cab | Telefono\r\n"
         "Ancona | \xC0lfa Due | 01005 |  | \r\n"
         "Bergamo | Zeta; Srl | 03069 | 11101 | 035 1\r\n"},
        {"ordinato dal primo campo anche se non incluso, separatore dentro un valore lasciato",
         {{"Telefono", false, 0}, {"DescFornitore", true, 0}},
         ";",
         "DescFornitore\r\n\xC0lfa Due\r\nZeta; Srl\r\n"},
        {"nessun campo incluso: righe vuote", {{"DescFornitore", false, 0}}, ";", "\r\n\r\n\r\n"},
    };
    for (const Caso& c : casi) {
        const std::string file = cartella / "elenco.txt";
        EXPECT_EQ(output::EsportaElenco(db(), "Fornitori", c.campi, c.separatore, file), 2) << c.nome;
        EXPECT_EQ(test::LeggiFile(file), c.atteso) << c.nome;
    }
}

struct Cella {
    std::string tipo;   // t: "inlineStr", "s" or "" for a number
    std::string stile;
    std::string valore;
};

std::string Decomprimi(const std::string& xlsx, const std::string& parte) {
    std::string out;
    if (FILE* p = ::popen(("unzip -p '" + xlsx + "' " + parte).c_str(), "r")) {
        char buf[4096];
        for (std::size_t n; (n = std::fread(buf, 1, sizeof buf, p)) > 0;) out.append(buf, n);
        ::pclose(p);
    }
    return out;
}

// The cells of the first sheet by reference ("A1"), read from its XML.
std::map<std::string, Cella> Celle(const std::string& xml) {
    std::map<std::string, Cella> celle;
    static const std::regex cella(R"re(<c r="([A-Z]+[0-9]+)"((?: [a-z]+="[^"]*")*)(?:/>|>(.*?)</c>))re");
    static const std::regex attributo(R"re( ([a-z]+)="([^"]*)")re");
    static const std::regex valore(R"re(<(?:v|t)(?: [^>]*)?>([^<]*)<)re");
    for (std::sregex_iterator i(xml.begin(), xml.end(), cella), fine; i != fine; ++i) {
        Cella c;
        const std::string attributi = (*i)[2];
        for (std::sregex_iterator a(attributi.begin(), attributi.end(), attributo); a != fine; ++a) {
            if ((*a)[1] == "t") c.tipo = (*a)[2];
            if ((*a)[1] == "s") c.stile = (*a)[2];
        }
        const std::string corpo = (*i)[3];
        std::smatch m;
        if (std::regex_search(corpo, m, valore)) c.valore = m[1];
        celle[(*i)[1]] = c;
    }
    return celle;
}

class FoglioExcel : public Esporta {
protected:
    void SetUp() override {
        Esporta::SetUp();
        Esegui("Insert Into Documenti (ID,Tipo,Numero,Prefisso,Data,Pagato,ImportoTotale) VALUES "
               "(1,5,42,'00123','05/03/2026',True,1234.5)");
        Esegui("Insert Into Documenti (ID,Tipo,Numero,Prefisso,Data,Pagato,ImportoTotale) VALUES "
               "(2,5,43,'A & <B>','0.00.00',False,Null)");
        core::installaApriFile([this](const std::string& p) { aperti.push_back(p); });
    }
    void TearDown() override {
        core::installaApriFile(nullptr);
        Esporta::TearDown();
    }
    std::vector<std::string> aperti;
};

TEST_F(FoglioExcel, CelleTipizzateEIntestazioneFissa) {
    auto rs = db().OpenRecordset("Select Prefisso,Numero,ImportoTotale,Data,Pagato from Documenti Order By ID");
    const std::string file = cartella / "foglio.xlsx";
    EXPECT_EQ(core::ScriviExcel(*rs, {"Totale 1.234,50", "Fine"}, file), 2);
    const std::string foglio = Decomprimi(file, "xl/worksheets/sheet1.xml");
    const auto c = Celle(foglio);
    struct Atteso {
        const char* ref;
        const char* tipo;
        const char* valore;
    } attesi[] = {
        {"A1", "inlineStr", "Prefisso"}, {"E1", "inlineStr", "Pagato"},
        {"A2", "inlineStr", "00123"},    {"B2", "", "42"}, {"C2", "", "1234.5"}, {"D2", "", "46086"},
        {"E2", "inlineStr", "X"},        {"A3", "inlineStr", "A &amp; &lt;B&gt;"}, {"B3", "", "43"},
        {"A4", "inlineStr", "Totale 1.234,50"}, {"A5", "inlineStr", "Fine"},
    };
    for (const Atteso& a : attesi) {
        ASSERT_TRUE(c.count(a.ref)) << a.ref;
        EXPECT_EQ(c.at(a.ref).tipo, a.tipo) << a.ref;
        EXPECT_EQ(c.at(a.ref).valore, a.valore) << a.ref;
    }
    for (const char* vuota : {"C3", "D3", "E3", "B4"}) EXPECT_FALSE(c.count(vuota)) << vuota;
    // Amounts and dates each with a format of their own, a whole number with none; the header frozen.
    EXPECT_NE(c.at("C2").stile, c.at("D2").stile);
    EXPECT_NE(c.at("C2").stile, "");
    EXPECT_EQ(c.at("B2").stile, "");
    EXPECT_NE(foglio.find("ySplit=\"1\""), std::string::npos);
}

// The file written and opened is walked by every register's command; here what writes nothing.
TEST_F(FoglioExcel, ComandoCheNonScriveNulla) {
    struct Caso {
        std::optional<std::string> scelto;
        std::string sql;
        std::string messaggio;
    } casi[] = {
        {cartella / "vuoto.xlsx", "Select * from Documenti where ID=0", "Nessun dato da esportare!"},
        {std::nullopt, "Select * from Documenti", ""},
        {cartella / "manca/x.xlsx", "Select * from Documenti", "non esiste"},
    };
    for (const Caso& c : casi) {
        auto script = prova::installaScript();
        script->percorso(c.scelto);
        core::EsportaExcel(c.sql);
        EXPECT_TRUE(aperti.empty()) << c.sql;
        EXPECT_FALSE(c.scelto && fs::exists(*c.scelto)) << c.sql;
        ASSERT_EQ(script->messaggi().size(), c.messaggio.empty() ? 0u : 1u);
        if (!c.messaggio.empty()) {
            EXPECT_NE(script->messaggi()[0].testo.find(c.messaggio), std::string::npos);
        }
    }
}

}  // namespace
