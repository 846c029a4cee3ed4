// The saved queries on a small archive written by hand: a fattura paid in part and beyond one
// instalment, a supplier's credit note paid to the cent through two amounts that do not add up
// exactly in binary, a credit note whose customer was deleted, an expense, due dates with no
// document, payments with no document. Every expected value was worked out on paper.
#include <gtest/gtest.h>

#include <tuple>

#include "store/clock.h"

#include "support/archivio_modello.h"

namespace {

using namespace modeltest;

class QueryArchivio : public ::testing::Test {
protected:
    void SetUp() override {
        db = store::Workspace::Default().OpenMemory();
        store::model::CreaArchivio(*db);
        tabella("CodiciIva", {"ID", "DescIva", "AliquotaIva"}, {{L(1), T("Iva 22%"), D(22)}});
        tabella("CondizioniPagamento", {"ID", "DescPagamento", "Rate"}, {{L(1), T("30 gg"), L(1)}});
        tabella("Clienti", {"ID", "DescCliente", "DescCliente2", "Indirizzo", "Citta", "mail", "IvaApplicata",
                            "CondizioniPagamento"},
                {{L(1), T("Rossi"), T("Mario"), T("Via Po 1"), T("Torino"), T("rossi@posta.it"), L(1), L(1)}});
        tabella("Fornitori", {"ID", "DescFornitore", "DescFornitore2", "Indirizzo", "web"},
                {{L(1), T("Bianchi"), T("Spa"), T("Corso Francia 2"), T("bianchi.it")}});
        tabella("Servizi", {"ID", "DescServizio", "CodiceIva", "CostoUnitario", "Sconto1"},
                {{L(1), T("Assistenza"), L(1), D(40), D(5)}});
        tabella("TipiSpesa", {"ID", "DescTipoSpesa"}, {{L(1), T("Cancelleria")}});
        tabella("ClassificazioniSpese", {"ID", "DescClassificazione"}, {{L(1), T("Generali")}});
        const Value N = Value::Null(), F = B(false);
        tabella("Documenti", {"ID", "Tipo", "Numero", "Prefisso", "Suffisso", "Data", "Cliente", "Fornitore",
                              "CondizioniPagamento", "RitenutaAcconto", "Imponibile", "TotIva", "TotRitenutaAcconto",
                              "ImportoTotale", "EscludiEstrattoConto", "CertAcconto"},
                {{L(1), L(5), L(12), T("A"), T("/24"), Giorno(5, 3, 2024), L(1), L(0), L(1), D(0), D(1000), D(220),
                  D(0), D(1220), F, F},
                 {L(2), L(9), L(3), N, N, Giorno(10, 4, 2024), L(0), L(1), L(0), D(0), D(0), D(0), D(0), D(100.30),
                  B(true), F},
                 {L(3), L(6), L(1), N, N, Giorno(15, 4, 2024), L(99), L(0), L(0), D(0), D(0), D(0), D(0), D(61), F, F},
                 {L(4), L(5), L(13), T("A"), T("/24"), Giorno(20, 4, 2024), L(1), L(0), L(0), D(20), D(500), D(0),
                  D(100), D(510), F, B(true)},
                 {L(5), L(7), L(1), N, N, Giorno(2, 5, 2024), L(1), L(0), L(0), D(0), D(0), D(0), D(0), D(999), F, F}});
        tabella("Movimenti", {"ID", "Documento", "Servizio", "DescMovimento", "Quantita", "PrezzoUnitario", "Importo", "Iva"},
                {{L(1), L(1), L(1), T("Consulenza"), D(2), D(500), D(1000), L(1)},
                 {L(2), L(77), L(0), T("Riga orfana"), D(0), D(0), D(0), L(0)}});
        tabella("SpeseDocumenti", {"ID", "Documento", "DescSpesa", "Imponibile", "Iva"},
                {{L(1), L(1), T("Trasporto"), D(12.50), L(1)}, {L(2), L(1), T("Bolli"), D(2), L(0)}});
        tabella("Spese", {"ID", "Numero", "Data", "Fornitore", "TipoSpesa", "Classificazione", "CondizioniPagamento",
                          "RitenutaAcconto", "Imponibile", "TotIva", "ImportoSpesa"},
                {{L(1), T("7"), Giorno(2, 2, 2024), L(1), L(1), L(1), L(1), D(20), D(100), D(22), D(122)},
                 {L(2), T("X1"), Giorno(3, 2, 2024), L(5), L(0), L(0), L(0), D(0), D(0), D(0), D(50)}});
        auto scadenza = [](long id, long documento, long spesa, long cliente, long fornitore, double importo, bool pagata) {
            return std::vector<Value>{L(id), L(documento), L(spesa), L(cliente), L(fornitore), T("Rata"),
                                      Giorno(30, 4, 2024), D(importo), L(1), L(2), B(pagata)};
        };
        tabella("Scadenze", {"ID", "Documento", "Spesa", "Cliente", "Fornitore", "DescScadenza", "DataScadenza",
                             "ImportoScadenza", "Rata", "Rate", "Pagata"},
                {//        id doc spesa cli forn importo pagata
                 scadenza(1, 1, 0, 1, 0, 610, true),
                 scadenza(2, 1, 0, 1, 0, 610, false),
                 scadenza(3, 0, 1, 0, 1, 122, false),
                 scadenza(4, 0, 0, 1, 0, 300, false),   // a customer's due date with no document
                 scadenza(5, 0, 0, 0, 1, 80, false),    // a supplier's due date with no document
                 scadenza(6, 2, 0, 0, 1, 100.30, false)});
        auto pagamento = [](long id, long documento, long spesa, long scadenza, long cliente, long fornitore, double importo) {
            return std::vector<Value>{L(id), L(documento), L(spesa), L(scadenza), L(cliente), L(fornitore),
                                      T("Bonifico"), Giorno(10, 5, 2024), D(importo)};
        };
        tabella("Pagamenti", {"ID", "Documento", "Spesa", "Scadenza", "Cliente", "Fornitore", "DescPagamento",
                              "DataPagamento", "ImportoPagamento"},
                {//         id doc spesa scad cli forn importo
                 pagamento(1, 1, 0, 1, 1, 0, 400),
                 pagamento(2, 1, 0, 1, 1, 0, 210.10),     // instalment 1 now overpaid by 0,10
                 pagamento(3, 1, 0, 2, 1, 0, 100),
                 pagamento(4, 0, 1, 3, 0, 1, 50),
                 pagamento(5, 3, 0, 0, 99, 0, 61),        // customer deleted
                 pagamento(6, 0, 0, 4, 1, 0, 300),
                 pagamento(7, 0, 0, 0, 0, 1, 25),
                 pagamento(8, 2, 0, 0, 0, 1, 100.29),     // 100,29 + 0,01 is not 100,30 in binary
                 pagamento(9, 2, 0, 0, 0, 1, 0.01)});
    }

    void tabella(const char* nome, const std::vector<std::string>& colonne, const std::vector<std::vector<Value>>& righe) {
        store::model::InserisciRighe(*db, nome, colonne, righe);
    }

    double numero(const std::string& sql, const std::string& nome) {
        Value v = campo(*db, sql, nome);
        EXPECT_FALSE(v.isNull()) << nome << " of " << sql;
        return v.number();
    }

    store::DatabasePtr db;
};

struct Numero {
    const char* sql;
    const char* colonna;
    double atteso;
};

struct Saldo {
    const char* query;
    const char* colonnaTotale;
    long id;
    double totale, pagato, daPagare;
};

TEST_F(QueryArchivio, SettlementOfDocumentsExpensesAndInstalments) {
    const Saldo casi[] = {
        {"qrDocumentiIncassi", "ImportoTotale", 1, 1220, 710.10, 509.90},    // 400 + 210,10 + 100
        {"qrDocumentiIncassi", "ImportoTotale", 2, 100.30, 100.30, 0},       // rounded, not -1,4e-14
        {"qrDocumentiIncassi", "ImportoTotale", 4, 510, 0, 510},             // no payments: 0, never Null
        {"qrDocumentiPagamenti", "ImportoTotale", 3, 61, 61, 0},
        {"qrSpesePagamenti", "ImportoSpesa", 1, 122, 50, 72},
        {"qrSpesePagamenti", "ImportoSpesa", 2, 50, 0, 50},
        {"qrScadenzePagamenti", "ImportoScadenza", 1, 610, 610.10, -0.10},
        {"qrScadenzePagamenti", "ImportoScadenza", 2, 610, 100, 510},
        {"qrScadenzePagamenti", "ImportoScadenza", 4, 300, 300, 0},
        {"qrScadenzePagamenti", "ImportoScadenza", 6, 100.30, 0, 100.30},
    };
    for (const Saldo& c : casi) {
        const std::string sql = std::string("Select * from ") + c.query + " where ID=" + std::to_string(c.id);
        SCOPED_TRACE(sql);
        EXPECT_DOUBLE_EQ(numero(sql, c.colonnaTotale), c.totale);
        EXPECT_NEAR(numero(sql, "ImportoPagato"), c.pagato, 1e-9);
        EXPECT_DOUBLE_EQ(numero(sql, "DaPagare"), c.daPagare);
    }
}

TEST_F(QueryArchivio, FiltersTheProgramPutsOnSettlement) {
    struct Caso {
        const char* sql;
        std::vector<long> attesi;
    };
    const Caso casi[] = {
        {"Select * from qrScadenzePagamenti where Documento=1 and DaPagare<>0 order by ID", {1, 2}},
        {"Select * from qrScadenzePagamenti where DaPagare<>0 and AgenteDestinatario=0 order by ID", {1, 2, 3, 5, 6}},
        {"Select * from qrDocumentiIncassi where DaPagare<>0 order by ID", {1, 4}},
        {"Select * from qrDocumentiPagamenti order by ID", {3}},   // a quote is never settled
        {"Select * from qrDocumentiScadenze where Rimanente<>0 order by ID", {3, 4, 5}},
        {"Select * from qrScadenzeAttive order by ID", {1, 2, 4, 6}},
        {"Select * from qrIncassi order by ID", {1, 2, 3, 6, 8, 9}},
        {"Select * from qrPagamenti order by ID", {4, 5, 7}},
        {"Select * from qrCertificazioniAcconto", {4}},
    };
    for (const Caso& c : casi) EXPECT_EQ(ids(*db, c.sql), c.attesi) << c.sql;
}

TEST_F(QueryArchivio, DescriptionsAndNamesAreNeverNull) {
    const Testo casi[] = {
        {"Select * from qrDocumenti where ID=1", "DescNum", "A12/24"},
        {"Select * from qrDocumenti where ID=1", "DescEstrattoConto", "Incluso"},
        {"Select * from qrDocumenti where ID=2", "Denominazione", " "},
        {"Select * from qrDocumentiDesc where ID=1", "DescDocumento", "Fattura N.A12/24 del 05/03/2024"},
        {"Select * from qrDocumentiDesc where ID=2", "DescDocumento", "Nota di credito ricevuta N.3 del 10/04/2024"},
        {"Select * from qrDocumentiPagamenti where ID=3", "DescDocumento", "Nota di credito N.1 del 15/04/2024"},
        {"Select * from qrDocumentiScadenze where ID=5", "DescDocumento", "Preventivo N.1 del 02/05/2024"},
        {"Select * from qrSpese where ID=1", "DescSpesa", "Spesa N.7 del 02/02/2024"},
        {"Select * from qrScadenzeAttive where ID=2", "Stato", "Da incassare"},
        {"Select * from qrScadenzeAttive where ID=4", "DescDocumento", ""},
        {"Select * from qrScadenzeAttive where ID=4", "Destinatario", "Rossi Mario"},
        {"Select * from qrScadenzePassive where ID=5", "Stato", "Da pagare"},
        {"Select * from qrPagamenti where ID=5", "Destinatario", " "},
        {"Select * from qrPagamenti where ID=7", "DescDocumento", ""},
        {"Select * from qrCertificazioniAcconto where ID=4", "DescCertAcconto", "Ricevuta"},
        {"Select * from qrMovimentiEx where ID=2", "Destinatario", " "},
        {"Select * from qrClienti where ID=1", "Mail", "rossi@posta.it"},
        {"Select * from qrFornitori where ID=1", "Web", "bianchi.it"},
    };
    for (const Testo& c : casi) EXPECT_EQ(testo(campo(*db, c.sql, c.colonna)), c.atteso) << c.sql << " -> " << c.colonna;
}

TEST_F(QueryArchivio, DerivedAmounts) {
    const Numero casi[] = {
        {"Select * from qrDocumentiScadenze where ID=1", "Rimanente", 0},
        {"Select * from qrDocumentiScadenze where ID=3", "Rimanente", 61},
        {"Select * from qrSpeseScadenze where ID=2", "Rimanente", 50},
        {"Select * from qrSpese where ID=1", "TotRitenutaAcconto", 20},       // 100 x 20 / 100
        {"Select * from qrSpeseDocumenti where ID=1", "Imposta", 2.75},       // 12,50 x 22%
        {"Select * from qrSpeseDocumenti where ID=2", "Imposta", 0},          // no VAT code
        {"Select * from qrPagamenti where ID=4", "ImportoTotale", 122},
        {"Select * from qrIncPN where Cliente=1", "TotaleDaPagare", 1019.90}, // 509,90 + 510
        {"Select * from qrIncPN where Cliente=0", "TotaleDaPagare", 0},
        {"Select * from qrPagPN where Cliente=99", "TotalePagato", 61},
    };
    for (const Numero& c : casi) EXPECT_NEAR(numero(c.sql, c.colonna), c.atteso, 1e-9) << c.sql << " -> " << c.colonna;
    EXPECT_TRUE(campo(*db, "Select * from qrScadenzeAttive where ID=4", "ImportoTotale").isNull());
    EXPECT_TRUE(campo(*db, "Select * from qrScadenzePagamenti where ID=3", "Tipo").isNull());
    EXPECT_TRUE(db->OpenRecordset("Select * from qrPagPN where Cliente=1")->Eof()) << "a quote is never settled";
}

// The journal's balances by customer and by supplier, as the program sends them.
TEST_F(QueryArchivio, StatementsOfTheBooksRunOnTheQueries) {
    riga(*db, "Documenti", {{"ID", L(6)}, {"Tipo", L(6)}, {"Numero", L(2)}, {"Data", Giorno(6, 5, 2024)},
                            {"Cliente", L(1)}, {"ImportoTotale", D(30)}});
    auto clienti = db->OpenRecordset(
        "SELECT Clienti.ID AS Cliente, Sum([qrIncPN].[Totale]-[qrPagPN].[Totale]) AS Totale, "
        "Sum([qrIncPN].[TotalePagato]-[qrPagPN].[TotalePagato]) AS TotalePagato, "
        "Sum([qrIncPN].[TotaleDaPagare]-[qrPagPN].[TotaleDaPagare]) AS TotaleDaPagare, "
        "[DescCliente] & ' ' & [DescCliente2] AS Descrizione FROM (Clienti LEFT JOIN qrIncPN ON Clienti.ID = "
        "qrIncPN.Cliente) LEFT JOIN qrPagPN ON Clienti.ID = qrPagPN.Cliente GROUP BY Clienti.ID, [DescCliente] & "
        "' ' & [DescCliente2] HAVING (((Sum([qrIncPN].[Totale]-[qrPagPN].[Totale]))<>0)) OR "
        "(((Sum([qrIncPN].[TotalePagato]-[qrPagPN].[TotalePagato]))<>0)) OR "
        "(((Sum([qrIncPN].[TotaleDaPagare]-[qrPagPN].[TotaleDaPagare]))<>0)) ORDER BY [DescCliente] & ' ' & "
        "[DescCliente2]");
    ASSERT_FALSE(clienti->Eof());
    EXPECT_EQ(testo(clienti->get("Descrizione")), "Rossi Mario");
    EXPECT_NEAR(clienti->get("Totale").number(), 1700, 1e-9);          // 1730 - 30
    EXPECT_NEAR(clienti->get("TotalePagato").number(), 710.10, 1e-9);  // 710,10 - 0
    EXPECT_NEAR(clienti->get("TotaleDaPagare").number(), 989.90, 1e-9);
    clienti->MoveNext();
    EXPECT_TRUE(clienti->Eof());

    auto fornitori = db->OpenRecordset(
        "SELECT [DescFornitore] & ' ' & [DescFornitore2] AS Descrizione, Sum(qrSpesePagamenti.ImportoSpesa) AS "
        "Totale, Sum(qrSpesePagamenti.ImportoPagato) AS TotalePagato, Sum(qrSpesePagamenti.DaPagare) AS "
        "TotaleDaPagare FROM qrSpesePagamenti GROUP BY qrSpesePagamenti.Fornitore, [DescFornitore] & ' ' & "
        "[DescFornitore2] ORDER BY [DescFornitore] & ' ' & [DescFornitore2]");
    const std::tuple<const char*, double, double, double> righe[] = {{" ", 50, 0, 50}, {"Bianchi Spa", 122, 50, 72}};
    for (const auto& [nome, totale, pagato, daPagare] : righe) {
        ASSERT_FALSE(fornitori->Eof());
        EXPECT_EQ(testo(fornitori->get("Descrizione")), nome);
        EXPECT_DOUBLE_EQ(fornitori->get("Totale").number(), totale);
        EXPECT_DOUBLE_EQ(fornitori->get("TotalePagato").number(), pagato);
        EXPECT_DOUBLE_EQ(fornitori->get("TotaleDaPagare").number(), daPagare);
        fornitori->MoveNext();
    }
}

}  // namespace
