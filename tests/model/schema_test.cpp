// The model files: long texts and keys, every saved query opened empty, rows written in bulk, and the
// files an installation supplies.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "store/convert_support.h"
#include "support/archivio_modello.h"
#include "support/cartella_temporanea.h"

namespace {

using namespace modeltest;

store::DatabasePtr archivioVuoto() {
    auto db = store::Workspace::Default().OpenMemory();
    store::model::CreaArchivio(*db);
    return db;
}

TEST(Modello, LongTextsAndUniqueKeys) {
    auto db = archivioVuoto();
    const std::string lungo(5000, 'x');
    riga(*db, "NoteDettagli", {{"ID", L(1)}, {"Valore", Value::Text(lungo)}});
    EXPECT_EQ(testo(campo(*db, "Select * from NoteDettagli where ID=1", "Valore")), lungo);
    riga(*db, "Pagamenti", {{"ID", L(1)}});
    EXPECT_EQ(errorOf([&] { riga(*db, "Pagamenti", {{"ID", L(1)}}); }), 3022);
}

// Screens give an empty grid its columns with "where ID<0": every saved query opens so, with no row
// and no column twice.
void controllaForma(store::Database& db, const std::string& sql) {
    SCOPED_TRACE(sql);
    auto rs = db.OpenRecordset(sql);
    EXPECT_TRUE(rs->Eof());
    EXPECT_EQ(rs->RecordCount(), 0);
    for (int i = 0; i < rs->FieldCount(); ++i)
        for (int j = i + 1; j < rs->FieldCount(); ++j)
            EXPECT_NE(store::CompareText(rs->Fields(i).Name(), rs->Fields(j).Name()), 0) << rs->Fields(i).Name();
}

TEST(Modello, EverySavedQueryOpensWithNoRowForANegativeID) {
    auto db = archivioVuoto();
    for (const store::QueryDef& q : db->QueryDefs()) controllaForma(*db, "Select * from " + q.Name + " where ID<0");
    auto master = store::Workspace::Default().OpenMemory();
    store::model::CreaAziende(*master);
    controllaForma(*master, "Select * from qrUtenti where ID=-1");
}

TEST(Modello, BulkRowsReadBackAsGiven) {
    auto db = store::Workspace::Default().OpenMemory();
    store::model::CreaTemp(*db);
    const double dataOra = store::DateSerial(2024, 3, 5) + (14 * 60 + 30) / 1440.0;
    const std::vector<std::vector<Value>> righe = {
        {L(-1), T("Saldo l'anno \"prima\""), D(0.1 + 0.2), Value::Date(dataOra), Value::Null()},
        {L(2), T(""), D(-1234567.891), Value::Date(store::DateSerial(1999, 12, 31)), T("Bianchi & figli")},
        {L(3), T("àèìòù €"), D(1e-7), Value::Null(), T("x")},
    };
    std::vector<std::vector<Value>> molte;
    for (int i = 0; i < 1203; ++i) molte.push_back({L(100 + i), T("riga"), D(i / 100.0), Value::Null(), Value::Null()});
    const std::vector<std::string> colonne{"ID", "Descrizione", "Dare", "Data", "DescFornitore"};
    store::model::InserisciRighe(*db, "Estratto", colonne, righe);
    store::model::InserisciRighe(*db, "Estratto", colonne, molte);
    for (const auto& r : righe) {
        auto rs = db->OpenRecordset("Select * from Estratto where ID=" + testo(r[0]));
        for (std::size_t c = 1; c < colonne.size(); ++c) EXPECT_EQ(rs->get(colonne[c]), r[c]) << colonne[c];
    }
    auto conta = db->OpenRecordset("Select Count(*) as N, Sum(Dare) as S from Estratto where ID>=100");
    EXPECT_EQ(conta->get("N").number(), 1203);
    EXPECT_NEAR(conta->get("S").number(), 7230.03, 1e-6);  // (0 + 1202) x 1203 / 2 / 100
    EXPECT_EQ(errorOf([&] { store::model::InserisciRighe(*db, "Estratto", colonne, {{L(9), T("corta")}}); }), 3346);
}

// What the files hold is what every start-up screen test starts from (the municipalities offered, the
// layouts' rows of a new company); here a second run replaces them rather than adding to them.
TEST(Modello, InstallationFilesWrittenTwice) {
    test::CartellaTemporanea cartella;
    for (int volta = 0; volta < 2; ++volta)
        store::model::ScriviFileInstallazione(cartella.percorso(), store::model::CartellaDatiSorgente());
    auto aziende = store::Workspace::Default().OpenDatabase(cartella / "Base/Aziende.mdb");
    EXPECT_EQ(ids(*aziende, "Select * from Aziende"), std::vector<long>{});
    EXPECT_EQ(ids(*aziende, "Select * from FormReport where Azienda=0 and Predefinito=True").size(), 16u);
    EXPECT_EQ(ids(*aziende, "Select * from FormReport").size(), 16u);
}

TEST(Modello, BadMunicipalityListIsReportedWithItsLine) {
    test::CartellaTemporanea cartella;
    struct Caso {
        const char* contenuto;
        const char* messaggio;
    };
    const Caso casi[] = {
        {"Comune\tCap\tProvincia\nRoma\t00118\tRM\nMilano 20121 MI\n", "riga 3"},
        {"Comune\tCap\tProvincia\n\t00118\tRM\n", "riga 2"},
    };
    for (const Caso& c : casi) {
        std::ofstream(cartella / "comuni.tsv", std::ios::binary) << c.contenuto;
        auto db = store::Workspace::Default().OpenMemory();
        try {
            store::model::CreaUtilita(*db, cartella / "comuni.tsv");
            ADD_FAILURE() << c.contenuto;
        } catch (const std::runtime_error& e) {
            EXPECT_NE(std::string(e.what()).find(c.messaggio), std::string::npos) << e.what();
        }
    }
    auto db = store::Workspace::Default().OpenMemory();
    EXPECT_THROW(store::model::CreaUtilita(*db, cartella / "manca.tsv"), std::runtime_error);
}

}  // namespace
