// The corpus: every statement the program sends (tests/store/corpus/statements.txt), translated
// against a catalogue holding the program's tables and saved queries with their columns, then
// prepared and run on a real SQLite connection. A statement the program
// sends on purpose as invalid is listed with the error it must give.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "sql_support.h"
#include "store/clock.h"

using sqltest::TestDb;
using store::sql::ColumnInfo;
using store::sql::RelationInfo;

namespace {

// name: "Field:Type ..." in the shorthand of sqltest::col()
const std::vector<std::pair<const char*, const char*>> kTables = {
    {"Aziende", "ID:L Denominazione:S100 Indirizzo:S100 Cap:S10 Citta:S50 Provincia:S5 PartitaIva:S20 CodiceFiscale:S16 Telefono:S30 Fax:S30"},
    {"Esercizi", "ID:L Azienda:L Nome:S50 Dal:T Al:T File:S255 DataAggiornamento:T"},
    {"Utenti", "ID:L Azienda:L Username:S50 Password:S50 Accessi:S255"},
    {"FormReport", "ID:L Azienda:L Sezione:S50 Report:S255 Predefinito:B"},
    {"Clienti", "ID:L DescCliente:S100 DescCliente2:S100 Indirizzo:S100 Cap:S10 Citta:S50 Provincia:S5 PartitaIva:S20 "
                "CodiceFiscale:S16 Telefono:S30 Cellulare:S30 Fax:S30 mail:S100 web:S100 IvaApplicata:L "
                "CondizioniPagamento:L Sconto1:D Sconto2:D Banca:S100 ABI:S10 CAB:S10 CIN:S5 NumeroConto:S30 Note:M"},
    {"Fornitori", "ID:L DescFornitore:S100 DescFornitore2:S100 Indirizzo:S100 Cap:S10 Citta:S50 Provincia:S5 "
                  "PartitaIva:S20 CodiceFiscale:S16 Telefono:S30 Cellulare:S30 Fax:S30 mail:S100 web:S100 Banca:S100 "
                  "ABI:S10 CAB:S10 CIN:S5 NumeroConto:S30 Note:M"},
    {"Servizi", "ID:L DescServizio:S100 CodiceInterno:S30 CodiceIva:L CostoUnitario:D NonStampare:B Sconto1:D"},
    {"CodiciIva", "ID:L DescIva:S30 AliquotaIva:D"},
    {"CondizioniPagamento", "ID:L DescPagamento:S100 Rate:L Rata1:L Rata2:L Rata3:L Rata4:L Rata5:L Rata6:L Rata7:L "
                            "Rata8:L Rata9:L Rata10:L Rata11:L Rata12:L FineMese:B"},
    {"TipiSpesa", "ID:L DescTipoSpesa:S100"},
    {"ClassificazioniSpese", "ID:L DescClassificazione:S100"},
    {"Documenti", "ID:L Tipo:L Numero:L Prefisso:S10 Suffisso:S10 Data:T DataRegistrazione:T Cliente:L Fornitore:L "
                  "CondizioniPagamento:L Sconto1:D Sconto2:D Sconto3:D Sconto4:D RitenutaAcconto:D Maggiorazione:D "
                  "Colli:L Note:M DataScadAcconto:T CertAcconto:B DataDal:T DataAl:T EscludiEstrattoConto:B Pagato:B "
                  "Imponibile:D TotIva:D TotNetto:D TotSpese:D TotRitenutaAcconto:D ImportoTotale:D"},
    {"Movimenti", "ID:L Documento:L Servizio:L DescMovimento:S255 Riferimenti:S100 Quantita:D PrezzoUnitario:D "
                  "Sconto1:D Sconto2:D Importo:D Iva:L"},
    {"SpeseDocumenti", "ID:L Documento:L DescSpesa:S100 Imponibile:D Iva:L"},
    {"Spese", "ID:L Numero:S20 Data:T Fornitore:L TipoSpesa:L Classificazione:L CondizioniPagamento:L "
              "RitenutaAcconto:D Note:M File:S255 EscludiEstrattoConto:B Pagata:B Imponibile:D TotIva:D ImportoSpesa:D"},
    {"MovimentiSpese", "ID:L Spesa:L DescMovimento:S255 Importo:D Iva:L"},
    {"Scadenze", "ID:L Documento:L Spesa:L Cliente:L Fornitore:L DescScadenza:S100 DataScadenza:T DataAvviso:T "
                 "ImportoScadenza:D Rata:L Rate:L Pagata:B"},
    {"Pagamenti", "ID:L Documento:L Spesa:L Scadenza:L Cliente:L Fornitore:L DescPagamento:S100 DataPagamento:T "
                  "ImportoPagamento:D NumeroAssegno:S30 TipoPagamento:S50 CC:S50"},
    {"PrimaNota", "ID:L Data:T Descrizione:S255 Importo:D Tipo:L Destinazione:L Pagamento:L TipoPagamento:S50 Numero:L CC:S50"},
    {"Assistenze", "ID:L Cliente:L Servizio:L Data:T OraInizio:S10 OraFine:S10 Km:D Note:M Fattura:B"},
    {"EsportazioneCampi", "ID:L Sezione:S50 Campo:S50 Posizione:L Includi:B"},
    {"Note", "ID:L Descrizione:S100 Predefinita:B"},
    {"NoteCampi", "ID:L Note:L NomeCampo:S50 Dimensione:L"},
    {"NoteDettagli", "ID:L Note:L Campo:L Record:L Valore:M"},
    {"Comuni", "ID:L Comune:S100 Cap:S10 Provincia:S5"},
    {"Estratto", "ID:L Tipo:L Data:T Descrizione:S255 Dare:D Avere:D Saldo:D Fornitore:L DescFornitore:S200"},
};

struct QuerySpec {
    const char* name;
    const char* base;   // base table whose fields it passes through ("" for none)
    bool writable;
    const char* extra;  // its own columns
};

// Column lists that several saved queries share.
const char* const kDaSaldareCols =
    "ID:L Tipo:L Cliente:L Fornitore:L Data:T DescDocumento:S255 DescNum:S255 ImportoTotale:D ImportoPagato:D DaPagare:D";
const char* const kScadenzeCols =
    "ID:L Documento:L Spesa:L Cliente:L Fornitore:L DescScadenza:S100 DataScadenza:T DataAvviso:T ImportoScadenza:D "
    "ImportoTotale:D Rata:L Rate:L Pagata:B Stato:S50 Destinatario:S255 DescDocumento:S255";
const char* const kPagamentiCols =
    "ID:L Documento:L Spesa:L Scadenza:L Cliente:L Fornitore:L DataPagamento:T DescPagamento:S100 "
    "ImportoPagamento:D NumeroAssegno:S30 DescDocumento:S255 ImportoTotale:D DescScadenza:S100 DataScadenza:T "
    "ImportoScadenza:D Rata:L Rate:L Destinatario:S255";

const std::vector<QuerySpec> kQueries = {
    {"qrClienti", "Clienti", true, "Denominazione:S255 DescIva:S30 DescPagamento:S100"},
    {"qrFornitori", "Fornitori", true, ""},
    {"qrServizi", "Servizi", true, "DescIva:S30 AliquotaIva:D"},
    {"qrUtenti", "Utenti", true, "Denominazione:S100"},
    {"qrDocumenti", "Documenti", true,
     "Denominazione:S255 DescFornitore:S100 DescCliente:S100 Indirizzo:S100 Cap:S10 Citta:S50 Provincia:S5 "
     "Telefono:S30 Fax:S30 DescPagamento:S100 DescNum:S255 DescEstrattoConto:S255"},
    {"qrDocumentiDesc", "Documenti", true, "Denominazione:S255 DescNum:S255 DescDocumento:S255"},
    {"qrDocumentiIncassi", "", false, kDaSaldareCols},
    {"qrDocumentiPagamenti", "", false, kDaSaldareCols},
    {"qrDocumentiScadenze", "", false,
     "ID:L Cliente:L Fornitore:L Tipo:L Numero:L Data:T DescDocumento:S255 ImportoTotale:D ImportoScadenze:D Rimanente:D"},
    {"qrMovimenti", "", false,
     "ID:L Documento:L DescMovimento:S255 Quantita:D PrezzoUnitario:D Sconto1:D Sconto2:D DescIva:S30 Importo:D"},
    {"qrMovimentiEx", "", false,
     "ID:L Tipo:L Cliente:L Servizio:L Data:T DescNum:S255 DescMovimento:S255 Quantita:D PrezzoUnitario:D Importo:D "
     "Destinatario:S255"},
    {"qrSpeseDocumenti", "", false, "ID:L Documento:L DescSpesa:S100 DescIva:S30 Imponibile:D Imposta:D"},
    {"qrSpese", "Spese", true,
     "DescFornitore:S100 Indirizzo:S100 Cap:S10 Citta:S50 Provincia:S5 Telefono:S30 Fax:S30 DescPagamento:S100 "
     "DescTipoSpesa:S100 DescClassificazione:S100 DescSpesa:S255 TotRitenutaAcconto:D DescEstrattoConto:S255"},
    {"qrSpesePagamenti", "", false,
     "ID:L Fornitore:L DescFornitore:S100 DescFornitore2:S100 Numero:S20 Data:T DescDocumento:S255 ImportoSpesa:D "
     "ImportoPagato:D DaPagare:D"},
    {"qrSpeseScadenze", "", false,
     "ID:L Fornitore:L Numero:S20 Data:T DescDocumento:S255 ImportoSpesa:D ImportoScadenze:D Rimanente:D"},
    {"qrMovimentiSpese", "", false, "ID:L Spesa:L DescMovimento:S255 Importo:D DescIva:S30"},
    {"qrScadenzeAttive", "", false, kScadenzeCols},
    {"qrScadenzePassive", "", false, kScadenzeCols},
    {"qrScadenzePagamenti", "", false,
     "ID:L Documento:L Spesa:L Cliente:L Fornitore:L Tipo:L DescScadenza:S100 DataScadenza:T ImportoScadenza:D "
     "Rata:L Rate:L ImportoPagato:D DaPagare:D AgenteDestinatario:L"},
    {"qrPagamenti", "", false, kPagamentiCols},
    {"qrIncassi", "", false, kPagamentiCols},
    {"qrPagamentiIncassi", "", false, kPagamentiCols},
    {"qrIncPN", "", false, "Cliente:L Totale:D TotalePagato:D TotaleDaPagare:D"},
    {"qrPagPN", "", false, "Cliente:L Totale:D TotalePagato:D TotaleDaPagare:D"},
    {"qrPrimaNota", "PrimaNota", true, "Entrate:D Uscite:D"},
    {"qrAssistenze", "", false,
     "ID:L Cliente:L Servizio:L Data:T DescServizio:S100 OraInizio:S10 OraFine:S10 TempoIntervento:D Km:D Note:M "
     "Fattura:B Mese:I"},
    {"qrCertificazioniAcconto", "", false,
     "ID:L Cliente:L Denominazione:S255 Numero:L Data:T DataScadAcconto:T RitenutaAcconto:D TotRitenutaAcconto:D "
     "ImportoTotale:D CertAcconto:B DescCertAcconto:S255"},
};

std::vector<std::string> words(const char* s) {
    std::vector<std::string> w;
    std::istringstream in(s);
    std::string x;
    while (in >> x) w.push_back(x);
    return w;
}

// The program's catalogue on a real connection: tables, and each query as a view giving its columns.
void buildProgramCatalog(TestDb& db) {
    for (auto& [name, fields] : kTables) db.table(name, words(fields));
    for (const QuerySpec& q : kQueries) {
        RelationInfo r;
        r.name = q.name;
        r.isQuery = true;
        if (q.writable) r.baseTable = q.base;
        std::string view = "CREATE VIEW \"" + std::string(q.name) + "\" AS SELECT ";
        bool first = true;
        if (*q.base) {
            const RelationInfo* base = db.catalog().findRelation(q.base);
            for (auto c : base->columns) {
                c.baseColumn = q.writable ? c.name : "";
                view += std::string(first ? "" : ", ") + "\"" + c.name + "\"";
                first = false;
                r.columns.push_back(c);
            }
        }
        for (auto& w : words(q.extra)) {
            ColumnInfo c = sqltest::col(w);
            view += std::string(first ? "" : ", ") + "NULL AS \"" + c.name + "\"";
            first = false;
            r.columns.push_back(c);
        }
        if (q.writable) view += ", rowid AS \"__rowid\"";
        view += *q.base ? " FROM \"" + std::string(q.base) + "\"" : "";
        db.raw(view);
        db.catalog().put(std::move(r));
    }
}

struct CorpusLine {
    int line;
    int expectedError;  // 0 = must translate and run
    std::string text;
};

std::vector<CorpusLine> loadCorpus() {
    std::ifstream in(std::string(BREVANO_SOURCE_DIR) + "/tests/store/corpus/statements.txt");
    std::vector<CorpusLine> out;
    std::string s;
    int n = 0;
    while (std::getline(in, s)) {
        ++n;
        if (s.empty() || s[0] == '#') continue;
        CorpusLine c{n, 0, s};
        if (s[0] == '!') {
            auto sp = s.find(' ');
            c.expectedError = std::stoi(s.substr(1, sp - 1));
            c.text = s.substr(sp + 1);
        }
        out.push_back(c);
    }
    return out;
}

TEST(SqlCorpus, EveryStatementTranslatesAndRuns) {
    store::fissaOrologio(store::DateSerial(2024, 3, 5) + 0.5);
    TestDb db;
    buildProgramCatalog(db);
    auto corpus = loadCorpus();
    ASSERT_GT(corpus.size(), 250u);
    int ok = 0, refused = 0;
    for (const CorpusLine& c : corpus) {
        SCOPED_TRACE("statements.txt:" + std::to_string(c.line) + ": " + c.text);
        if (c.expectedError) {
            EXPECT_EQ(db.error(c.text), c.expectedError);
            ++refused;
            continue;
        }
        try {
            db.run(c.text);
            ++ok;
        } catch (const std::exception& e) {
            ADD_FAILURE() << e.what();
        }
    }
    store::fissaOrologio(std::nullopt);
    EXPECT_GT(ok, 240);
    EXPECT_GE(refused, 8);
}

// The same statement with other literals comes from the cache: one entry per shape.
TEST(SqlCorpus, LiteralsDoNotMakeNewEntries) {
    TestDb db;
    buildProgramCatalog(db);
    auto& tr = db.translator();
    for (int id = 1; id <= 50; ++id) {
        tr.translate("Select * from qrDocumenti where ID=" + std::to_string(id));
        tr.translate("Select * from Utenti where Azienda=" + std::to_string(id) + " and Username='u" +
                     std::to_string(id) + "' and Password='p''" + std::to_string(id) + "'");
        tr.translate("Select * from qrAssistenze where Cliente=" + std::to_string(id) +
                     " and DateValue(Data)>=DateValue('0" + std::to_string(id % 9 + 1) + "/03/2024')");
    }
    EXPECT_EQ(tr.cacheSize(), 3u);
}

}  // namespace
