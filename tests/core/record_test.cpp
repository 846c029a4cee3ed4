#include <gtest/gtest.h>

#include "core/record.h"
#include "store/convert.h"
#include "support/sessione_prova.h"

namespace {

TEST(Record, NuovoIdSuTabellaVuotaEDopoIlMassimo) {
    test::CartellaTemporanea cartella;
    test::SessioneNuova(cartella.percorso());
    auto archivio = test::NuovoDatabase(cartella / "2024.mdb", {"CREATE TABLE Clienti (ID LONG, DescCliente TEXT(50))",
                                                                 "CREATE TABLE Senza (Codice LONG)"});
    core::session().dbArchivio = archivio;
    auto NuovoCliente = [&](const std::string& sql) {
        auto rs = archivio->OpenRecordset(sql);
        rs->AddNew();
        core::NuovoID(*rs);
        EXPECT_EQ(rs->editMode(), store::Recordset::EditMode::Edit);
        rs->set("DescCliente", store::Value::Text("nuovo"));
        rs->Update();
        return store::CLng(rs->get("ID"));
    };
    EXPECT_EQ(core::ProssimoID("Clienti"), 1);
    EXPECT_EQ(NuovoCliente("Select * from Clienti"), 1);
    archivio->Execute("INSERT INTO Clienti (ID, DescCliente) VALUES (41, 'alto')");
    archivio->Execute("INSERT INTO Clienti (ID, DescCliente) VALUES (7, 'in mezzo')");
    EXPECT_EQ(core::ProssimoID("Clienti"), 42);
    EXPECT_EQ(NuovoCliente("SELECT * FROM Clienti WHERE ID=0"), 42);
    auto rs = archivio->OpenRecordset("Select DescCliente from Clienti where ID=42");
    ASSERT_FALSE(rs->Eof());
    EXPECT_EQ(rs->get("DescCliente").text(), "nuovo");  // the second update reached the same row
    EXPECT_EQ(core::ProssimoID("Senza"), 1);
    // With no ID field the new row is left to the caller; another database's rows are numbered by the
    // registers of companies and periods.
    auto senza = archivio->OpenRecordset("Select * from Senza");
    senza->AddNew();
    core::NuovoID(*senza);
    EXPECT_EQ(senza->editMode(), store::Recordset::EditMode::AddNew);
}

}  // namespace
