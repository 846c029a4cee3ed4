// Visits turned into lines of a fattura, worked by hand: the work at the hourly rate, the call charge
// and the mileage for a visit with kilometres, the period and the flag choosing the visits, and a
// visit already charged by an earlier fattura of the period; the rates as typed.
#include <gtest/gtest.h>

#include "core/impostazioni.h"
#include "sales/visite.h"
#include "support/archivio_logica.h"

namespace {

class Visite : public prova::ArchivioProva {
protected:
    void SetUp() override {
        ArchivioProva::SetUp();
        for (const auto& [k, t] : std::initializer_list<std::pair<const char*, const char*>>{
                 {"s204", "Intervento del"}, {"s205", "dalle ore"}, {"s206", "alle ore"}, {"s207", "durata"},
                 {"s208", "minuti -"}, {"s209", "Manodopera"}, {"s210", "Diritto fisso di chiamata"},
                 {"s211", "Rimborso chilometrico, km"}})
            core::ScriviLingua("Stringhe", k, t);
        CodiceIva(1, 22);
        Esegui("Insert Into Servizi (ID,DescServizio) VALUES (1,'Assistenza')");
        Esegui("Insert Into Servizi (ID,DescServizio) VALUES (2,'Installazione')");
        // ID, customer, service, date, times, km, to charge. March 2026 for customer 1: three to charge,
        // one not to charge; one in April; one of another customer.
        for (const char* v : {"1,1,1,'05/03/2026','9.00','10.30',0,True", "2,1,2,'12/03/2026','14.00','14.45',10,True",
                              "3,1,1,'20/03/2026','8.30','9.10',12.5,True", "4,1,1,'31/03/2026','16.00','17.00',5,False",
                              "5,1,2,'02/04/2026','10.00','11.00',0,True", "6,2,1,'10/03/2026','10.00','11.00',0,True"})
            Esegui(std::string("Insert Into Assistenze (ID,Cliente,Servizio,Data,OraInizio,OraFine,Km,Fattura) VALUES (") +
                   v + ")");
    }

    std::vector<sales::Visita> Periodo(long cliente, const char* dal, const char* al) {
        return sales::LeggiVisite(sales::SorgenteVisitePeriodo(cliente, dal, al) + " order by Data");
    }

    std::vector<std::pair<std::string, double>> Righe(long documento) {
        std::vector<std::pair<std::string, double>> out;
        for (auto rs = db().OpenRecordset("Select * from Movimenti where Documento=" + std::to_string(documento) +
                                          " order by ID");
             !rs->Eof(); rs->MoveNext()) {
            EXPECT_EQ(store::CDbl(rs->get("Quantita")), 1);
            EXPECT_EQ(store::CDbl(rs->get("PrezzoUnitario")), store::CDbl(rs->get("Importo")));
            EXPECT_EQ(store::CLng(rs->get("Iva")), 1);
            out.emplace_back(store::ConcatText(rs->get("DescMovimento")), store::CDbl(rs->get("Importo")));
        }
        return out;
    }
};

// March at 15 an hour and 0,20 a km: 90 minutes give 22,50; 45 minutes and 10 km give 11,25, 10 and
// 2,00; 40 minutes and 12,5 km give 10,00, 10 and 2,50. Other rates scale the work and the mileage,
// never the call charge.
TEST_F(Visite, RigheGenerateETotali) {
    struct Caso {
        sales::Tariffe tariffe;
        std::vector<double> importi;
        double imponibile;
    };
    const Caso casi[] = {
        {{15, 0.20, 1}, {22.50, 11.25, 10, 2.00, 10.00, 10, 2.50}, 68.25},
        {{20, 0.40, 1}, {30.00, 15.00, 10, 4.00, 13.33, 10, 5.00}, 87.33},
    };
    long documento = 0;
    for (const Caso& c : casi) {
        SCOPED_TRACE(c.tariffe.costoOra);
        Documento(++documento, {.numero = documento});
        EXPECT_EQ(sales::GeneraRigheVisite(documento, Periodo(1, "01/03/2026", "31/03/2026"), c.tariffe), 7);
        std::vector<double> importi;
        for (const auto& [testo, importo] : Righe(documento)) importi.push_back(importo);
        EXPECT_EQ(importi, c.importi);
        EXPECT_NEAR(Numero("Select * from Documenti where ID=" + std::to_string(documento), "Imponibile"), c.imponibile,
                    1e-9);
    }
    const auto righe = Righe(1);
    EXPECT_EQ(righe[0].first, "Intervento del 05/03/2026 dalle ore 9.00 alle ore 10.30 durata 90 minuti - "
                              "Assistenza. Manodopera");
    EXPECT_EQ(righe[2].first, "Intervento del 12/03/2026 dalle ore 14.00 alle ore 14.45 durata 45 minuti - "
                              "Installazione. Diritto fisso di chiamata");
    EXPECT_EQ(righe[6].first, "Intervento del 20/03/2026 dalle ore 8.30 alle ore 9.10 durata 40 minuti - "
                              "Assistenza. Rimborso chilometrico, km 12,5");
    EXPECT_NEAR(Numero("Select * from Documenti where ID=1", "ImportoTotale"), 83.27, 1e-9);   // VAT 15,02

    // No visit: a fattura without lines, totals 0.
    Documento(9, {.numero = 9});
    EXPECT_EQ(sales::GeneraRigheVisite(9, Periodo(1, "01/05/2026", "31/05/2026"), {15, 0.2, 1}), 0);
    EXPECT_EQ(Numero("Select * from Documenti where ID=9", "ImportoTotale"), 0);
}

// A visit whose date lies in the period of an earlier fattura of the customer was charged there.
TEST_F(Visite, VisiteGiaFatturate) {
    Documento(1, {.numero = 4, .data = "01/04/2026"});
    Esegui("Update Documenti Set DataDal=#03/01/2026#, DataAl=#03/15/2026# where ID=1");
    Documento(2, {.numero = 5, .data = "01/04/2026", .cliente = 2});
    Esegui("Update Documenti Set DataDal=#03/01/2026#, DataAl=#03/31/2026# where ID=2");
    Documento(3, {.numero = 6, .data = "02/04/2026"});   // no period: made by hand
    struct Caso {
        const char* dal;
        const char* al;
        long escludi;
        std::vector<long> gia;
    };
    const Caso casi[] = {
        {"01/03/2026", "31/03/2026", 0, {1, 2}},
        {"16/03/2026", "30/04/2026", 0, {}},
        {"01/03/2026", "31/03/2026", 1, {}},   // the fattura itself
    };
    for (const Caso& c : casi) {
        SCOPED_TRACE(std::string(c.dal) + " " + c.al);
        std::vector<long> ids;
        const auto gia = sales::VisiteGiaFatturate(1, 5, Periodo(1, c.dal, c.al), c.escludi);
        for (const auto& g : gia) {
            ids.push_back(g.visita);
            EXPECT_EQ(g.documento, 1);
            EXPECT_EQ(g.numero, "4");
        }
        EXPECT_EQ(ids, c.gia);
    }
}

// The times typed are walked by the visit's editor; the rates typed here.
TEST_F(Visite, TariffeDigitate) {
    struct Tariffa {
        const char* testo;
        std::optional<double> valore;
    };
    const Tariffa tariffe[] = {{"0,20", 0.2},        {"0.35", 0.35},        {" 1.234,5 ", 1234.5},
                               {"", std::nullopt}, {"abc", std::nullopt}, {"-3", std::nullopt}};
    for (const Tariffa& t : tariffe) EXPECT_EQ(sales::LeggiTariffa(t.testo), t.valore) << t.testo;
}

}  // namespace
