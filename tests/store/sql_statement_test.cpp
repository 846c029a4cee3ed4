// Statements of the dialect run for real on SQLite: selects over joins and saved queries, TOP with
// ties, UNION, derived tables, aggregates, multi-table DELETE, INSERT/UPDATE conversions, HAVING
// moved to WHERE, column names and types, updatable results, error numbers, the cache.
#include <gtest/gtest.h>

#include "sql_support.h"
#include "store/clock.h"

using sqltest::TestDb;
using store::FieldType;
using store::sql::StatementKind;

namespace {

class SqlStmt : public ::testing::Test {
protected:
    void SetUp() override {
        store::fissaOrologio(store::DateSerial(2024, 3, 5) + 0.5);
        db.table("Clienti", {"ID:L", "DescCliente:S50", "DescCliente2:S50", "Sconto1:D", "Note:M"});
        db.table("Fornitori", {"ID:L", "DescFornitore:S50", "DescFornitore2:S50"});
        db.table("CodiciIva", {"ID:L", "DescIva:S30", "AliquotaIva:D"});
        db.table("Documenti", {"ID:L", "Tipo:L", "Numero:L", "Prefisso:S10", "Suffisso:S10", "Data:T",
                               "Cliente:L", "Fornitore:L", "Pagato:B", "ImportoTotale:D"});
        db.table("Movimenti", {"ID:L", "Documento:L", "DescMovimento:S100", "Importo:D", "Iva:L"}, {"Documento"});
        db.table("Pagamenti", {"ID:L", "Documento:L", "Cliente:L", "ImportoPagamento:D", "DataPagamento:T"});
        db.table("PrimaNota", {"ID:L", "Data:T", "Descrizione:S100", "Importo:D", "Tipo:L", "Pagamento:L"});
        db.table("Note", {"ID:L", "Descrizione:S50", "Predefinita:B"});
        db.raw("INSERT INTO Clienti VALUES (1,'Rossi','Mario',10,NULL),(2,'bianchi',NULL,0,'x'),(3,'Àlfa',' srl',0,NULL)");
        db.raw("INSERT INTO Fornitori VALUES (1,'Verdi','Spa')");
        db.raw("INSERT INTO CodiciIva VALUES (1,'Iva 22',22),(2,'Iva 10',10)");
        db.raw("INSERT INTO Documenti VALUES "
               "(1,5,1,'A',NULL,'2024-01-10',1,0,-1,122),"
               "(2,5,2,'A','',  '2024-02-10',2,0,0,110),"
               "(3,9,3,NULL,NULL,'2024-03-01',0,1,0,50),"
               "(4,7,4,'B',NULL,'2024-03-05 10:30:00',3,0,0,0)");
        db.raw("INSERT INTO Movimenti VALUES (1,1,'Uno',100,1),(2,2,'Due',60,2),(3,2,'Tre',40,2),(4,3,'Quattro',50,9),"
               "(5,99,'Orfano',5,1)");
        db.raw("INSERT INTO Pagamenti VALUES (1,1,1,100,'2024-01-20'),(2,1,1,22,'2024-01-25'),(3,2,2,10,'2024-02-20')");
        db.raw("INSERT INTO PrimaNota VALUES (1,'2024-01-01','Saldo',5,0,0),(2,'2024-01-20','Inc',100,0,1),"
               "(3,'2024-01-21','Orfana',3,1,77)");
    }
    void TearDown() override { store::fissaOrologio(std::nullopt); }
    TestDb db;
};

TEST_F(SqlStmt, SelectsGiveTheirRows) {
    const std::pair<const char*, const char*> cases[] = {
        {"Select ID from Clienti order by DescCliente", "3;2;1"},
        {"Select ID from Clienti where DescCliente2 Like '**' order by ID", "1;3"},
        {"Select [ID] from [Clienti] where [DescCliente] = \"bianchi  \"", "2"},
        {"SELECT id FROM clienti WHERE descCLIENTE='àlfa'", "3"},
        {"Select ID from Documenti where Pagato=True", "1"},
        {"Select ID from Documenti where Not Pagato order by ID", "2;3;4"},
        {"Select ID from Documenti where Pagato > 0", ""},
        {"Select ID from [Note]", ""},
        {"Select ID from Clienti where ID=1;", "1"},
        {"Select ID from Documenti where DateValue(Data)=DateValue(Now)", "4"},
        {"Select ID from Documenti where Data < #02/01/2024#", "1"},
        {"Select ID from Documenti where Data = '10/01/2024'", "1"},
        {"Select DatePart('m',Data) as M, Count(*) as N from Documenti Group By DatePart('m',Data)", "1|1;2|1;3|2"},
        {"Select ID from Documenti where Data In (#01/10/2024#, '10/02/2024') order by ID", "1;2"},
        {"Select Documenti.ID, Fornitori.DescFornitore & ' ' & Fornitori.DescFornitore2 & "
         "Clienti.DescCliente & ' ' & Clienti.DescCliente2 as Nome "
         "from (Documenti LEFT JOIN Clienti ON Documenti.Cliente = Clienti.ID) "
         "LEFT JOIN Fornitori ON Documenti.Fornitore = Fornitori.ID order by Documenti.ID",
         "1| Rossi Mario;2| bianchi ;3|Verdi Spa ;4| Àlfa  srl"},
        {"Select m.ID from Movimenti m, Documenti d where m.Documento = d.ID and d.Tipo = 9", "4"},
        {"Select Movimenti.ID, Documenti.ID from Documenti RIGHT JOIN Movimenti ON "
         "Movimenti.Documento = Documenti.ID where Movimenti.ID = 5",
         "5|Null"},
        {"Select C.ID from Clienti AS C INNER JOIN Documenti AS D ON C.ID = D.Cliente where D.Tipo = 7", "3"},
        {"Select Sum(Importo) from Movimenti where Documento=-1", "Null"},
        {"Select Count(*) from Movimenti where Documento=-1", "0"},
        {"Select Documento, Sum(Importo) from Movimenti where Documento=-1 Group By Documento", ""},
        {"Select Count(Prefisso), Count(*) from Documenti", "3|4"},
        {"Select Suffisso From Documenti where Tipo=5 Group By Suffisso", "Null;"},
        {"Select Distinct DescCliente from Clienti where ID < 3 order by DescCliente", "bianchi;Rossi"},
        {"Select ID, DescCliente as Nome from Clienti where ID=1 UNION "
         "Select ID, DescFornitore from Fornitori order by Nome",
         "1|Rossi;1|Verdi"},
        {"Select 1 as X from Clienti where ID=1 UNION ALL Select 1 from Fornitori", "1;1"},
        {"Select Count(*) from (Select 'ROSSI' as N from Fornitori UNION Select DescCliente from Clienti where ID=1)",
         "1"},
        {"Select * from (Select ID from Clienti) as x where x.ID = 2", "2"},
        {"Select ID from Documenti where ID In (Select Documento from Pagamenti) order by ID", "1;2"},
        {"Select ID from Clienti where DescCliente In (Select 'ROSSI' from Fornitori)", "1"},
        {"Select ID from Documenti d where Exists (Select * from Movimenti m where m.Documento = d.ID "
         "and m.Importo > 50) order by ID",
         "1;2"},
        {"Select Documenti.ID, IIf(IsNull((SELECT Sum(S.ImportoPagamento) FROM Pagamenti AS S WHERE "
         "S.Documento=Documenti.ID)),0,(SELECT Sum(S.ImportoPagamento) FROM Pagamenti AS S WHERE "
         "S.Documento=Documenti.ID)) AS ImportoPagato from Documenti order by Documenti.ID",
         "1|122;2|10;3|0;4|0"},
        {"Select ID from Documenti where Prefisso In ('a', 'b') order by ID", "1;2;4"},
    };
    for (const auto& [sql, rows] : cases) EXPECT_EQ(db.rows(sql), rows) << sql;
}

// DateValue(column) against a constant date is answered by a range on the column itself. Each
// condition must select the rows the same comparison selects on a value that is not a column
// (IIf(True, D, D)), and on the rows listed: Null, the last second before the day, its first second,
// a time of day, its last second, the next midnight.
TEST_F(SqlStmt, DayComparisonsOnADateColumn) {
    db.table("Giorni", {"ID:L", "D:T", "Testo:S20"}, {"D"});
    db.raw("INSERT INTO Giorni VALUES (1,NULL,'abc'),(2,'2024-03-04 23:59:59',NULL),(3,'2024-03-05',NULL),"
           "(4,'2024-03-05 10:30:00',NULL),(5,'2024-03-05 23:59:59',NULL),(6,'2024-03-06',NULL)");
    db.query("qrGiorni", "Select ID, D from Giorni");
    const std::pair<const char*, const char*> cases[] = {
        {"DateValue(D) >= DateValue('05/03/2024')", "3;4;5;6"},
        {"DateValue(D) > DateValue('05/03/2024')", "6"},
        {"DateValue(D) <= DateValue('05/03/2024')", "2;3;4;5"},
        {"DateValue(D) < DateValue('05/03/2024')", "2"},
        {"DateValue(D) = DateValue('05/03/2024')", "3;4;5"},
        {"DateValue(D) <> DateValue('05/03/2024')", "2;6"},
        {"#03/05/2024# < DateValue(D)", "6"},
        {"DateValue('05/03/2024') >= DateValue(D)", "2;3;4;5"},
        {"DateValue(D) >= #03/05/2024 10:00#", "6"},
        {"DateValue(D) > #03/05/2024 10:00#", "6"},
        {"DateValue(D) <= #03/05/2024 10:00#", "2;3;4;5"},
        {"DateValue(D) < #03/05/2024 10:00#", "2;3;4;5"},
        {"DateValue(D) = #03/05/2024 10:00#", ""},
        {"DateValue(D) <> #03/05/2024 10:00#", "2;3;4;5;6"},
        {"DateValue(D) Between #03/05/2024# And '06/03/2024'", "3;4;5;6"},
        {"DateValue(D) Not Between #03/05/2024# And #03/05/2024#", "2;6"},
        {"DateValue(D) <= #12/31/9999#", "2;3;4;5;6"},
        {"DateValue(D) > #12/31/9999 12:00#", ""},
        {"DateValue(D) >= Null", ""},
        {"Not DateValue(D) >= DateValue('05/03/2024')", "2"},
        {"DateValue(D) >= 45356", "3;4;5;6"},
    };
    for (const auto& [condition, ids] : cases) {
        SCOPED_TRACE(condition);
        std::string oracle = condition;
        oracle.replace(oracle.find("DateValue(D)"), 12, "DateValue(IIf(True, D, D))");
        EXPECT_EQ(db.rows(std::string("Select ID from Giorni where ") + condition + " order by ID"), ids);
        EXPECT_EQ(db.rows(std::string("Select ID from qrGiorni where ") + condition + " order by ID"), ids);
        EXPECT_EQ(db.rows("Select ID from Giorni where " + oracle + " order by ID"), ids);
    }
    // The column is compared as it is, so its index serves the range.
    const std::string sql = db.run("Select ID from qrGiorni where DateValue(D) Between #03/05/2024# And #03/06/2024#").t.sql;
    sqlite3_stmt* plan = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(db.db(), ("EXPLAIN QUERY PLAN " + sql).c_str(), -1, &plan, nullptr), SQLITE_OK);
    ASSERT_EQ(sqlite3_step(plan), SQLITE_ROW);
    EXPECT_NE(std::string(reinterpret_cast<const char*>(sqlite3_column_text(plan, 3))).find("USING INDEX Giorni_D (D>? AND D<?)"),
              std::string::npos) << sqlite3_column_text(plan, 3);
    sqlite3_finalize(plan);
    // A constant that is not a date, and a text column, keep their errors.
    EXPECT_EQ(db.error("Select ID from Giorni where DateValue(D) >= 'ieri'"), 3464);
    EXPECT_EQ(db.error("Select ID from Giorni where DateValue(Testo) >= #03/05/2024#"), 13);
}

TEST_F(SqlStmt, ColumnNamesAndTypes) {
    auto r = db.run("Select ID, ID*2, DescCliente as Nome, Sconto1+1, 'a' & 1, Sconto1 > 1 from Clienti where ID=1");
    auto types = [](const sqltest::Result& res) {
        std::vector<FieldType> out;
        for (const auto& c : res.t.columns) out.push_back(c.type);
        return out;
    };
    EXPECT_EQ(r.names(), "ID,Expr1000,Nome,Expr1001,Expr1002,Expr1003");
    EXPECT_EQ(types(r), (std::vector{FieldType::Long, FieldType::Long, FieldType::Text, FieldType::Double,
                                     FieldType::Text, FieldType::Boolean}));
    EXPECT_EQ(r.t.columns[2].size, 50);
    EXPECT_EQ(r.text(), "1|2|Rossi|11|a1|True");

    auto j = db.run("Select * from Movimenti LEFT JOIN Documenti ON Movimenti.Documento = Documenti.ID where Movimenti.ID=1");
    EXPECT_EQ(j.t.columns[0].name, "Movimenti.ID");
    EXPECT_EQ(j.t.columns[1].name, "Documento");
    EXPECT_EQ(j.t.columns[5].name, "Documenti.ID");

    auto a = db.run("Select Sum(ImportoTotale) as S, Sum(Numero) as N, Count(*) as C, Max(Data) as D, "
                    "DateValue('01/01/2024') as V, Avg(Numero) from Documenti");
    EXPECT_EQ(types(a), (std::vector{FieldType::Double, FieldType::Long, FieldType::Long, FieldType::Date,
                                     FieldType::Date, FieldType::Double}));
    EXPECT_EQ(a.t.columns[5].name, "Expr1000");
    EXPECT_EQ(a.text(), "282|10|4|d:2024-03-05 10:30:00|d:2024-01-01|2.5");
}

TEST_F(SqlStmt, TopWithTies) {
    db.raw("INSERT INTO Movimenti VALUES (6,2,'Sei',60,2)");
    EXPECT_EQ(db.rows("Select Top 2 ID from Movimenti order by Importo desc, ID"), "1;2");
    auto r = db.run("Select Top 2 ID, Importo from Movimenti order by Importo desc");
    EXPECT_EQ(r.rows.size(), 3u);  // 100, then 60 and 60 tied with the 2nd
    EXPECT_EQ(r.names(), "ID,Importo");
    EXPECT_EQ(db.rows("Select Top 1 * from Pagamenti order by ID desc"), "3|2|2|10|d:2024-02-20");
    EXPECT_EQ(db.rows("Select Top 50 Percent ID from Movimenti order by ID"), "1;2;3");
}

TEST_F(SqlStmt, HavingOnGroupedColumnsMovesToWhere) {
    const char* q = "SELECT Documenti.ID, Sum(Round([Importo],2)) AS Imponibile1, "
                    "Sum(Round([Importo]/100*[AliquotaIva],2)) AS Imposta1 "
                    "FROM (Movimenti LEFT JOIN Documenti ON Movimenti.Documento = Documenti.ID) "
                    "LEFT JOIN CodiciIva ON Movimenti.Iva = CodiciIva.ID "
                    "GROUP BY Documenti.ID HAVING (((Documenti.ID)=2))";
    auto r = db.run(q);
    EXPECT_EQ(r.text(), "2|100|10");
    EXPECT_NE(r.t.sql.find(" WHERE "), std::string::npos) << r.t.sql;
    EXPECT_EQ(r.t.sql.find(" HAVING "), std::string::npos) << r.t.sql;
    // an aggregate condition stays in HAVING
    auto h = db.run("SELECT Documento, Sum(Importo) as S FROM Movimenti GROUP BY Documento HAVING Sum(Importo)>60");
    EXPECT_EQ(h.text(), "1|100;2|100");
    EXPECT_NE(h.t.sql.find(" HAVING "), std::string::npos);
    // a query that neither groups nor aggregates: HAVING filters its rows like WHERE
    for (const char* filtro : {"Select ID from Documenti HAVING ID>2 Order By ID",
                               "Select ID from Documenti Where ID>1 HAVING (ID<>2) Order By ID"}) {
        auto f = db.run(filtro);
        EXPECT_EQ(f.text(), "3;4") << filtro;
        EXPECT_EQ(f.t.sql.find(" HAVING "), std::string::npos) << f.t.sql;
    }
}

TEST_F(SqlStmt, DeleteMultiTable) {
    db.run("Delete Movimenti.* from Movimenti LEFT JOIN Documenti ON Movimenti.Documento = Documenti.ID "
           "WHERE (((Documenti.Pagato)=True)) And DateValue(Documenti.Data)<=DateValue('31/12/2024')");
    EXPECT_EQ(db.rows("Select ID from Movimenti order by ID"), "2;3;4;5");
    db.run("Delete PrimaNota.* from PrimaNota LEFT JOIN Pagamenti ON PrimaNota.Pagamento = Pagamenti.ID "
           "WHERE IsNull(Pagamenti.ID) AND PrimaNota.Pagamento<>0");
    EXPECT_EQ(db.rows("Select ID from PrimaNota order by ID"), "1;2");
    db.run("Delete * from PrimaNota");
    EXPECT_EQ(db.rows("Select Count(*) from PrimaNota"), "0");
    db.run("Delete Documenti.* from Documenti Where Pagato=False And DateValue(Documenti.Data)<=DateValue('01/03/2024')");
    EXPECT_EQ(db.rows("Select ID from Documenti order by ID"), "1;4");
}

TEST_F(SqlStmt, InsertAndUpdateConvert) {
    db.run("Insert Into PrimaNota (ID,Data,Descrizione,Importo,Tipo,Pagamento) VALUES "
           "(10,'31/12/2024','Saldo esercizio precedente',12.5,0,0)");
    EXPECT_EQ(db.rows("Select Data, Importo from PrimaNota where ID=10"), "d:2024-12-31|12.5");
    db.run("Insert into [Note] (ID,Descrizione,Predefinita) Values (1,'x',1)");
    EXPECT_EQ(db.rows("Select Predefinita from [Note] where Predefinita=True"), "True");
    db.run("Update Documenti set Data='01/04/2024', Numero='12' where ID=3");
    EXPECT_EQ(db.rows("Select Data, Numero from Documenti where ID=3"), "d:2024-04-01|12");
    db.run("UPDATE Documenti SET [Prefisso]=0 WHERE IsNull([Prefisso])");
    EXPECT_EQ(db.rows("Select Count(*) from Documenti where Prefisso='0'"), "1");
    EXPECT_EQ(db.error("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (3,'"
                       "1234567890123456789012345678901',4)"),
              3163);
    EXPECT_EQ(db.error("Update CodiciIva set DescIva='1234567890123456789012345678901' where ID=1"), 3163);
    EXPECT_EQ(db.error("Insert Into Documenti (ID, Numero) VALUES (9, 3000000000)"), 6);
    EXPECT_EQ(db.error("Insert Into Documenti (ID, Numero) VALUES (9)"), 3346);
    EXPECT_EQ(db.error("Insert Into Documenti (ID, Nope) VALUES (9, 1)"), 3127);
    db.run("Insert Into CodiciIva Select ID+10, DescIva, AliquotaIva from CodiciIva");
    EXPECT_EQ(db.rows("Select Count(*) from CodiciIva"), "4");
    db.run("Update PrimaNota set Importo=Importo*2, Descrizione=Descrizione & '!' where Pagamento=0");
    EXPECT_EQ(db.rows("Select Importo, Descrizione from PrimaNota where ID=1"), "10|Saldo!");
    db.run("Update Documenti LEFT JOIN Clienti ON Documenti.Cliente = Clienti.ID set Documenti.ImportoTotale = "
           "Clienti.Sconto1 where Clienti.DescCliente='Rossi'");
    EXPECT_EQ(db.rows("Select ImportoTotale from Documenti where ID=1"), "10");
}

TEST_F(SqlStmt, SavedQueriesAndUpdatability) {
    db.query("qrClienti", "SELECT Clienti.*, Clienti.DescCliente & ' ' & Clienti.DescCliente2 AS Denominazione, "
                          "CodiciIva.DescIva FROM Clienti LEFT JOIN CodiciIva ON Clienti.Sconto1 = CodiciIva.ID");
    EXPECT_EQ(db.rows("Select ID from qrClienti where Denominazione Like '*àlfa*'"), "3");
    auto r = db.run("Select * from qrClienti where ID=2");
    EXPECT_EQ(r.t.baseTable, "Clienti");
    EXPECT_TRUE(r.t.hasRowid);
    EXPECT_EQ(r.names(), "ID,DescCliente,DescCliente2,Sconto1,Note,Denominazione,DescIva");
    auto s = db.run("Select qrClienti.* from qrClienti where ID<0");
    EXPECT_EQ(s.t.columns.size(), 7u);
    EXPECT_TRUE(s.t.hasRowid);
    EXPECT_EQ(db.rows("Select Documenti.ID, qrClienti.Denominazione from Documenti LEFT JOIN qrClienti ON "
                      "Documenti.Cliente = qrClienti.ID where Documenti.ID=1"),
              "1|Rossi Mario");
    // an aggregate query is not writable
    auto a = db.query("qrTot", "Select Documento, Sum(Importo) as Tot from Movimenti group by Documento");
    EXPECT_EQ(a.baseTable, "");
    EXPECT_EQ(db.rows("Select Tot from qrTot where Documento=2"), "100");
    db.run("Delete from qrClienti where ID=3");
    EXPECT_EQ(db.rows("Select Count(*) from Clienti"), "2");
}

TEST_F(SqlStmt, SyntaxAndNameErrors) {
    const std::pair<const char*, int> cases[] = {
        {"Select Foo(1) from Clienti", 3085},
        {"Insert Into Clienti VALUES", 3134},
        {"Update Clienti Sconto1=0", 3144},
        {"Select * from Clienti where (ID=1", 3075},
        {"Select * from Clienti where ID=#99/99/2024#", 3075},
        {"Select * from Clienti where DescCliente='abc", 3075},
        {"Select * from", 3131},
        {"Select ID from Clienti, Documenti", 3079},
        {"Select Sum(ID) from Clienti where Sum(ID)>1", 3096},
        {"Select ID from Clienti UNION Select ID, DescCliente from Clienti", 3307},
        {"Select * from Clienti; Select * from Clienti", 3142},
    };
    for (const auto& [text, error] : cases) EXPECT_EQ(db.error(text), error) << text;
    const auto [number, text] = jetErrorOf([&] { db.run("Select A, B, A, Clienti.C from Clienti"); });
    EXPECT_EQ(number, 3061);
    EXPECT_NE(text.find("Previsto 3"), std::string::npos) << text;
}

TEST_F(SqlStmt, Ddl) {
    auto t = db.translator().translate(
        "CREATE TABLE Prova (ID COUNTER CONSTRAINT pk PRIMARY KEY, Nome TEXT(40) NOT NULL, Memo1 MEMO, "
        "Importo CURRENCY, Quando DATETIME, Fatto YESNO, N SHORT, B BYTE, S SINGLE, D DOUBLE, L LONG)");
    ASSERT_EQ(t.kind, StatementKind::Ddl);
    ASSERT_TRUE(t.ddl);
    EXPECT_EQ(t.ddl->op, store::sql::DdlCommand::Op::CreateTable);
    ASSERT_EQ(t.ddl->fields.size(), 11u);
    EXPECT_TRUE(t.ddl->fields[0].counter && t.ddl->fields[0].primaryKey && t.ddl->fields[1].notNull);
    EXPECT_EQ(t.ddl->fields[1].size, 40);
    const FieldType types[] = {FieldType::Memo,    FieldType::Currency, FieldType::Date,  FieldType::Boolean,
                               FieldType::Integer, FieldType::Byte,     FieldType::Single};
    for (std::size_t i = 0; i < std::size(types); ++i) EXPECT_EQ(t.ddl->fields[i + 2].type, types[i]) << i + 2;
    using Op = store::sql::DdlCommand::Op;
    EXPECT_EQ(db.translator().translate("DROP TABLE Prova").ddl->op, Op::DropTable);
    auto drop = db.translator().translate("DROP INDEX ixNome ON Prova");
    EXPECT_EQ(drop.ddl->op, Op::DropIndex);
    EXPECT_EQ(drop.ddl->index, "ixNome");
    auto ix = db.translator().translate("CREATE UNIQUE INDEX ixNome ON Prova (Nome DESC, ID) WITH PRIMARY");
    EXPECT_EQ(ix.ddl->op, Op::CreateIndex);
    EXPECT_TRUE(ix.ddl->unique && ix.ddl->primary);
    EXPECT_EQ(ix.ddl->indexFields.size(), 2u);
    EXPECT_EQ(db.error("CREATE TABLE X (ID LONG, ID TEXT)"), 3191);
    EXPECT_EQ(db.error("CREATE TABLE X (ID NOTYPE)"), 3290);
    EXPECT_EQ(db.error("ALTER TABLE X FROB"), 3293);
    EXPECT_EQ(db.error("DROP VIEW X"), 3295);
}

TEST_F(SqlStmt, CacheReusesTranslationWithNewLiterals) {
    auto& tr = db.translator();
    std::size_t before = tr.cacheSize();
    EXPECT_EQ(db.rows("Select * from Clienti where ID=1 and DescCliente='Rossi'").substr(0, 7), "1|Rossi");
    std::size_t after = tr.cacheSize();
    EXPECT_EQ(after, before + 1);
    EXPECT_EQ(db.rows("Select * from Clienti where ID=2 and DescCliente='bianchi'").substr(0, 9), "2|bianchi");
    EXPECT_EQ(tr.cacheSize(), after);
    // a literal of another kind is another statement
    EXPECT_EQ(db.rows("Select ID from Clienti where ID=1.0"), "1");
    EXPECT_EQ(tr.cacheSize(), after + 1);
    auto t1 = tr.translate("Select * from Documenti where Data=#01/10/2024#");
    auto t2 = tr.translate("Select * from Documenti where Data=#02/10/2024#");
    EXPECT_EQ(t1.sql, t2.sql);
    ASSERT_EQ(t2.params.size(), 1u);
    EXPECT_EQ(t2.params[0].text(), "2024-02-10");
    // an invalid date in a cached shape is still refused
    EXPECT_EQ(db.error("Select * from Documenti where Data=#13/45/2024#"), 3075);
    // a schema change drops the cache
    db.table("Nuova", {"ID:L"});
    EXPECT_EQ(db.rows("Select * from Nuova"), "");
    EXPECT_EQ(tr.cacheSize(), 1u);
}

}  // namespace
