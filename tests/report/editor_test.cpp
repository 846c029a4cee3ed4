// The layout editor's operations without a window: every change reads back the same from the file,
// undo gives back exactly what was there, elements stay inside their band, bad values are refused
// and change nothing.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <optional>

#include "report/report_support.h"
#include "support/cartella_temporanea.h"
#include "ui/report/EditorModello.h"

using namespace ui::report;
namespace fs = std::filesystem;

namespace {

// The band of that name among the editor's bands.
int BandaDi(const EditorModello& ed, const std::string& nome) {
    for (int i = 0; i < ed.Bande(); ++i)
        if (ed.NomeBanda(i) == nome) return i;
    ADD_FAILURE() << "banda " << nome;
    return -1;
}

// The first element of that kind in the band whose text, field or sum is cosa ("" any).
int ElementoDi(const EditorModello& ed, int banda, TipoElemento tipo, const std::string& cosa) {
    const auto& el = ed.banda(banda).elementi;
    for (int k = 0; k < static_cast<int>(el.size()); ++k)
        if (el[k].tipo == tipo && (cosa.empty() || el[k].testo == cosa || el[k].campo == cosa || el[k].somma == cosa))
            return k;
    ADD_FAILURE() << ed.NomeBanda(banda) << ": nessun elemento " << cosa;
    return -1;
}

}  // namespace

TEST(EditorReport, OgniModificaSiSalvaSiRileggeESiAnnulla) {
    test::CartellaTemporanea cartella;
    const std::string file = cartella / "Fatture.rpf";
    using E = EditorModello;
    struct Caso {
        const char* nome;
        const char* banda;
        std::optional<TipoElemento> tipo;   // none: the band itself
        const char* cosa;                   // the element's text, field or sum; "" the first of its kind
        std::function<bool(E&)> modifica;
    };
    using T = TipoElemento;
    const std::vector<Caso> casi{
        {"allargato dal bordo est", "Dettaglio", T::Campo, "DescMovimento",
         [](E& ed) { return ed.Ridimensiona(Presa::Est, -4, 0); }},
        {"banda più alta", "Dettaglio", {}, "", [](E& ed) { return ed.Ridimensiona(Presa::FondoBanda, 0, 2.5); }},
        {"carattere e allineamento", "Dettaglio", T::Campo, "Quantita",
         [](E& ed) {
             return ed.Imposta(Proprieta::Punti, "9,5").empty() && ed.Imposta(Proprieta::Grassetto, "Sì").empty() &&
                    ed.Imposta(Proprieta::Allinea, "Centro").empty() &&
                    ed.Imposta(Proprieta::Carattere, "DejaVu Serif").empty();
         }},
        {"riga ripetuta spostata e cambiata", "Piede report", T::Campo, "Iva.Imposta",
         [](E& ed) { return ed.Sposta(0, 0.5) && ed.Imposta(Proprieta::Maschera, "#,0").empty(); }},
        {"campo aggiunto", "Piede pagina", {}, "", [](E& ed) { return ed.Aggiungi(TipoElemento::Campo, "Documento.Numero"); }},
        {"elemento eliminato", "Intestazione pagina", T::Testo, "Prezzo", [](E& ed) { return ed.Elimina(); }},
    };
    const Modello originale = Carica((fs::path(BREVANO_SOURCE_DIR) / "data/report/Fatture.rpf").string());
    for (const auto& c : casi) {
        EditorModello ed(originale);
        const int banda = BandaDi(ed, c.banda);
        ed.Seleziona({banda, c.tipo ? ElementoDi(ed, banda, *c.tipo, c.cosa) : -1});
        ASSERT_TRUE(c.modifica(ed)) << c.nome;
        EXPECT_TRUE(ed.Modificato()) << c.nome;
        const Modello cambiato = ed.modello();
        Salva(cambiato, file);
        EXPECT_TRUE(Carica(file) == cambiato) << c.nome << "\n" << Scrivi(cambiato);
        ed.Salvato();
        EXPECT_FALSE(ed.Modificato()) << c.nome;
        while (ed.Annulla()) {}
        EXPECT_TRUE(ed.modello() == originale) << c.nome;
        EXPECT_TRUE(ed.Modificato()) << c.nome;
        while (ed.Ripeti()) {}
        EXPECT_TRUE(ed.modello() == cambiato) << c.nome;
    }
}

TEST(EditorReport, SpostamentiERidimensionamentiRestanoNellaBanda) {
    // A band 20 mm high on a page 180 mm wide between its margins; the element 40 x 5 at (10, 10).
    Modello m;
    Banda b{TipoBanda::Dettaglio, 20, {}};
    Elemento e;
    e.tipo = TipoElemento::Riquadro;
    e.x = 10, e.y = 10, e.larghezza = 40, e.altezza = 5;
    b.elementi.push_back(e);
    m.bande.push_back(b);
    struct Caso {
        const char* nome;
        Presa presa;   // Corpo moves
        double dx, dy;
        double x, y, larghezza, altezza;
    };
    const std::vector<Caso> casi{
        {"oltre il margine destro", Presa::Corpo, 500, 0, 140, 10, 40, 5},
        {"oltre il fondo", Presa::Corpo, 0, 30, 10, 15, 40, 5},
        {"est oltre l'ovest", Presa::Est, -100, 0, 10, 10, 1, 5},
        {"nord oltre la cima", Presa::Nord, 0, -50, 10, 0, 40, 15},
        {"nord-ovest oltre il sud-est", Presa::NordOvest, 100, 100, 49, 14, 1, 1},
    };
    for (const auto& c : casi) {
        EditorModello ed(m);
        ed.Seleziona({0, 0});
        if (c.presa == Presa::Corpo) ed.Sposta(c.dx, c.dy);
        else ed.Ridimensiona(c.presa, c.dx, c.dy);
        const Elemento& r = *ed.Selezionato();
        EXPECT_DOUBLE_EQ(r.x, c.x) << c.nome;
        EXPECT_DOUBLE_EQ(r.y, c.y) << c.nome;
        EXPECT_DOUBLE_EQ(r.larghezza, c.larghezza) << c.nome;
        EXPECT_DOUBLE_EQ(r.altezza, c.altezza) << c.nome;
    }
    // A band does not get lower than what it holds, nor does it move.
    EditorModello ed(m);
    ed.Seleziona({0, -1});
    EXPECT_FALSE(ed.Sposta(5, 5));
    EXPECT_TRUE(ed.Ridimensiona(Presa::FondoBanda, 0, -100));
    EXPECT_DOUBLE_EQ(ed.banda(0).altezza, 15);
}

TEST(EditorReport, ValoriRifiutatiNonCambianoNulla) {
    struct Caso {
        int elemento;   // in the detail of the list layout: 0 the description, 1 the amount
        Proprieta p;
        std::string valore;
        std::string messaggio;
    };
    const std::vector<Caso> casi{
        {0, Proprieta::Punti, "0", "La dimensione del carattere deve essere un numero tra 1 e 10000."},
        {1, Proprieta::X, "120", "L'elemento uscirebbe dalla pagina: la larghezza utile è di 150 mm."},
        {0, Proprieta::Altezza, "11", "L'elemento uscirebbe dalla banda, alta 10 mm."},
        {0, Proprieta::Larghezza, "0,5", "La larghezza deve essere un numero tra 1 e 10000."},
        {0, Proprieta::Campo, " ", "Un campo deve mostrare un campo o una somma."},
        {0, Proprieta::Ambito, "Pagina", "L'ambito vale solo per una somma."},
        {0, Proprieta::Allinea, "Giustificato", "L'allineamento deve essere Sinistra, Centro o Destra."},
        {0, Proprieta::Grassetto, "forse", "Il valore deve essere Sì o No."},
        {0, Proprieta::Testo, "x", "Questo elemento non ha la proprietà."},
    };
    const Modello m = Leggi(prova::ReportElenco(), "Prova.rpf");
    for (const auto& c : casi) {
        EditorModello ed(m);
        ed.Seleziona({2, c.elemento});
        ASSERT_EQ(ed.NomeBanda(2), "Dettaglio");
        EXPECT_EQ(ed.Imposta(c.p, c.valore).substr(0, c.messaggio.size()), c.messaggio) << c.valore;
        EXPECT_TRUE(ed.modello() == m) << c.valore;
        EXPECT_FALSE(ed.PuoAnnullare()) << c.valore;
    }
    // A text may use only the parameters the report declares, and a band holds its elements.
    EditorModello ed(m);
    ed.Seleziona({BandaDi(ed, "Piede report"), 0});
    EXPECT_EQ(ed.Imposta(Proprieta::Testo, "Totale {Periodo}"),
              "Il testo usa {Periodo}, che non è un parametro dichiarato dal report.");
    EXPECT_EQ(ed.Imposta(Proprieta::Testo, "Totale {titolo} a pagina {Pagina}"), "");
    ed.Seleziona({BandaDi(ed, "Dettaglio"), -1});
    EXPECT_EQ(ed.Imposta(Proprieta::Altezza, "9"), "La banda contiene elementi fino a 10 mm: non può essere più bassa.");
    EXPECT_EQ(ed.Imposta(Proprieta::Altezza, "12,5"), "");
    EXPECT_EQ(ed.Valore(Proprieta::Altezza), "12,5");
}

TEST(EditorReport, IlPuntoPrendeLElementoLaManigliaOLaBanda) {
    // The list layout: no margins, bands of 10 mm each under their 5 mm strips.
    EditorModello ed(Leggi(prova::ReportElenco(), "Prova.rpf"));
    ASSERT_EQ(ed.NomeBanda(0), "Intestazione pagina");
    EXPECT_DOUBLE_EQ(ed.Cima(0), 5);
    EXPECT_DOUBLE_EQ(ed.Cima(3), 5 + 3 * 15);
    // An element is hit by the layout editor's clicks; a band by its strip or beside its texts.
    EXPECT_EQ(ed.Colpito(10, 2), (Selezione{0, -1}));
    EXPECT_EQ(ed.Colpito(130, 8), (Selezione{0, -1}));
    EXPECT_EQ(ed.Colpito(10, 500), Selezione{});
    ed.Seleziona({2, 1});   // the detail's amount: 80..120 x 35..45 on the drawing
    struct Presa_ {
        double x, y;
        Presa presa;
    };
    const std::vector<Presa_> prese{
        {80, 35, Presa::NordOvest}, {119.8, 40, Presa::Est}, {10, 45.2, Presa::FondoBanda}, {130, 42, Presa::Nessuna},
    };
    for (const auto& p : prese) EXPECT_EQ(ed.PresaIn(p.x, p.y, 0.5), p.presa) << p.x << "," << p.y;

    // Tab: each band, then its elements; past either end nothing is chosen.
    ed.Seleziona({});
    EXPECT_TRUE(ed.SelezionaAccanto(false));
    EXPECT_EQ(ed.selezione(), (Selezione{5, 0}));   // the page foot's text
    ed.Seleziona({0, 1});
    EXPECT_TRUE(ed.SelezionaAccanto(true));
    EXPECT_EQ(ed.selezione(), (Selezione{1, -1}));
    ed.Seleziona({0, -1});
    EXPECT_FALSE(ed.SelezionaAccanto(false));
    EXPECT_EQ(ed.selezione(), Selezione{});
}

TEST(EditorReport, CampiDaiSubReportEQuelliSconosciuti) {
    prova::applicazioneDiProva();
    test::CartellaTemporanea cartella;
    auto db = store::Workspace::Default().CreateDatabase(cartella / "archivio.mdb");
    prova::CreaMovimenti(*db, 3);
    Modello m = Leggi(prova::ReportElenco(), "Prova.rpf");
    m.subReports.push_back({"Testata", Archivio::Archivio, "Select Count(*) As Righe from Movimenti", {}});
    m.subReports.push_back({"Guasto", Archivio::Archivio, "Select * from Nessuna", {}});
    // The layout's own: one reads a field of a sub-report before it, one the master file by company.
    m.subReports.push_back({"Legata", Archivio::Archivio, "Select Descrizione As Terza from Movimenti where ID={Testata.Righe}", {}, true});
    m.subReports.push_back({"Ditta", Archivio::Aziende, "Select Nome from Ditte where ID={Azienda}", {}, true});
    auto aziende = store::Workspace::Default().CreateDatabase(cartella / "aziende.mdb");
    aziende->Execute("Create Table Ditte (ID Long, Nome Text(50))");
    const auto colonne = ColonneSubReport(m, db.get(), nullptr, 1, aziende.get());
    EXPECT_EQ(CampiScelti(m, colonne), (std::vector<std::string>{"Cliente", "Descrizione", "Importo", "Testata.Righe",
                                                                 "Legata.Terza", "Ditta.Nome"}));
    EditorModello ed(m);
    ed.Seleziona({BandaDi(ed, "Dettaglio"), 0});
    ASSERT_EQ(ed.Imposta(Proprieta::Campo, "Descrizion"), "");
    ed.Seleziona({BandaDi(ed, "Piede report"), 0});
    ASSERT_EQ(ed.Imposta(Proprieta::Testo, "[Testata.Colonne] [Guasto.X]"), "");
    EXPECT_EQ(CampiSconosciuti(ed.modello(), colonne),
              (std::vector<std::string>{"Il campo Descrizion non è tra quelli della query del sub-report Elenco.",
                                        "Il campo Colonne non è tra quelli della query del sub-report Testata."}));
}
