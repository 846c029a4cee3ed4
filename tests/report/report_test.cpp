// The report layer without a screen: files read and written, bad files refused with the file and the
// cause, statements run through the engine, pages laid out and written to PDF, read back as text.
#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>

#include <filesystem>

#include "report/report_support.h"
#include "store/convert_support.h"
#include "support/DialoghiScript.h"
#include "support/cartella_temporanea.h"
#include "ui/report/Anteprima.h"
#include "ui/report/Motore.h"
#include "ui/report/Pittore.h"

using namespace ui::report;
namespace fs = std::filesystem;

namespace {

// The texts of one page, top to bottom, joined by '|'.
std::string Testi(const PaginaStampata& p) {
    std::string out;
    for (const auto& x : p.primitive)
        if (x.tipo == TipoElemento::Testo && !x.testo.empty()) out += (out.empty() ? "" : "|") + x.testo;
    return out;
}

Tabella Movimenti(int n, int perCliente = 1000) {
    Tabella t{{"Cliente", "Descrizione", "Importo"}, {}};
    for (int i = 1; i <= n; ++i)
        t.righe.push_back({store::Value::Text("Cliente " + std::to_string((i - 1) / perCliente + 1)),
                           store::Value::Text("Riga " + std::to_string(i)), store::Value::Double(i + 0.5)});
    return t;
}

Documento Impagina(const std::string& xml, const Tabella& t) {
    const Modello m = Leggi(xml, "Prova.rpf");
    return ui::report::Impagina(m, Dati{{"elenco", t}}, prova::MisuratoreFisso(), "/nessuna", "Prova.rpf");
}

}  // namespace

TEST(FileReport, SalvatoERilettoUgualeAlPrimo) {
    const std::string gruppo = R"(<gruppo campo="Cliente">
    <banda tipo="intestazioneGruppo" altezza="7"><testo x="0" y="0" larghezza="80" altezza="7" grassetto="1">[Cliente]</testo>
      <riquadro x="0" y="0" larghezza="120" altezza="7" spessore="0.3" ripeti="Elenco" punti="12" allinea="destra"/></banda>
    <banda tipo="piedeGruppo" altezza="6"><campo x="80" y="0" larghezza="40" altezza="6" somma="Importo" ambito="gruppo" maschera="#,0.00"/>
      <campo x="0" y="0" larghezza="40" altezza="6" nome="Cliente" ambito="pagina" spessore="2"/>
      <linea x1="0" y1="0" x2="120" y2="0" grassetto="1" cresce="1"/></banda></gruppo>)";
    const std::string immagine = R"(<banda tipo="intestazioneReport" altezza="20"><immagine x="0" y="0" larghezza="30" altezza="15" file="logo.png"/>
      <testo x="40" y="0" larghezza="80" altezza="20" cresce="1" corsivo="1" carattere="DejaVu Serif" punti="12.5">Nota &amp; "testo" &lt;lungo&gt;</testo></banda>)";
    const Modello primo = Leggi(prova::ReportElenco(immagine, gruppo), "Prova.rpf");
    ASSERT_EQ(primo.gruppi.size(), 1u);
    EXPECT_EQ(primo.banda(TipoBanda::IntestazioneReport)->elementi[1].testo, "Nota & \"testo\" <lungo>");
    // What a kind does not have (a box repeated, a field's scope without a sum, a text's line width)
    // is not read, so no save can lose it.
    EXPECT_TRUE(primo.gruppi[0].intestazione->elementi[1].ripeti.empty());
    const Modello secondo = Leggi(Scrivi(primo), "Prova.rpf");
    EXPECT_TRUE(secondo == primo) << Scrivi(primo);
}

TEST(FileReport, FileGuastiRifiutatiConFileECausa) {
    const std::string buono = prova::ReportElenco();
    struct Caso {
        const char* nome;
        std::string testo;
        std::string causa;
    };
    const std::vector<Caso> casi{
        {"vuoto", "  \n", "il file è vuoto"},
        {"troncato", buono.substr(0, buono.size() / 2), "file troncato o non valido"},
        {"altro XML", "<html><body/></html>", "non è un report di questo programma"},
        {"versione futura", R"(<report formato="brevano-report" versione="9"/>)", "versione più recente"},
        {"banda sconosciuta", R"(<report formato="brevano-report"><banda tipo="copertina"/></report>)", "banda di tipo sconosciuto"},
        {"numero guasto", R"(<report formato="brevano-report"><pagina larghezza="21cm"/></report>)", "larghezza=\"21cm\" non è un numero"},
        {"margini troppo larghi", R"(<report formato="brevano-report"><pagina larghezza="20"/></report>)", "non ha spazio"},
        {"parametro non dichiarato",
         R"(<report formato="brevano-report"><banda tipo="piedeReport"><testo>{Periodo}</testo></banda></report>)",
         "{Periodo}, che non è un parametro dichiarato"},
        {"sorgente non dichiarata", R"(<report formato="brevano-report" sorgente="Righe"/>)", "Righe, che non è dichiarato"},
        {"ripetuto su un sub-report non dichiarato",
         R"(<report formato="brevano-report"><banda tipo="piedeReport"><testo ripeti="Iva">[Iva.DescIva]</testo></banda></report>)",
         "si ripete sul sub-report Iva, che non è dichiarato"},
        {"banda doppia",
         R"(<report formato="brevano-report"><banda tipo="dettaglio"/><banda tipo="dettaglio"/></report>)",
         "compare due volte"},
    };
    for (const auto& c : casi) {
        const auto [numero, testo] = jetErrorOf([&] { Leggi(c.testo, "Fatture.rpf"); });
        EXPECT_EQ(numero, ErrFormato) << c.nome;
        EXPECT_EQ(testo.rfind("Fatture.rpf: ", 0), 0u) << c.nome << ": " << testo;
        EXPECT_NE(testo.find(c.causa), std::string::npos) << c.nome << ": " << testo;
    }
}

// A bad file is refused by the reading above; one that is not there is told by the engine as such.
TEST(FileReport, FileMancanteNonCaricato) {
    Motore motore;
    motore.File = "/nessuna/Manca.rpf";
    const auto [numero, testo] = jetErrorOf([&] { motore.Carica(); });
    EXPECT_EQ(numero, ErrFileMancante);
    EXPECT_NE(testo.find("Manca.rpf: il file del report non esiste"), std::string::npos) << testo;
    EXPECT_FALSE(motore.Caricato());
}

TEST(Impaginazione, RigheSuPiuPagineConIntestazioneRiportoEPagine) {
    struct Caso {
        int righe;
        std::vector<std::string> pagine;
    };
    const std::vector<Caso> casi{
        {0, {"Descrizione|Importo|Totale Movimenti|0,00|Pagina 1 di 1"}},
        // The last row keeps the total company: eight rows and the total do not fit the first
        // page, so the eighth row goes over with it, and the first page carries its sum.
        {8, {"Descrizione|Importo|Riga 1|1,50|Riga 2|2,50|Riga 3|3,50|Riga 4|4,50|Riga 5|5,50|Riga 6|6,50|Riga 7|7,50|"
             "A riportare|31,50|Pagina 1 di 2",
             "Descrizione|Importo|Riporto|31,50|Riga 8|8,50|Totale Movimenti|40,00|Pagina 2 di 2"}},
    };
    for (const auto& c : casi) {
        const Documento d = Impagina(prova::ReportElenco(), Movimenti(c.righe));
        std::vector<std::string> pagine;
        for (const auto& p : d.pagine) pagine.push_back(Testi(p));
        EXPECT_EQ(pagine, c.pagine) << c.righe << " righe";
    }
}

TEST(Impaginazione, IntestazioneDiGruppoMaiSolaInFondoAllaPagina) {
    // Customers of three rows, a heading of 10 and a foot of 15: after the first customer (10 + 10 +
    // 30 + 15) the second heading would still fit on page one, but not with its first row.
    const std::string gruppo = R"(<gruppo campo="Cliente">
      <banda tipo="intestazioneGruppo" altezza="10"><testo x="0" y="0" larghezza="80" altezza="10">[Cliente]</testo></banda>
      <banda tipo="piedeGruppo" altezza="15"><campo x="80" y="0" larghezza="40" altezza="5" somma="Importo" ambito="gruppo" maschera="#,0.00"/></banda>
    </gruppo>)";
    const Documento d = Impagina(prova::ReportElenco({}, gruppo), Movimenti(9, 3));
    ASSERT_EQ(d.pagine.size(), 3u);
    for (const auto& p : d.pagine) {
        // A heading of a customer is always followed by a row of it on the same page.
        const std::string t = Testi(p);
        for (std::size_t pos = t.find("Cliente "); pos != std::string::npos; pos = t.find("Cliente ", pos + 1))
            EXPECT_EQ(t.compare(t.find('|', pos) + 1, 5, "Riga "), 0) << t;
    }
    const std::string tutto = Testi(d.pagine[0]) + "|" + Testi(d.pagine[1]);
    // Group totals: 1.5+2.5+3.5, 4.5+5.5+6.5.
    EXPECT_NE(tutto.find("Riga 3|3,50|7,50"), std::string::npos) << tutto;
    EXPECT_NE(tutto.find("Riga 6|6,50|16,50"), std::string::npos) << tutto;
}

TEST(Impaginazione, TestoCheCresceAllungaLaBanda) {
    const std::string xml = R"(<report formato="brevano-report" sorgente="Elenco">
      <pagina larghezza="100" altezza="100" sinistro="10" destro="0" alto="5" basso="0"/>
      <subreport nome="Elenco"><query>x</query></subreport>
      <banda tipo="dettaglio" altezza="5">
        <campo x="0" y="1" larghezza="40" altezza="4" nome="Descrizione" cresce="1"/>
        <campo x="50" y="0" larghezza="20" altezza="5" nome="Importo"/>
      </banda></report>)";
    Tabella t{{"Descrizione", "Importo"}, {}};
    t.righe.push_back({store::Value::Text(std::string(50, 'x')), store::Value::Double(1)});   // three lines: 15 mm
    t.righe.push_back({store::Value::Text("breve"), store::Value::Double(2)});
    const Documento d = Impagina(xml, t);
    ASSERT_EQ(d.pagine.size(), 1u);
    const auto& p = d.pagine[0].primitive;
    ASSERT_EQ(p.size(), 4u);
    EXPECT_DOUBLE_EQ(p[0].altezza, 15);
    EXPECT_DOUBLE_EQ(p[2].y, 5 + 16 + 1);   // the second row under the grown first one, margins added
    EXPECT_DOUBLE_EQ(p[2].x, 10);
}

TEST(DatiReport, QueryCampiEImmaginiMancantiNominanoFileECausa) {
    prova::applicazioneDiProva();
    test::CartellaTemporanea cartella;
    auto db = store::Workspace::Default().CreateDatabase(cartella / "archivio.mdb");
    prova::CreaMovimenti(*db, 3);
    struct Caso {
        const char* nome;
        std::string xml;
        int numero;
        std::string testo;
    };
    auto conQuery = [](const std::string& q) {
        std::string x = prova::ReportElenco();
        const std::string vecchia = "Select Cliente, Descrizione, Importo from Movimenti order by ID";
        return x.replace(x.find(vecchia), vecchia.size(), q);
    };
    const std::vector<Caso> casi{
        {"tabella mancante", conQuery("Select * from Movimentii"), 3078,
         "Prova.rpf: la query del sub-report Elenco non si esegue"},
        {"campo mancante", conQuery("Select Descrizione from Movimenti"), ErrNomeMancante,
         "Prova.rpf: il campo Importo non è tra quelli della query del sub-report Elenco"},
        {"database non aperto", std::string(prova::ReportElenco()).replace(prova::ReportElenco().find("archivio"), 8, "temp"),
         store::err::OggettoNonImpostato, "Prova.rpf: il sub-report Elenco non ha il suo database aperto"},
        {"immagine mancante",
         prova::ReportElenco(R"(<banda tipo="intestazioneReport" altezza="5"><immagine file="logo.png"/></banda>)"),
         ErrFileMancante, "Prova.rpf: manca l'immagine logo.png"},
    };
    Motore motore;
    auto carica = [&](const std::string& xml) {
        test::ScriviFile(cartella / "Prova.rpf", xml);
        motore = Motore{};
        motore.File = cartella / "Prova.rpf";
        motore.dbArchivio = db;
        motore.CartellaImmagini = cartella / "Immagini";
        motore.Carica();
    };
    for (const auto& c : casi) {
        carica(c.xml);
        const auto [numero, testo] = jetErrorOf([&] { motore.Prepara(prova::MisuratoreFisso()); });
        EXPECT_EQ(numero, c.numero) << c.nome << ": " << testo;
        EXPECT_EQ(testo.rfind(c.testo, 0), 0u) << c.nome << ": " << testo;
    }
    // A file that is no picture is refused when the pages are drawn.
    fs::create_directories(cartella / "Immagini");
    test::ScriviFile(cartella / "Immagini/logo.png", "non sono un png");
    carica(casi.back().xml);
    EXPECT_THROW(motore.EsportaPdf(cartella / "x.pdf"), ErroreReport);
}

// The engine opens the archive by its path for the run; its pages are leafed through in the preview
// and saved from it.
TEST(PdfReport, ListaSuTrePagineSfogliataESalvata) {
    prova::applicazioneDiProva();
    auto script = prova::installaScript();
    test::CartellaTemporanea cartella;
    prova::CreaMovimenti(*store::Workspace::Default().CreateDatabase(cartella / "archivio.mdb"), 15);
    test::ScriviFile(cartella / "Prova.rpf", prova::ReportElenco());
    Motore motore;
    motore.File = cartella / "Prova.rpf";
    motore.Archivio = cartella / "archivio.mdb";
    motore.Carica();
    motore.Parametri()[0].valore = "di marzo";
    frmAnteprima f(motore.Prepara(), "Prova.rpf");
    struct Passo {
        QPushButton* pulsante;
        std::string etichetta;
        bool indietro, avanti;
    };
    const std::vector<Passo> passi{
        {nullptr, "Pagina 1 di 3", false, true},      {f.btnSuccessiva, "Pagina 2 di 3", true, true},
        {f.btnUltima, "Pagina 3 di 3", true, false},  {f.btnPrima, "Pagina 1 di 3", false, true},
    };
    for (const auto& p : passi) {
        if (p.pulsante) p.pulsante->click();
        EXPECT_EQ(f.lblPagina->text().toStdString(), p.etichetta);
        EXPECT_EQ(f.btnPrecedente->isEnabled(), p.indietro) << p.etichetta;
        EXPECT_EQ(f.btnSuccessiva->isEnabled(), p.avanti) << p.etichetta;
    }

    // The extension is added when the name has none; a folder that is not there is told, nothing written.
    script->percorso(cartella / "lista");
    f.btnSalvaPdf->click();
    const auto pagine = prova::PagineDelPdf(cartella / "lista.pdf");
    ASSERT_EQ(pagine.size(), 3u);
    const std::vector<std::vector<std::string>> attesi{{"Descrizione", "A riportare", "31,50", "Pagina 1 di 3"},
                                                       {"Riporto", "97,50", "Pagina 2 di 3"},
                                                       {"Totale di marzo", "127,50", "Pagina 3 di 3"}};
    for (std::size_t i = 0; i < pagine.size(); ++i)
        for (const auto& t : attesi[i]) EXPECT_NE(pagine[i].find(t), std::string::npos) << t << "\n" << pagine[i];
    EXPECT_EQ(pagine[2].find("A riportare"), std::string::npos);
    script->percorso(cartella / "manca/lista.pdf");
    f.btnSalvaPdf->click();
    ASSERT_EQ(script->messaggi().size(), 1u);
    EXPECT_EQ(script->messaggi()[0].testo.rfind("75; Prova.rpf: il PDF " + (cartella / "manca/lista.pdf"), 0), 0u)
        << script->messaggi()[0].testo;
    core::installDialogs(nullptr);
}
