// The plans SQLite makes for the registers as the grid runs them: by date the documents of a kind
// come from an index in the order asked, so the first rows need no sort of the whole kind; the
// journal's rows and balances of a destination come from its index too.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

#include "store/catalog_database.h"
#include "store/model/model.h"

namespace {

std::string piano(store::Database& db, const std::string& istruzione) {
    const store::sql::Translation t = db.impl().translate(istruzione);
    sqlite3_stmt* s = nullptr;
    const std::string sql = "EXPLAIN QUERY PLAN " + t.sql;
    EXPECT_EQ(sqlite3_prepare_v2(db.impl().handle(), sql.c_str(), -1, &s, nullptr), SQLITE_OK) << t.sql;
    store::sql::bindParams(s, t.params);
    std::string out;
    while (sqlite3_step(s) == SQLITE_ROW) out += std::string(reinterpret_cast<const char*>(sqlite3_column_text(s, 3))) + "\n";
    sqlite3_finalize(s);
    return out;
}

// The books filter by day with DateValue on the date column, and the registers list by date: each
// statement reaches its rows by a range of an index, without scanning a table, and what comes in order
// from an index is not sorted again.
TEST(PianiRegistro, RegistriELibriDallIndice) {
    auto db = store::Workspace::Default().OpenMemory();
    store::model::CreaArchivio(*db);
    const std::string marzo = "DateValue(#)>=DateValue('01/03/2024') And DateValue(#)<=DateValue('31/03/2024')";
    auto periodo = [&](const std::string& campo) {
        std::string s = marzo;
        for (auto at = s.find('#'); at != std::string::npos; at = s.find('#')) s.replace(at, 1, campo);
        return s;
    };
    struct Caso {
        std::string istruzione;
        const char* indice;
        const char* assente;
    };
    const Caso casi[] = {
        // The first rows of a kind need no sort of the whole kind.
        {"Select * from qrDocumenti where Tipo=5 ORDER BY Data", "TipoData", "TEMP B-TREE"},
        {"Select * from qrDocumenti where Tipo=9 ORDER BY Data DESC", "TipoData", "TEMP B-TREE"},
        // The journal's month of a destination, and the balance before it summed from the index alone.
        {"Select * from qrPrimaNota where Destinazione=0 and Month(Data)=3 and Year(Data)=2026 and "
         "Data>=#03/01/2026# and Data<#04/01/2026# ORDER BY Data, ID",
         "SEARCH PrimaNota", "SCAN PrimaNota"},
        {"Select Sum(Entrate) as TotEntrate, Sum(Uscite) as TotUscite from qrPrimaNota where Destinazione=1 AND "
         "Data>=#01/01/2026# AND Data<#03/01/2026#",
         "COVERING INDEX PrimaNota:DestinazioneData", "SCAN PrimaNota"},
        {"Select Sum(Movimenti.Importo) as T FROM Movimenti LEFT JOIN Documenti ON Movimenti.Documento = Documenti.ID "
         "Where Documenti.Tipo = 5 And " + periodo("Documenti.Data"),
         "Documenti:TipoData (Tipo=? AND Data>? AND Data<?)", "SCAN"},
        {"SELECT Sum(Round([Importo],2)) AS T FROM MovimentiSpese LEFT JOIN Spese ON MovimentiSpese.Spesa = Spese.ID "
         "WHERE " + periodo("Spese.Data"),
         "Spese:Data (Data>? AND Data<?)", "SCAN"},
        {"Select round(Sum(ImportoPagamento),2) as Incassato from qrIncassi Where " + periodo("DataPagamento"),
         "Pagamenti:DataPagamento (DataPagamento>? AND DataPagamento<?)", "SCAN"},
        // Only the documents of two kinds are merged and sorted; a document's payments never are.
        {"Select * from qrDocumentiDesc where EscludiEstrattoConto=0 And (Tipo=5 Or Tipo=6) and Cliente=1 and " +
             periodo("Data") + " Order By Data",
         "Documenti:TipoClienteData (Tipo=? AND Cliente=? AND Data>? AND Data<?)", "SCAN"},
        {"Select * from qrIncassi where Documento=5 and " + periodo("DataPagamento") + " Order by DataPagamento",
         "Pagamenti:DocumentoDataPagamento (Documento=? AND DataPagamento>? AND DataPagamento<?)", "SCAN"},
        {"Select * from qrPagamenti where Spesa=5 and " + periodo("DataPagamento") + " Order by DataPagamento",
         "Pagamenti:SpesaDataPagamento (Spesa=? AND DataPagamento>? AND DataPagamento<?)", "SCAN"},
    };
    for (const auto& c : casi) {
        const std::string p = piano(*db, c.istruzione);
        EXPECT_NE(p.find(c.indice), std::string::npos) << c.istruzione << "\n" << p;
        EXPECT_EQ(p.find(c.assente), std::string::npos) << c.istruzione << "\n" << p;
    }
    EXPECT_EQ(piano(*db, casi[8].istruzione).find("TEMP B-TREE"), std::string::npos);
}

}  // namespace
