// Settlement flags, from the saved queries and by the rule alone; the journal kept in step with the
// payments, and rebuilt from the payments of an archive that predates it.
#include "books/prima_nota_ricostruzione.h"
#include "payments/primanota.h"
#include "payments/saldo.h"
#include "support/archivio_logica.h"

namespace {

using namespace payments;

class SaldoArchivio : public prova::ArchivioProva {
protected:
    double Flag(const std::string& tabella, const std::string& campo, long id) {
        return store::CDbl(Valore("Select " + campo + " from " + tabella + " where ID=" + std::to_string(id), campo));
    }
    void Fattura(long id, double totale, long tipo = 5) { Documento(id, {.tipo = tipo, .importoTotale = totale}); }
    // The journal's rows of a condition, each as its date and the fields named, joined by '|'.
    std::vector<std::string> Giornale(const std::string& dove, const std::vector<const char*>& campi) {
        std::vector<std::string> righe;
        for (auto rs = db().OpenRecordset("Select * from PrimaNota where " + dove + " order by ID"); !rs->Eof();
             rs->MoveNext()) {
            std::string riga = store::ShortDate(store::CDate(rs->get("Data")));
            for (const char* campo : campi) riga += "|" + store::ConcatText(rs->get(campo));
            righe.push_back(riga);
        }
        return righe;
    }
};

// Paying exactly, and deleting the payment, are walked with the recording of payments.
TEST_F(SaldoArchivio, PagatoPerOgniTipo) {
    struct Caso {
        const char* nome;
        long tipo;
        double totale;
        double pagamenti;
        double pagato;
    } const casi[] = {
        {"acconto", 5, 100, 60, 0},
        {"pagato oltre il totale", 5, 100, 150, -1},
        {"fattura a zero", 5, 0, 0, -1},
        {"nota di credito ricevuta incassata in parte", 9, 50, 20, 0},
        {"preventivo mai saldato", 7, 0, 0, 0},
        {"totale negativo", 6, -10, 0, -1},
    };
    long id = 0;
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        ++id;
        Fattura(id, c.totale, c.tipo);
        if (c.pagamenti != 0) Pagamento(id, "Documento", id, c.pagamenti);
        AggiornaPagatoDocumento(id);
        EXPECT_EQ(Flag("Documenti", "Pagato", id), c.pagato);
    }
    EXPECT_NO_THROW(AggiornaPagatoDocumento(99));
}

TEST_F(SaldoArchivio, ScadenzeESpeseEDomande) {
    Fattura(1, 100);
    Esegui("Insert Into Scadenze (ID,Documento,ImportoScadenza) VALUES (1,1,50)");
    Esegui("Insert Into Spese (ID,Numero,Data,ImportoSpesa) VALUES (1,'1','10/03/2026',80)");
    EXPECT_EQ(ScadenzaSenzaPagamenti(1), Vero);
    EXPECT_EQ(SpesaLibera(1), Vero);
    EXPECT_EQ(MotivoBloccoDocumento(1), "Scadenze aperte");
    // True is -1: the registers' generation guard, "greater than zero", never stops.
    EXPECT_FALSE(DocumentoConScadenzeAperte(1) > 0);

    Pagamento(1, "Scadenza", 1, 50);
    Esegui("Update Pagamenti set Documento=1 where ID=1");
    Pagamento(2, "Spesa", 1, 79.99, 0);
    AggiornaPagataScadenza(1);
    AggiornaPagataSpesa(1);
    EXPECT_EQ(Flag("Scadenze", "Pagata", 1), -1);
    EXPECT_EQ(Flag("Spese", "Pagata", 1), 0);  // one cent still due
    EXPECT_EQ(ScadenzaSenzaPagamenti(1), Falso);
    EXPECT_EQ(MotivoBloccoDocumento(1), "Pagamenti presenti");
    EXPECT_EQ(MotivoBloccoDocumento(2), "");
    EXPECT_EQ(SpesaConPagamenti(1), Vero);
    EXPECT_EQ(SpesaLibera(1), Falso);
}

TEST_F(SaldoArchivio, EliminazioneDiUnPagamento) {
    Fattura(1, 100);
    Pagamento(1, "Documento", 1, 60);
    Pagamento(2, "Documento", 1, 40);
    auto giornale = [this](long id, long pagamento) {
        Esegui("Insert Into PrimaNota (ID,Importo,Tipo,Destinazione,Pagamento) VALUES (" + std::to_string(id) +
               ",1,0,0," + std::to_string(pagamento) + ")");
    };
    giornale(1, 1);
    giornale(2, 2);
    AggiornaPagatoDocumento(1);
    ASSERT_EQ(Flag("Documenti", "Pagato", 1), -1);

    // From the payments register the state is read before the delete: the 40 closed the document,
    // nothing is due while it exists, and the flag stays set.
    RiapriPrimaDellEliminazione({1, 0, 0}, true);
    Esegui("Delete from Pagamenti where ID=2");
    EliminaPrimaNotaDelPagamento(2);
    EXPECT_EQ(Flag("Documenti", "Pagato", 1), -1);
    EXPECT_EQ(Conta("PrimaNota"), 1);

    // The document's own register refreshes after the delete, and sweeps the journal of the rows
    // whose payment is gone; a row typed by hand (no payment) stays.
    Pagamento(2, "Documento", 1, 40);
    giornale(2, 2);
    giornale(3, 0);
    Esegui("Delete from Pagamenti where ID=2");
    AggiornaPagatoDocumento(1);
    PulisciPrimaNota();
    EXPECT_EQ(Flag("Documenti", "Pagato", 1), 0);
    EXPECT_EQ(Conta("PrimaNota", "Pagamento=2"), 0);
    EXPECT_EQ(Conta("PrimaNota"), 2);

    // Something still due while the payment exists: the instalment and the document reopen.
    Esegui("Insert Into Scadenze (ID,Documento,ImportoScadenza,Pagata) VALUES (1,1,50,True)");
    Esegui("Update Documenti set Pagato=True where ID=1");
    Pagamento(3, "Scadenza", 1, 30);
    RiapriPrimaDellEliminazione({1, 0, 1}, true);
    EXPECT_EQ(Flag("Scadenze", "Pagata", 1), 0);
    EXPECT_EQ(Flag("Documenti", "Pagato", 1), 0);
}

VocePrimaNota Voce(long pagamento, long modo, double importo, const std::string& descrizione) {
    VocePrimaNota v;
    v.data = store::DateSerial(2026, 3, 20);
    v.descrizione = descrizione;
    v.importo = importo;
    v.tipo = store::Value::Long(modo);
    v.destinazione = store::Value::Long(0);
    v.pagamento = store::Value::Long(pagamento);
    v.tipoPagamento = store::Value::Text("Bonifico");
    v.cc = "IT60X";
    return v;
}

TEST(Saldo, TipoDelGiornaleERestoNullo) {
    EXPECT_EQ(CodiceTipoPrimaNota(store::Value::Text("1")), 0);  // incasso: entrata, also as text
    EXPECT_EQ(CodiceTipoPrimaNota(store::Value()), 1);           // anything else, an absent mode too: uscita
    // The "above 0" test fails on Null as the platform's If does; without a row nothing is settled.
    EXPECT_TRUE(Saldato(true, store::Value()));
    EXPECT_FALSE(Saldato(false, store::Value()));
}

TEST_F(SaldoArchivio, GiornaleInserimentoEAggiornamento) {
    Esegui("Insert Into PrimaNota (ID,Data,Descrizione,Importo,Tipo,Destinazione,Pagamento) "
           "VALUES (4,'01/01/2026','Apertura',0,0,1,0)");
    ScriviPrimaNota(true, Voce(7, 1, 1234.5, "Incasso dell'acconto"));
    const std::vector<const char*> campi{"ID", "Descrizione", "Importo", "Tipo", "Destinazione"};
    EXPECT_EQ(Giornale("Pagamento=7", campi), std::vector<std::string>{"20/03/2026|5|Incasso dell'acconto|1234,5|0|0"});

    auto cambiata = Voce(7, 2, 99.99, "Rettifica");
    cambiata.destinazione = store::Value::Long(2);
    cambiata.data = store::DateSerial(2026, 3, 21);
    ScriviPrimaNota(false, cambiata);
    // Type and destination kept.
    EXPECT_EQ(Giornale("Pagamento=7", campi), std::vector<std::string>{"21/03/2026|5|Rettifica|99,99|0|0"});

    // A payment older than the journal: nothing changes, nothing is created.
    ScriviPrimaNota(false, Voce(9, 1, 5, "Vecchio"));
    EXPECT_EQ(Conta("PrimaNota"), 2);
}

TEST_F(SaldoArchivio, GiornaleSaldoPrecedente) {
    // ID, date, amount, type, destination: the first outside the period, the last on another destination.
    for (const char* r : {"1,'31/12/2025',1000,0,0", "2,'01/01/2026',100.006,0,0", "3,'15/02/2026',30,1,0",
                          "4,'01/03/2026',500,0,0", "5,'10/02/2026',70,0,1"})
        Esegui(std::string("Insert Into PrimaNota (ID,Data,Importo,Tipo,Destinazione,Pagamento) VALUES (") + r + ",0)");
    EXPECT_EQ(SaldoPrecedente(store::DateSerial(2026, 1, 1), 0), 0);
    // 100.006 - 30 = 70.006, shown and read back as 70,01.
    EXPECT_DOUBLE_EQ(SaldoPrecedente(store::DateSerial(2026, 3, 1), 0), 70.01);
    EXPECT_DOUBLE_EQ(SaldoPrecedente(store::DateSerial(2026, 3, 2), 0), 570.01);
    EXPECT_DOUBLE_EQ(SaldoPrecedente(store::DateSerial(2026, 3, 2), 1), 70);
}

TEST_F(SaldoArchivio, GiornaleRicostruitoUnaRigaPerPagamentoSullaBanca) {
    // A row typed by hand stays: nothing is deleted first, and the new rows follow its ID.
    Esegui("Insert Into PrimaNota (ID,Data,Descrizione,Importo,Tipo,Destinazione,Pagamento,TipoPagamento,CC) "
           "VALUES (1,'02/01/2026','Versamento',500,0,1,0,'Contanti','')");
    Esegui("Insert Into Pagamenti (ID,Documento,Cliente,Fornitore,DescPagamento,DataPagamento,ImportoPagamento,"
           "TipoPagamento,CC) VALUES (4,1,3,0,'Incasso fattura n. 1',#03/20/2026#,1234.5,'Bonifico','IT01')");
    Esegui("Insert Into Pagamenti (ID,Spesa,Cliente,Fornitore,DescPagamento,DataPagamento,ImportoPagamento) "
           "VALUES (7,2,0,5,'Pagamento dell''affitto',#04/02/2026#,80.25)");
    // A refund to a customer still counts as money in: only Cliente decides.
    Esegui("Insert Into Pagamenti (ID,Documento,Cliente,Fornitore,DescPagamento,DataPagamento,ImportoPagamento) "
           "VALUES (9,6,3,0,'Rimborso nota di credito',#05/11/2026#,40)");

    std::vector<std::pair<long, long>> passi;
    EXPECT_EQ(books::RicostruisciPrimaNota([&](long pos, long tot) { passi.emplace_back(pos, tot); }), 3);
    EXPECT_EQ(passi, (std::vector<std::pair<long, long>>{{1, 3}, {2, 3}, {3, 3}}));

    // ID, date, description, amount, type and payment; the new rows on the bank (0), without the
    // payment's means or account: those are to be set by hand.
    EXPECT_EQ(Giornale("1=1", {"ID", "Descrizione", "Importo", "Tipo", "Pagamento", "Destinazione", "TipoPagamento",
                               "CC"}),
              (std::vector<std::string>{"02/01/2026|1|Versamento|500|0|0|1|Contanti|",
                                        "20/03/2026|2|Incasso fattura n. 1|1234,5|0|4|0||",
                                        "02/04/2026|3|Pagamento dell'affitto|80,25|1|7|0||",
                                        "11/05/2026|4|Rimborso nota di credito|40|0|9|0||"}));

    // In the journal's query a collection stands under Entrate, a payment under Uscite.
    EXPECT_DOUBLE_EQ(Numero("Select Sum(Entrate) as E from qrPrimaNota where Pagamento>0", "E"), 1274.5);
    EXPECT_DOUBLE_EQ(Numero("Select Sum(Uscite) as U from qrPrimaNota where Pagamento>0", "U"), 80.25);
}

}  // namespace
