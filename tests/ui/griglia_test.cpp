// The grid on a real archive: the statement it runs, the rows it shows and how few it reads, the
// delete and the keys.
#include <gtest/gtest.h>

#include <QHeaderView>
#include <QTest>

#include "support/archivio_kit.h"
#include "store/convert.h"
#include "ui/VetraGrid.h"

namespace {

using store::Value;
using ui::Direzione;

struct CasoIstruzione {
    const char* sorgente;
    const char* ordinamento;
    Direzione direzione;
    std::vector<std::string> gruppi;
    const char* atteso;
};

TEST(VetraGridIstruzione, OrdinamentoGruppiEOrderByProprio) {
    prova::applicazioneDiProva();
    const CasoIstruzione casi[] = {
        {"Select * from qrSpese Order By DescClassificazione,DescTipoSpesa", "Numero,Data", Direzione::Decrescente,
         {"DescClassificazione", "DescTipoSpesa"},
         "Select * from qrSpese ORDER BY DescClassificazione, DescTipoSpesa, Numero DESC, Data DESC"},
        {"Select * from qrSpese Order By Data", "", Direzione::Crescente, {}, "Select * from qrSpese Order By Data"},
        // An "order by" inside quotes or a subquery is not the statement's own.
        {"Select * from T where Nota='x order by y'", "ID", Direzione::Crescente, {},
         "Select * from T where Nota='x order by y' ORDER BY ID"},
        {"Select * from (Select * from T order by A) order by B", "C", Direzione::Crescente, {"G"},
         "Select * from (Select * from T order by A) ORDER BY G, C"},
    };
    for (const auto& c : casi) {
        ui::VetraGrid g;
        g.setSorgente(c.sorgente);
        g.setOrdinamento(c.ordinamento, c.direzione);
        for (const auto& gr : c.gruppi) g.aggiungiGruppo(gr);
        EXPECT_EQ(g.istruzione(), c.atteso) << c.sorgente;
    }
}

class Griglia : public ::testing::Test {
protected:
    void SetUp() override {
        a.db->Execute("CREATE TABLE Voci (ID LONG, DescVoce TEXT(50), Importo DOUBLE, Gruppo TEXT(20), "
                      "Pagato YESNO, Data DATETIME)");
        for (const char* v : {"1, 'Consulenza', 1234.5, 'B', True, #03/05/2024#", "2, 'Affitto', 800, 'A', False, #01/31/2024#",
                              "3, 'Bollette', 0.125, 'A', True, #12/01/2023#"})
            a.db->Execute(std::string("INSERT INTO Voci (ID, DescVoce, Importo, Gruppo, Pagato, Data) VALUES (") + v + ")");
        g.setSorgente("Select * from Voci");
        g.setOrdinamento("DescVoce");
        g.aggiungiColonna({"DescVoce", "Descrizione", 3000});
        g.aggiungiColonna({"Importo", "Importo", 1200, "#,0.00", Qt::AlignRight | Qt::AlignVCenter});
        g.aggiungiColonna({"Data", "Data", 1200, "dd/mm/yyyy"});
        g.aggiungiColonna({"Pagato", "Pagato", 600});
    }
    QString cella(int riga, int colonna) const {
        return g.modello()->data(g.modello()->index(riga, colonna), Qt::DisplayRole).toString();
    }

    prova::ArchivioProva a;
    ui::VetraGrid g;
};

TEST_F(Griglia, MostraLeRigheOrdinateConLeMaschereEInOrdineInverso) {
    g.Aggiorna();
    ASSERT_EQ(g.righeMostrate(), 3);
    // An exact half goes up in a mask: 0,125 shows 0,13.
    EXPECT_EQ((QStringList{cella(0, 0), cella(1, 0), cella(2, 0), cella(2, 1), cella(1, 1), cella(2, 2)}),
              (QStringList{"Affitto", "Bollette", "Consulenza", "1.234,50", "0,13", "05/03/2024"}));
    EXPECT_EQ(g.modello()->data(g.modello()->index(0, 3), Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_EQ(g.modello()->data(g.modello()->index(2, 3), Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_EQ(g.columnWidth(1), 80);   // 1200 twips; the widest column stretches
    // The first row is current and the recordset stands on it.
    EXPECT_EQ(g.idCorrente(), 2);
    EXPECT_EQ(store::ConcatText(g.Recordset()->get("DescVoce")), "Affitto");

    g.setOrdinamento("Importo", Direzione::Decrescente);
    g.Aggiorna();
    EXPECT_EQ(cella(0, 0), "Consulenza");
    EXPECT_EQ(cella(2, 0), "Bollette");
    // A click on the caption of the sorted column turns the order round.
    emit g.horizontalHeader()->sectionClicked(1);
    EXPECT_EQ(g.direzione(), Direzione::Crescente);
    EXPECT_EQ(cella(0, 0), "Bollette");
}

TEST_F(Griglia, GruppiEColori) {
    g.aggiungiGruppo("Gruppo");
    g.aggiungiRegolaColore({"Pagato", [](const Value& v) { return v.number() == 0; }, Qt::red, Qt::white});
    g.Aggiorna();
    // A: Affitto, Bollette; B: Consulenza, each group opened by its caption row.
    ASSERT_EQ(g.righeMostrate(), 5);
    EXPECT_EQ((QStringList{cella(0, 0).trimmed(), cella(1, 0), cella(2, 0), cella(3, 0).trimmed()}),
              (QStringList{"A", "Affitto", "Bollette", "B"}));
    EXPECT_EQ(g.modello()->data(g.modello()->index(1, 0), Qt::ForegroundRole).value<QColor>(), QColor(Qt::red));
    EXPECT_FALSE(g.modello()->data(g.modello()->index(2, 0), Qt::ForegroundRole).isValid());
    // The caption row is never the current record.
    EXPECT_EQ(g.idCorrente(), 2);
    // Deleting the only row of a group takes its caption away.
    g.vaiAId(1);
    ASSERT_TRUE(g.EliminaRiga());
    ASSERT_EQ(g.righeMostrate(), 3);
    EXPECT_EQ(cella(2, 0), "Bollette");
    EXPECT_EQ(g.idCorrente(), 3);
    // A grouping field the statement lacks is the database's error, not a broken grid.
    g.aggiungiGruppo("Assente");
    EXPECT_THROW(g.Aggiorna(), store::JetError);
    EXPECT_EQ(g.righeMostrate(), 3);
}

TEST_F(Griglia, EliminaRigaPortaSuLaSeguente) {
    g.Aggiorna();
    g.vaiAId(3);   // Bollette, between Affitto and Consulenza
    ASSERT_TRUE(g.EliminaRiga());
    EXPECT_EQ(g.righeMostrate(), 2);
    EXPECT_EQ(g.idCorrente(), 1);   // the next row moves up into the place
    EXPECT_TRUE(a.db->OpenRecordset("Select * from Voci where ID=3")->Eof());
}

// A table of n rows, IDs from 1 with their description; the grid on it ordered by ID. A grouped list
// read from its end is walked by the registers' order and the lists read in pieces.
class GrigliaGrande : public ::testing::Test {
protected:
    void Riempi(int n) {
        a.db->Execute("CREATE TABLE Righe (ID LONG, DescRiga TEXT(50))");
        a.inserisciInBlocco("INSERT INTO Righe (ID, DescRiga) VALUES (?, ?)", n, [](sqlite3_stmt* st, int i) {
            char desc[32];
            std::snprintf(desc, sizeof desc, "Riga %05d", i);
            sqlite3_bind_int(st, 1, i);
            sqlite3_bind_text(st, 2, desc, -1, SQLITE_TRANSIENT);
        });
    }
    static void Prepara(ui::VetraGrid& g) {
        g.resize(600, 400);
        g.setSorgente("Select * from Righe");
        g.setOrdinamento("ID");
        g.aggiungiColonna({"DescRiga", "Descrizione", 3000});
    }
    prova::ArchivioProva a;
};

TEST_F(GrigliaGrande, CinquantamilaRigheLettePocheAllaVolta) {
    Riempi(50000);
    ui::VetraGrid g;
    Prepara(g);
    g.Aggiorna();
    EXPECT_EQ(g.modello()->righeLette(), ui::VetraGridModel::RighePerBlocco);
    EXPECT_TRUE(g.modello()->canFetchMore({}));
    g.scrollToBottom();
    QCoreApplication::processEvents();
    EXPECT_LE(g.modello()->righeLette(), 3 * ui::VetraGridModel::RighePerBlocco);
    // Going to a far record reads on until it, and no further than its page.
    ASSERT_TRUE(g.vaiAId(30000));
    EXPECT_LT(g.modello()->righeLette(), 30000 + ui::VetraGridModel::RighePerBlocco + 1);
    EXPECT_EQ(store::ConcatText(g.Recordset()->get("DescRiga")), "Riga 30000");
    // A refresh comes back to it.
    g.Aggiorna();
    EXPECT_EQ(g.idCorrente(), 30000);
    // Ctrl+End goes to the last row of the statement, read from the end without the rows before it.
    QTest::keyClick(&g, Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(g.idCorrente(), 50000);
    EXPECT_EQ(store::ConcatText(g.Recordset()->get("DescRiga")), "Riga 50000");
    EXPECT_LE(g.modello()->righeLette(), 3 * ui::VetraGridModel::RighePerBlocco);
    EXPECT_FALSE(g.modello()->canFetchMore({}));
    // Scrolled to the top, the rows above come, the view still on the rows it showed.
    const long inCoda = g.modello()->righeLette();
    const long primoMostrato = store::CLng(g.modello()->valore(0, "ID"));
    g.scrollToTop();
    QCoreApplication::processEvents();
    EXPECT_GT(g.modello()->righeLette(), inCoda);
    EXPECT_EQ(store::CLng(g.modello()->valore(g.rowAt(0), "ID")), primoMostrato);
    // A refresh keeps the end; Ctrl+Home is back at the first row.
    g.Aggiorna();
    EXPECT_EQ(g.idCorrente(), 50000);
    QTest::keyClick(&g, Qt::Key_Home, Qt::ControlModifier);
    EXPECT_EQ(g.idCorrente(), 1);
    EXPECT_TRUE(g.modello()->canFetchMore({}));
}

// In a new order the row that was current is looked for only about as far as the list had read: a
// long list is not read through for it.
TEST_F(GrigliaGrande, UnNuovoOrdineNonLeggeTuttoPerLaRigaCorrente) {
    Riempi(5000);
    ui::VetraGrid g;
    Prepara(g);
    g.Aggiorna();
    ASSERT_EQ(g.idCorrente(), 1);
    g.setOrdinamento("ID", Direzione::Decrescente);
    g.Aggiorna();
    EXPECT_EQ(g.idCorrente(), 5000);
    EXPECT_LE(g.modello()->righeLette(), 6 * ui::VetraGridModel::RighePerBlocco);
}

}  // namespace
