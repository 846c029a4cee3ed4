// The layouts the program ships, each run on an archive, a scratch file and a master file written
// here as the program would have filled them, with what its caller hands over, written to PDF and
// read back: the headings, the company and the key amounts must be on paper (a fattura's page breaks
// are walked by the prints' screen test).
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>

#include "report/report_support.h"
#include "store/model/model.h"
#include "support/DialoghiScript.h"
#include "support/cartella_temporanea.h"
#include "ui/report/Motore.h"

namespace fs = std::filesystem;

namespace {

struct Archivi {
    test::CartellaTemporanea cartella;
    store::DatabasePtr archivio, temp, aziende;

    Archivi() {
        auto crea = [&](const std::string& nome, void (*struttura)(store::Database&)) {
            auto db = store::Workspace::Default().CreateDatabase(cartella / nome);
            struttura(*db);
            return db;
        };
        archivio = crea("Archivio.mdb", store::model::CreaArchivio);
        temp = crea("temp.mdb", store::model::CreaTemp);
        aziende = crea("Aziende.mdb", store::model::CreaAziende);
        aziende->Execute("Insert Into Aziende (ID,Denominazione,Indirizzo,Cap,Citta,Provincia,PartitaIva,CodiceFiscale,"
                         "Telefono) VALUES (1,'Studio Tecnico Bianchi & C. snc','Via Garibaldi 8','40121','Bologna','BO',"
                         "'03456780372','03456780372','051 234567')");
        store::Database& a = *archivio;
        Righe(a, "Insert Into CodiciIva (ID,DescIva,AliquotaIva)", {"(1,'22%',22)", "(2,'10%',10)"});
        Righe(a, "Insert Into CondizioniPagamento (ID,DescPagamento,Rate)", {"(1,'Bonifico 30-60 gg d.f.',2)"});
        a.Execute("Insert Into Clienti (ID,DescCliente,DescCliente2,Indirizzo,Cap,Citta,Provincia,PartitaIva,"
                  "CodiceFiscale,Telefono) VALUES (1,'Consorzio Agrario Interprovinciale delle Province di Modena e "
                  "Reggio Emilia','Società Cooperativa','Viale Virgilio 55','41123','Modena','MO','00123450364',"
                  "'00123450364','059 888111')");
        a.Execute("Insert Into Fornitori (ID,DescFornitore,DescFornitore2,Indirizzo,Cap,Citta,Provincia,PartitaIva) "
                  "VALUES (1,'Ferramenta Emiliana','srl','Via Emilia 201','40133','Bologna','BO','02222220377')");
        Righe(a, "Insert Into Servizi (ID,DescServizio,CodiceInterno,CodiceIva,CostoUnitario,NonStampare)",
              {"(1,'Sopralluogo tecnico','SOP01',1,85,False)", "(2,'Servizio interno riservato','INT99',1,10,True)"});
        // The fattura: two VAT codes, a charge, a withholding, two instalments; totals as stored.
        a.Execute("Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,CondizioniPagamento,RitenutaAcconto,Note,"
                  "DataScadAcconto,Imponibile,TotNetto,TotIva,TotSpese,TotRitenutaAcconto,ImportoTotale) VALUES "
                  "(1,5,27,#03/10/2026#,1,1,20,'Lavori eseguiti presso la sede di Modena.',#04/16/2026#,"
                  "1250,1250,255,12.2,250,1267.2)");
        Righe(a, "Insert Into Documenti (ID,Tipo,Numero,Data,Cliente,Imponibile,TotNetto,TotIva,ImportoTotale)",
              {"(2,6,3,#03/20/2026#,1,100,100,22,122)", "(3,7,12,#02/01/2026#,1,900,900,198,1098)"});
        Righe(a, "Insert Into Movimenti (ID,Documento,DescMovimento,Quantita,PrezzoUnitario,Importo,Iva)",
              {"(1,1,'Progettazione impianto',1,1000,1000,1)", "(2,1,'Materiale di consumo',5,50,250,2)",
               "(3,2,'Storno materiale reso',2,50,100,1)", "(4,3,'Manutenzione annuale',12,75,900,1)"});
        a.Execute("Insert Into SpeseDocumenti (ID,Documento,DescSpesa,Imponibile,Iva) VALUES (1,1,'Spese di trasporto',10,1)");
        Righe(a, "Insert Into Scadenze (ID,Documento,Cliente,DescScadenza,DataScadenza,ImportoScadenza,Rata,Rate,Pagata)",
              {"(1,1,1,'Bonifico',#04/30/2026#,633.6,1,2,False)", "(2,1,1,'Bonifico',#05/31/2026#,633.6,2,2,False)"});
        a.Execute("Insert Into Pagamenti (ID,Documento,Scadenza,Cliente,DescPagamento,DataPagamento,ImportoPagamento) "
                  "VALUES (1,1,1,1,'Acconto bonifico',#04/28/2026#,633.6)");
        a.Execute("Insert Into TipiSpesa (ID,DescTipoSpesa) VALUES (1,'Materiali')");
        Righe(a, "Insert Into Spese (ID,Numero,Data,Fornitore,TipoSpesa,Imponibile,TotIva,ImportoSpesa)",
              {"(1,'F-118',#03/05/2026#,1,1,400,88,488)", "(2,'F-131',#03/18/2026#,1,1,150.5,33.11,183.61)"});
        Righe(a, "Insert Into PrimaNota (ID,Data,Descrizione,Importo,Tipo,Destinazione,TipoPagamento)",
              {"(1,#04/28/2026#,'Incasso fattura 27',633.6,0,0,'Bonifico')",
               "(2,#04/29/2026#,'Pagamento F-118',488,1,0,'Bonifico')"});
        Righe(*temp, "Insert Into Estratto (ID,Tipo,Data,Descrizione,Dare,Avere,Saldo,Fornitore,DescFornitore)",
              {"(1,0,#03/10/2026#,'Fattura N.27 del 10/03/2026',1267.2,0,1267.2,0,Null)",
               "(2,0,#04/28/2026#,'Acconto bonifico',0,633.6,633.6,0,Null)",
               "(3,1,#03/05/2026#,'Spesa N.F-118 del 05/03/2026',0,488,-488,1,'Ferramenta Emiliana srl')",
               "(4,1,#03/18/2026#,'Spesa N.F-131 del 18/03/2026',0,183.61,-671.61,1,'Ferramenta Emiliana srl')"});
        Righe(*temp, "Insert Into PrimaNota (ID,Descrizione,Destinatario,Data,EntrateFuoriCassa,UsciteFuoriCassa,"
                     "EntrateInCassa,UsciteInCassa)",
              {"(1,'Fattura N.27','Consorzio Agrario',#03/10/2026#,1267.2,0,0,0)",
               "(2,'Acconto bonifico','Consorzio Agrario',#04/28/2026#,0,0,633.6,0)",
               "(3,'Spesa N.F-118','Ferramenta Emiliana',#03/05/2026#,0,488,0,0)"});
    }

    // The rows of one table: the statement's head once, then the values of each row.
    static void Righe(store::Database& db, const std::string& testa, std::initializer_list<const char*> valori) {
        for (const char* v : valori) db.Execute(testa + " VALUES " + v);
    }
};

struct Caso {
    const char* file;
    std::vector<std::pair<const char*, std::string>> query;      // what the caller hands each sub-report
    std::vector<std::pair<const char*, const char*>> parametri;  // and the report
    std::vector<std::string> attesi;                             // on the first page
    std::vector<std::string> assenti = {};
};

// The text of each page of the PDF the layout writes.
std::vector<std::string> Pdf(const std::string& file, const Caso& c, const Archivi& a, const std::string& uscita) {
    ui::report::Motore m;
    m.File = std::string(BREVANO_SOURCE_DIR) + "/data/report/" + file;
    m.Azienda = 1;
    m.dbArchivio = a.archivio;
    m.dbTemp = a.temp;
    m.dbAziende = a.aziende;
    m.Carica();
    for (const auto& [sub, query] : c.query) m.SubReport(sub).query = query;
    for (const auto& [nome, valore] : c.parametri)
        for (auto& p : m.Parametri())
            if (p.nome == nome) p.valore = valore;
    m.EsportaPdf(uscita);
    return prova::PagineDelPdf(uscita);
}

const std::string kAzienda = "Studio Tecnico Bianchi & C. snc";

}  // namespace

TEST(ModelliSpediti, OgniSezioneStampaISuoiDati) {
    prova::applicazioneDiProva();
    Archivi a;
    const char* dir = std::getenv("BREVANO_MODELLI_PDF");   // set it to keep the PDFs for a look
    const std::vector<Caso> casi{
        {"Fatture.rpf",
         {{"Documento", "Select * from qrDocumenti where ID=1"}, {"Movimento", "Select * from qrMovimenti where Documento=1"}},
         {},
         {"FATTURA", "N. 27 del 10/03/2026", kAzienda, "03456780372", "Via Garibaldi 8", "Consorzio Agrario",
          "Società Cooperativa", "00123450364", "Progettazione impianto", "1.000,00", "22%",
          "Riepilogo IVA", "10%", "222,20", "25,00", "Spese di trasporto", "10,00", "Ritenuta d'acconto 20%", "250,00",
          "1.267,20", "30/04/2026", "Rata 2 di 2", "633,60", "Note: Lavori eseguiti presso la sede", "Spese accessorie", "Scadenze di pagamento", "Pagina 1 di 1"},
         {"A riportare"}},
        // A document no longer there: an empty page, not a statement that fails on the missing ID.
        {"Fatture.rpf",
         {{"Documento", "Select * from qrDocumenti where ID=999"}, {"Movimento", "Select * from qrMovimenti where Documento=999"}},
         {},
         {"FATTURA", kAzienda, "Riepilogo IVA", "Pagina 1 di 1"},
         {"22%", "Rata", "Spese accessorie", "Scadenze di pagamento", "Note:", "Pagamento:"}},
        // Without the caller's statements a layout shows the latest document of its kind.
        // What a document lacks (charges, payment term, notes) leaves no empty heading.
        {"NoteDebito.rpf", {}, {}, {"NOTA DI CREDITO", "N. 3 del 20/03/2026", "Storno materiale reso", "122,00", kAzienda},
         {"Spese accessorie", "Pagamento:", "Note:"}},
        {"Preventivi.rpf", {}, {}, {"PREVENTIVO", "N. 12 del 01/02/2026", "Manutenzione annuale", "1.098,00", "198,00"},
         {"Ritenuta"}},
        {"Ritenuta Acconto.rpf", {{"Elenco", "Select * from qrCertificazioniAcconto where ID=1"}}, {},
         {"CERTIFICAZIONE DELLE RITENUTE D'ACCONTO", "Consorzio Agrario", kAzienda, "N. 27", "1.250,00", "20%", "250,00",
          "16/04/2026", "Da ricevere"}},
        {"Clienti.rpf", {{"Elenco", "Select qrClienti.* from qrClienti"}}, {},
         {"Elenco clienti", kAzienda, "Consorzio Agrario", "Viale Virgilio 55 - 41123 Modena MO", "059 888111"}},
        {"Fornitori.rpf", {}, {}, {"Elenco fornitori", "Ferramenta Emiliana srl", "02222220377"}},
        {"Servizi.rpf", {{"Elenco", "Select * from (Select * from qrServizi ORDER BY DescServizio) Where NonStampare=False"}}, {},
         {"Listino servizi", "SOP01", "Sopralluogo tecnico", "85,00"}, {"Servizio interno riservato"}},
        {"Spese.rpf", {{"Elenco", "Select * from qrSpese"}}, {{"Criterio", "Stato: Pagate & Non"}},
         {"Elenco spese", "Stato: Pagate & Non", "F-118", "Ferramenta Emiliana", "550,50", "121,11", "671,61"}},
        {"Scadenze.rpf", {{"Elenco", "Select * from qrScadenzeAttive"}},
         {{"Titolo", "Scadenze clienti"}, {"Criterio", "Stato: Non Pagate"}},
         {"Scadenze clienti", "Stato: Non Pagate", "30/04/2026", "Fattura N.27", "1/2", "1.267,20"}},
        {"Pagamenti.rpf", {{"Elenco", "Select * from qrIncassi"}}, {{"Titolo", "Incassi"}, {"Criterio", ""}},
         {"Incassi", "Acconto", "28/04/2026", "633,60"}},
        {"PrimaNota.rpf", {{"Elenco", "Select * from qrPrimaNota where Destinazione=0"}},
         {{"Destinazione", "Banca"}, {"Periodo", "Dal 01/04/2026 Al 30/04/2026"}, {"SaldoAttuale", "145,60"}},
         {"Prima nota", "Banca Dal 01/04/2026 Al 30/04/2026", "Incasso fattura 27", "633,60", "488,00",
          "Saldo attuale 145,60"}},
        {"PrimaNota2.rpf", {}, {{"Periodo", "Dal 01/01/2026 Al 31/12/2026"}},
         {"Partita doppia", "Consorzio Agrario", "Totale Consorzio Agrario", "1.267,20", "Ferramenta Emiliana",
          "Totale generale", "488,00"}},
        {"PrimaNota3.rpf", {}, {{"Parametro", "Fornitori"}},
         {"Prima nota - Fornitori", "Ferramenta Emiliana srl", "671,61"}},
        {"Estratto.rpf", {{"Elenco", "Select * from Estratto where Tipo=0"}},
         {{"Denominazione", "Consorzio Agrario"}, {"Indirizzo", "Viale Virgilio 55"}, {"Recapito", "41123 Modena MO"},
          {"PartitaIva", "00123450364"}},
         {"Estratto conto", "Spett.le Consorzio Agrario", "41123 Modena MO", "1.267,20", "633,60"}},
        {"EstrattoContoGeneraleGruppi.rpf",
         {{"Elenco", "Select * from Estratto Where Tipo=1 Order By DescFornitore, Fornitore, Data"}}, {},
         {"Estratto conto generale", "Ferramenta Emiliana srl", "-671,61", "671,61"}},
        {"Bilancio.rpf", {},
         {{"Periodo", "Dal 01/01/2026 Dal 31/03/2026"}, {"EntrateFuoriCassaImponibile", "1.150,00"},
          {"SaldoFuoriCassaTotale", "711,39"}, {"SaldoInCassa", "145,60"}},
         {"Bilancio", "Dal 01/01/2026 Dal 31/03/2026", "Entrate registrate", "1.150,00", "711,39", "Saldo pagamenti",
          "145,60"}},
    };
    std::set<std::string> provati;
    for (const auto& c : casi) {
        SCOPED_TRACE(c.file);
        const std::string pdf = dir ? std::string(dir) + "/" + std::to_string(provati.size()) + " " + c.file + ".pdf"
                                    : a.cartella / "stampa.pdf";
        provati.insert(c.file);
        std::vector<std::string> pagine;
        try {
            pagine = Pdf(c.file, c, a, pdf);
        } catch (const std::exception& e) {
            ADD_FAILURE() << e.what();
            continue;
        }
        ASSERT_FALSE(pagine.empty());
        const std::string& prima = pagine[0];
        std::string testo;
        for (const auto& p : pagine) testo += p;
        for (const auto& atteso : c.attesi) EXPECT_NE(prima.find(atteso), std::string::npos) << atteso << "\n" << prima;
        for (const auto& assente : c.assenti) EXPECT_EQ(testo.find(assente), std::string::npos) << assente << "\n" << testo;
    }
    // Every section a new company receives has its layout, and each of them is tried here.
    for (const auto& m : store::model::ModelliReport()) {
        EXPECT_TRUE(fs::is_regular_file(fs::path(BREVANO_SOURCE_DIR) / "data/report" / m.report)) << m.report;
        EXPECT_TRUE(provati.count(m.report)) << m.report;
    }
}

// What the layout editor saves must read back the same: the company's sub-report, the layout's own
// sub-reports and the repeated elements included.
TEST(ModelliSpediti, SalvatiERilettiUgualiAlPrimo) {
    for (const auto& m : store::model::ModelliReport()) {
        SCOPED_TRACE(m.report);
        const auto primo = ui::report::Carica(std::string(BREVANO_SOURCE_DIR) + "/data/report/" + m.report);
        EXPECT_TRUE(ui::report::Leggi(ui::report::Scrivi(primo), m.report) == primo);
    }
}
