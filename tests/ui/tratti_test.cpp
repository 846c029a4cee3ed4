// A list grouped by descriptions of a lookup table, read in pieces: the pieces' conditions, and a
// grid reading them shows the very rows, captions and order of the single statement, forwards,
// backwards, across pages and after a delete.
#include <gtest/gtest.h>

#include "store/convert.h"
#include "support/archivio_kit.h"
#include "ui/Tratti.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"
#include "ui/griglia_support.h"

namespace {

const ui::GruppoCollegato kClasse{"DescClasse", "Classi", "Classe"};

class Tratti : public ::testing::Test {
protected:
    void SetUp() override {
        a.db->Execute("CREATE TABLE Classi (ID LONG, DescClasse TEXT(50))");
        a.db->Execute("CREATE TABLE Voci (ID LONG, Classe LONG, Numero TEXT(10))");
        // 'viaggi' sorts with 'Viaggi'; 5 has no description; 4 and 6 do not exist.
        for (const char* r : {"(3,'viaggi')", "(1,'Viaggi')", "(2,'Affitti')", "(5,Null)", "(7,'Banca')"})
            a.db->Execute(std::string("INSERT INTO Classi (ID, DescClasse) VALUES ") + r);
    }
    // 450 rows over every kind of link: more than two pages of the grid.
    void riempi() {
        const long classi[] = {1, 2, 3, 5, 0, 4, 7, -1};
        a.inserisciInBlocco("INSERT INTO Voci (ID, Classe, Numero) VALUES (?1, ?2, ?3)", 450, [&](sqlite3_stmt* s, int i) {
            sqlite3_bind_int(s, 1, i);
            if (classi[i % 8] < 0) sqlite3_bind_null(s, 2);
            else sqlite3_bind_int64(s, 2, classi[i % 8]);
            const std::string numero = std::to_string(100000 + i * 7 % 450);  // each once, out of order
            sqlite3_bind_text(s, 3, numero.c_str(), -1, SQLITE_TRANSIENT);
        });
    }
    void prepara(ui::VetraGrid& g, bool aTratti) {
        g.setSorgente("Select Voci.ID, Voci.Classe, Voci.Numero, Classi.DescClasse from Voci LEFT JOIN Classi ON "
                      "Voci.Classe=Classi.ID where Voci.ID Mod 50<>0");
        g.setOrdinamento("Numero", ui::Direzione::Decrescente);
        g.aggiungiColonna({"Numero", "Numero", 1000});
        g.aggiungiGruppo("DescClasse");
        if (aTratti) g.collegaGruppo(kClasse);
    }

    prova::ArchivioProva a;
};

TEST_F(Tratti, CondizioniEIstruzioni) {
    // Null, below, above and between the IDs that bear a description; then each description in order.
    const ui::CondizioniLivello c = ui::CondizioniDelLivello(*a.db, kClasse);
    EXPECT_EQ(c.mancanti, (std::vector<std::string>{"Classe Is Null", "Classe<1", "Classe>7", "Classe Between 4 And 6"}));
    EXPECT_EQ(c.descrizioni, (std::vector<std::string>{"Classe In (2)", "Classe In (7)", "Classe In (1,3)"}));

    // Two levels on one table, to see the shape: the rows linking to no description come first,
    // ordered by the deeper level; each term of theirs carries the choice above it.
    a.db->Execute("DELETE FROM Classi WHERE ID<>2");
    EXPECT_EQ(ui::IstruzioniATratti(*a.db, "Select * from Voci where Numero<>'x'", {kClasse, kClasse}, {"Numero DESC"},
                                    false, 10),
              (std::vector<std::string>{
                  "Select * from Voci where ((Numero<>'x') And Classe Is Null) Or ((Numero<>'x') And Classe<2) Or "
                  "((Numero<>'x') And Classe>2) ORDER BY DescClasse, Numero DESC",
                  "Select * from Voci where ((Numero<>'x') And Classe In (2) And Classe Is Null) Or ((Numero<>'x') And "
                  "Classe In (2) And Classe<2) Or ((Numero<>'x') And Classe In (2) And Classe>2) ORDER BY Numero DESC",
                  "Select * from Voci where (Numero<>'x') And Classe In (2) And Classe In (2) ORDER BY Numero DESC"}));
    EXPECT_EQ(ui::IstruzioniATratti(*a.db, "Select * from Voci", {kClasse}, {"Numero"}, true, 10).front(),
              "Select * from Voci where Classe In (2) ORDER BY Numero");
    EXPECT_TRUE(ui::IstruzioniATratti(*a.db, "Select * from Voci", {kClasse, kClasse}, {}, false, 2).empty());
    EXPECT_TRUE(ui::IstruzioniATratti(*a.db, "Select Classe from Voci Group By Classe", {kClasse}, {}, false, 10).empty());
    a.db->Execute("DELETE FROM Classi");
    EXPECT_EQ(ui::CondizioniDelLivello(*a.db, kClasse).mancanti,
              (std::vector<std::string>{"Classe Is Null", "Classe Is Not Null"}));
}

TEST_F(Tratti, LaGrigliaATrattiMostraLeRigheDellIstruzioneUnica) {
    riempi();
    ui::VetraGrid unica, aTratti;
    prepara(unica, false);
    prepara(aTratti, true);
    unica.Aggiorna();
    aTratti.Aggiorna();
    EXPECT_EQ(aTratti.istruzione(), unica.istruzione());
    const std::vector<std::string> attese = prova::righeGriglia(unica);
    ASSERT_EQ(std::count_if(attese.begin(), attese.end(), [](const std::string& r) { return r[0] != '#'; }), 441);
    EXPECT_EQ(attese[0], "#(vuoto)");
    EXPECT_EQ(prova::righeGriglia(aTratti), attese);

    // The current row's recordset is the piece it came from, for the controls that follow the row too.
    ui::VText numero;
    numero.setDataField("Numero");
    aTratti.aggiungiSeguace(&numero);
    const auto pezzo = [&numero](ui::VetraGrid& g, long id) {
        EXPECT_TRUE(g.vaiAId(id));
        EXPECT_EQ(numero.testo(), store::ConcatText(g.valore("Numero")));
        EXPECT_EQ(store::CLng(g.Recordset()->get("ID")), id);
        return g.Recordset();
    };
    EXPECT_NE(pezzo(aTratti, 448), pezzo(aTratti, 7));  // Viaggi, and a row linking to no class

    // Read from its end, the list is the same.
    ui::VetraGrid dallaFine;
    prepara(dallaFine, true);
    dallaFine.Aggiorna();
    dallaFine.VaiAllUltima();
    EXPECT_TRUE(dallaFine.modello()->inverso());
    EXPECT_EQ(store::CLng(dallaFine.Recordset()->get("ID")), std::stol(attese.back()));
    EXPECT_EQ(prova::righeGriglia(dallaFine), attese);

    // A short list is read by the single statement: one recordset for every row.
    a.db->Execute("DELETE FROM Voci WHERE ID>100");
    aTratti.Aggiorna();
    EXPECT_EQ(pezzo(aTratti, 96), pezzo(aTratti, 7));
}

TEST_F(Tratti, EliminaAllaFineDiUnTrattoELetturaContinua) {
    riempi();
    ui::VetraGrid g;
    prepara(g, true);
    g.Aggiorna();
    // The last row of the first page is deleted before the next page is read.
    int ultima = g.righeMostrate() - 1;
    while (g.modello()->rigaDiGruppo(ultima)) --ultima;
    const long tolto = store::CLng(g.modello()->valore(ultima, "ID"));
    g.setCurrentIndex(g.modello()->index(ultima, 0));
    ASSERT_TRUE(g.EliminaRiga());
    std::vector<std::string> letti = prova::righeGriglia(g);
    EXPECT_EQ(std::count(letti.begin(), letti.end(), std::to_string(tolto)), 0);
    EXPECT_EQ(std::count_if(letti.begin(), letti.end(), [](const std::string& r) { return r[0] != '#'; }), 440);
    EXPECT_EQ(g.modello()->righeLette(), 440);
}

}  // namespace
