// Recording payments without a window: the refusals of the confirm in their order, the wording of
// the description, and the write of a payment with its journal row and the three flags, undone by
// a delete (an expense's payments are walked by its register's test); nothing written when the
// document has gone meanwhile.
#include "support/archivio_logica.h"
#include "payments/pagamenti.h"
#include "store/convert_support.h"

namespace {

using namespace payments;

class PagamentiArchivio : public prova::ArchivioProva {
protected:
    // Fattura 1 of 100.00 with instalments 1 (60.00) and 2 (40.00); fattura 2 of 100.00 with none;
    // expense 1 of 80.00 from supplier 1 with no instalment.
    void SetUp() override {
        ArchivioProva::SetUp();
        Documento(1, {.importoTotale = 100});
        Documento(2, {.numero = 2, .importoTotale = 100});
        Esegui("Insert Into Scadenze (ID,Documento,Cliente,DescScadenza,ImportoScadenza,Pagata) VALUES (1,1,1,'Rata 1',60,0)");
        Esegui("Insert Into Scadenze (ID,Documento,Cliente,DescScadenza,ImportoScadenza,Pagata) VALUES (2,1,1,'Rata 2',40,0)");
        Esegui("Insert Into Spese (ID,Fornitore,Numero,Data,ImportoSpesa,Pagata) VALUES (1,1,'7','10/03/2026',80,0)");
    }
    bool Flag(const std::string& tabella, const std::string& campo, long id) {
        return store::CDbl(Valore("Select " + campo + " from " + tabella + " where ID=" + std::to_string(id), campo)) != 0;
    }
    static payments::Pagamento SuDocumento(long documento, long scadenza, double importo) {
        payments::Pagamento p;
        p.data = store::DateSerial(2026, 4, 1);
        p.descrizione = "Incasso dell'acconto";
        p.importo = importo;
        p.cliente = 1;
        p.documento = documento;
        p.scadenza = scadenza;
        return p;
    }
    static payments::Pagamento SuSpesa(double importo) {
        payments::Pagamento p = SuDocumento(0, 0, importo);
        p.contro = Contro::Spesa;
        p.modo = ModoPagamento;
        p.cliente = 0;
        p.fornitore = 1;
        p.spesa = 1;
        return p;
    }
    static PagamentoDaControllare Valido() {
        PagamentoDaControllare p;
        p.dataVuota = false;
        p.dataValida = true;
        p.data = "01/04/2026";
        p.cliente = 1;
        p.documento = 2;
        p.importo = 100;
        p.scelto = LeggiDocumento(2, ModoIncasso);
        return p;
    }
};

// The refusals the editors' table does not reach: a change, the counterpart alternatives, amounts
// the box cannot give, and the expense's own keys.
TEST_F(PagamentiArchivio, RifiutiDellaConferma) {
    struct Caso {
        const char* nome;
        std::function<void(PagamentoDaControllare&)> cambia;
        std::string atteso;
    } const casi[] = {
        {"tutto in ordine", [](auto&) {}, ""},
        {"data illeggibile", [](auto& p) { p.dataValida = false; }, "s220"},
        {"nessuna controparte", [](auto& p) { p.cliente = 0; }, "s221"},
        {"il solo fornitore basta", [](auto& p) { p.cliente = 0; p.fornitore = 3; }, ""},
        {"nessun documento", [](auto& p) { p.documento = 0; }, "s222"},
        {"importo con lettere", [](auto& p) { p.importoLeggibile = false; }, "L'importo non è un numero valido!"},
        {"importo zero", [](auto& p) { p.importo = 0; }, "L'importo deve essere maggiore di zero!"},
        // On a change what is already paid comes off first: 150 less 60 paid stays within 100.
        {"modifica entro il pagato", [](auto& p) { p.nuovo = false; p.importo = 150; p.giaPagato = 60; }, ""},
        {"modifica oltre il pagato", [](auto& p) { p.nuovo = false; p.importo = 170; p.giaPagato = 60; }, "s224"},
        {"la rata intera", [](auto& p) { p.documento = 1; p.scelto = LeggiDocumento(1, 1); p.scadenza = 2; p.sceltaScadenza = LeggiScadenza(2); p.importo = 40; }, ""},
        {"spesa senza fornitore", [](auto& p) { p.contro = Contro::Spesa; p.fornitore = 0; }, "s229"},
        {"spesa non scelta", [](auto& p) { p.contro = Contro::Spesa; p.fornitore = 1; p.documento = 0; }, "s230"},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        PagamentoDaControllare p = Valido();
        c.cambia(p);
        EXPECT_EQ(ControllaPagamento(p), c.atteso);
    }
    Esegui("Insert Into Scadenze (ID,Spesa,Fornitore,ImportoScadenza,Pagata) VALUES (3,1,1,80,0)");
    PagamentoDaControllare s = Valido();
    s.contro = Contro::Spesa;
    s.fornitore = 1;
    s.documento = 1;
    s.scelto = LeggiSpesa(1);
    s.importo = 10;
    EXPECT_EQ(ControllaPagamento(s), "s231");
}

TEST_F(PagamentiArchivio, DescrizioneProposta) {
    struct Caso {
        double importo, dovuto, pagato;
        bool nuovo;
        const char* attesa;
    } const casi[] = {
        {100, 100, 0, true, "Saldo FT 1"},    {99.99, 100, 0, true, "Acconto FT 1"},
        {120, 100, 0, true, "Saldo FT 1"},    {150, 100, 60, false, "Acconto FT 1"},
        {160.01, 100, 60, false, "Saldo FT 1"},
    };
    for (const auto& c : casi) EXPECT_EQ(DescrizioneProposta(c.importo, c.dovuto, c.pagato, c.nuovo, "FT 1"), c.attesa);
}

// Two payments settle instalment 1 in two goes, a third instalment 2 and with it the document;
// deleting that last one puts both flags back and takes its journal row away.
TEST_F(PagamentiArchivio, IncassiDiUnaFatturaERitorno) {
    struct Passo {
        long scadenza;
        double importo;
        bool rata1, rata2, documento;
    } const passi[] = {{1, 25, false, false, false}, {1, 35, true, false, false}, {2, 40, true, true, true}};
    long ultimo = 0;
    for (const auto& p : passi) {
        ultimo = RegistraPagamento(SuDocumento(1, p.scadenza, p.importo));
        EXPECT_EQ(Flag("Scadenze", "Pagata", 1), p.rata1);
        EXPECT_EQ(Flag("Scadenze", "Pagata", 2), p.rata2);
        EXPECT_EQ(Flag("Documenti", "Pagato", 1), p.documento);
        EXPECT_EQ(Numero("Select Tipo from PrimaNota where Pagamento=" + std::to_string(ultimo), "Tipo"), 0);
        EXPECT_EQ(Numero("Select Importo from PrimaNota where Pagamento=" + std::to_string(ultimo), "Importo"), p.importo);
    }
    EXPECT_EQ(Conta("PrimaNota"), 3);

    // A change rewrites the journal row rather than adding one.
    payments::Pagamento cambiato = SuDocumento(1, 1, 20);
    cambiato.id = 1;
    RegistraPagamento(cambiato);
    EXPECT_EQ(Conta("PrimaNota"), 3);
    EXPECT_EQ(Numero("Select Importo from PrimaNota where Pagamento=1", "Importo"), 20);
    EXPECT_FALSE(Flag("Scadenze", "Pagata", 1));

    EliminaPagamento(ultimo);
    EXPECT_FALSE(Flag("Scadenze", "Pagata", 2));
    EXPECT_FALSE(Flag("Documenti", "Pagato", 1));
    EXPECT_EQ(Conta("PrimaNota", "Pagamento=" + std::to_string(ultimo)), 0);
    EXPECT_EQ(Conta("Pagamenti"), 2);
}

// Another user deleted the document, its instalment or the expense: the write stops with the
// reason and leaves every table as it was.
TEST_F(PagamentiArchivio, NienteScrittoSeIlDocumentoESparito) {
    struct Caso {
        const char* nome;
        std::string elimina;
        payments::Pagamento pagamento;
        const char* motivo;
    } const casi[] = {
        {"documento", "Delete from Documenti where ID=2", SuDocumento(2, 0, 10), MsgDocumentoSparito},
        {"scadenza", "Delete from Scadenze where ID=2", SuDocumento(1, 2, 10), MsgScadenzaSparita},
        {"spesa", "Delete from Spese where ID=1", SuSpesa(10), MsgSpesaSparita},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        Esegui(c.elimina);
        EXPECT_EQ(MotivoNonRegistrabile(c.pagamento), c.motivo);
        const std::string errore = jetErrorOf([&] { RegistraPagamento(c.pagamento); }).second;
        EXPECT_NE(errore.find(c.motivo), std::string::npos) << errore;
        EXPECT_EQ(Conta("Pagamenti"), 0);
        EXPECT_EQ(Conta("PrimaNota"), 0);
    }
}

}  // namespace
