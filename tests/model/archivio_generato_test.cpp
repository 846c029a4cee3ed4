// The archive the benchmarks run on: sizes as asked, amounts that add up, the same rows every time.
#include <gtest/gtest.h>

#include "support/archivio_modello.h"
#include "support/archive_gen.h"

namespace {

using namespace modeltest;

bench::Dimensioni piccolo() {
    bench::Dimensioni d;
    d.clienti = 10;
    d.fornitori = 5;
    d.servizi = 5;
    d.documenti = 100;
    d.scadenze = 150;
    d.pagamenti = 200;
    d.spese = 10;
    return d;
}

store::DatabasePtr generato(const bench::Dimensioni& d) {
    auto db = store::Workspace::Default().OpenMemory();
    store::model::CreaArchivio(*db);
    bench::GeneraArchivioProva(*db, d);
    return db;
}

double scalare(store::Database& db, const std::string& sql) {
    auto rs = db.OpenRecordset(sql);
    Value v = rs->Fields(0).value();
    return v.isNull() ? 0 : v.number();
}

// Sizes as asked, every kind of document, and every figure a benchmark reads agreeing with the
// rows it is made of.
TEST(ArchivioGenerato, SizesKindsAndAmountsThatAddUp) {
    auto db = generato(piccolo());
    const std::pair<const char*, double> conteggi[] = {
        {"Documenti", 100}, {"Movimenti", 500}, {"Scadenze", 150}, {"Pagamenti", 200},
        {"Spese", 10},      {"MovimentiSpese", 20}, {"PrimaNota", 200}, {"Clienti", 10},
    };
    for (const auto& [tabella, n] : conteggi)
        EXPECT_EQ(scalare(*db, std::string("Select Count(*) from ") + tabella), n) << tabella;
    for (int tipo : {5, 6, 7, 9})
        EXPECT_GT(scalare(*db, "Select Count(*) from Documenti where Tipo=" + std::to_string(tipo)), 0) << tipo;
    const char* vuote[] = {
        "Select * from qrDocumentiScadenze where ImportoScadenze<>0 and Rimanente<>0",
        "Select * from qrSpeseScadenze where ImportoScadenze<>0 and Rimanente<>0",
        "Select * from Documenti where Round(Imponibile+TotIva-TotRitenutaAcconto-ImportoTotale,2)<>0",
        "Select * from Spese where Round(Imponibile+TotIva-ImportoSpesa,2)<>0",
        "Select * from Documenti where Tipo=7 and ID In (Select Documento from Scadenze)",
        "Select * from Pagamenti where Scadenza<>0 and Scadenza Not In (Select ID from Scadenze)",
        "Select * from qrPagamentiIncassi where Cliente=0 and Fornitore=0",
    };
    for (const char* sql : vuote) EXPECT_EQ(ids(*db, sql), std::vector<long>{}) << sql;
    const char* presenti[] = {
        "Select * from qrScadenzePagamenti where DaPagare<0",                       // paid one euro too much
        "Select * from qrScadenzePagamenti where DaPagare>0 and ImportoPagato>0",   // paid in part
        "Select * from qrScadenzePagamenti where ImportoPagato=0",                  // left open
        "Select * from Pagamenti where Scadenza=0",                                 // straight onto a document
    };
    for (const char* sql : presenti) EXPECT_FALSE(ids(*db, sql).empty()) << sql;
}

TEST(ArchivioGenerato, SameSizesGiveTheSameRows) {
    auto a = generato(piccolo());
    auto b = generato(piccolo());
    for (const char* sql : {"Select Sum(ImportoTotale) from Documenti", "Select Sum(ImportoPagamento) from Pagamenti",
                            "Select Sum(ImportoScadenza*ID) from Scadenze"})
        EXPECT_EQ(scalare(*a, sql), scalare(*b, sql)) << sql;
}

}  // namespace
