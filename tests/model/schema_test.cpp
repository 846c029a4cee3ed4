// The structure of the model files: tables, fields, keys and link indexes, the columns of every
// saved query, and the files an installation supplies.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "support/archivio_modello.h"
#include "support/cartella_temporanea.h"


namespace {

using namespace modeltest;
using store::FieldType;

class FileTemporanei : public ::testing::Test {
protected:
    test::CartellaTemporanea cartella;
};

store::DatabasePtr archivioVuoto() {
    auto db = store::Workspace::Default().OpenMemory();
    store::model::CreaArchivio(*db);
    return db;
}

// The sizes and types that are fixed rather than chosen: long texts must fit where no limit is set.
TEST(Modello, FixedSizesAndLongTexts) {
    struct Caso {
        void (*crea)(store::Database&);
        const char* tabella;
        const char* campo;
        FieldType tipo;
        int dimensione;  // 0: not looked at
    };
    const Caso casi[] = {
        {store::model::CreaArchivio, "NoteDettagli", "Valore", FieldType::Memo, 0},
        {store::model::CreaArchivio, "Documenti", "Note", FieldType::Memo, 0},
        {store::model::CreaAziende, "Aziende", "CodiceFiscale", FieldType::Text, 0},
        {store::model::CreaTemp, "Estratto", "DescFornitore", FieldType::Text, 200},
    };
    for (const Caso& c : casi) {
        auto db = store::Workspace::Default().OpenMemory();
        c.crea(*db);
        auto def = db->GetTableDef(c.tabella);
        ASSERT_TRUE(def) << c.tabella;
        auto it = std::find_if(def->Fields.begin(), def->Fields.end(), [&](const auto& f) { return f.Name == c.campo; });
        ASSERT_NE(it, def->Fields.end()) << c.tabella << "." << c.campo;
        EXPECT_EQ(it->Type, c.tipo) << c.tabella << "." << c.campo;
        if (c.dimensione) {
            EXPECT_EQ(it->Size, c.dimensione) << c.tabella << "." << c.campo;
        }
    }
    auto db = archivioVuoto();
    const std::string lungo(5000, 'x');
    riga(*db, "NoteDettagli", {{"ID", L(1)}, {"Valore", Value::Text(lungo)}});
    EXPECT_EQ(testo(campo(*db, "Select * from NoteDettagli where ID=1", "Valore")), lungo);
}

// Each link field has its own index, and ID is a unique key.
TEST(Modello, KeysAndLinkIndexes) {
    auto db = archivioVuoto();
    const std::pair<const char*, std::vector<const char*>> legami[] = {
        {"Clienti", {"IvaApplicata", "CondizioniPagamento"}},
        {"Servizi", {"CodiceIva"}},
        {"Documenti", {"Cliente", "Fornitore", "CondizioniPagamento"}},
        {"Movimenti", {"Documento", "Servizio", "Iva"}},
        {"SpeseDocumenti", {"Documento", "Iva"}},
        {"Spese", {"Fornitore", "TipoSpesa", "Classificazione", "CondizioniPagamento"}},
        {"MovimentiSpese", {"Spesa", "Iva"}},
        {"Scadenze", {"Documento", "Spesa", "Cliente", "Fornitore"}},
        {"Pagamenti", {"Documento", "Spesa", "Scadenza", "Cliente", "Fornitore"}},
        {"PrimaNota", {"Pagamento"}},
        {"Assistenze", {"Cliente", "Servizio"}},
        {"NoteCampi", {"Note"}},
        {"NoteDettagli", {"Note", "Campo"}},
    };
    for (const auto& [tabella, campi] : legami) {
        auto def = db->GetTableDef(tabella);
        ASSERT_TRUE(def) << tabella;
        auto indice = [&](const std::string& campo) {
            return std::find_if(def->Indexes.begin(), def->Indexes.end(),
                                [&](const store::IndexDef& i) { return i.Fields == std::vector<std::string>{campo}; });
        };
        auto chiave = indice("ID");
        ASSERT_NE(chiave, def->Indexes.end()) << tabella;
        EXPECT_TRUE(chiave->Unique && chiave->Primary) << tabella;
        for (const char* campo : campi) EXPECT_NE(indice(campo), def->Indexes.end()) << tabella << "." << campo;
    }
    riga(*db, "Pagamenti", {{"ID", L(1)}});
    try {
        riga(*db, "Pagamenti", {{"ID", L(1)}});
        ADD_FAILURE() << "a second row with ID 1 was accepted";
    } catch (const store::JetError& e) {
        EXPECT_EQ(e.number(), 3022);
    }
}

// What a statement leaves out of a new row: numbers and links 0, yes/no False, texts and dates Null.
TEST(Modello, NewRowHoldsZeroInNumbersLinksAndYesNo) {
    auto db = archivioVuoto();
    db->Execute("Insert Into PrimaNota (ID,Data,Descrizione,CC,Importo,Tipo,Destinazione,Pagamento,TipoPagamento) "
                "VALUES (1,'05/03/2024','Incasso','',10,0,1,0,'')");
    db->Execute("Insert Into Documenti (ID,Tipo) VALUES (1,5)");
    EXPECT_EQ(campo(*db, "Select * from PrimaNota where ID=1", "Numero"), L(0));
    const std::pair<const char*, Value> attesi[] = {
        {"Cliente", L(0)}, {"Fornitore", L(0)}, {"ImportoTotale", D(0)}, {"Pagato", B(false)},
        {"EscludiEstrattoConto", B(false)}, {"Prefisso", Value::Null()}, {"Data", Value::Null()},
    };
    for (const auto& [nome, valore] : attesi)
        EXPECT_EQ(campo(*db, "Select * from Documenti where ID=1", nome), valore) << nome;
    EXPECT_EQ(ids(*db, "Select * from Documenti where EscludiEstrattoConto=0 and Pagato=False"),
              std::vector<long>{1});
}

struct Forma {
    const char* query;
    std::vector<const char*> colonne;
};

// The columns the program reads from each query, as the registers, editors and reports name them.
const std::vector<Forma>& formeArchivio() {
    // Column lists that several queries share.
    const std::vector<const char*> daSaldare{"ID", "Cliente", "Fornitore", "Data", "DescDocumento", "DescNum",
                                             "ImportoTotale", "ImportoPagato", "DaPagare"};
    const std::vector<const char*> scadenze{"ID", "Documento", "Spesa", "Cliente", "Fornitore", "DescScadenza",
                                            "DataScadenza", "DataAvviso", "ImportoScadenza", "ImportoTotale", "Rata",
                                            "Rate", "Pagata", "Stato", "Destinatario", "DescDocumento"};
    const std::vector<const char*> pagamenti{"ID", "Documento", "Spesa", "Scadenza", "Cliente", "Fornitore",
                                             "DataPagamento", "DescPagamento", "ImportoPagamento", "NumeroAssegno",
                                             "DescDocumento", "ImportoTotale", "DescScadenza", "DataScadenza",
                                             "ImportoScadenza", "Rata", "Rate", "Destinatario"};
    static const std::vector<Forma> forme{
        {"qrClienti", {"ID", "DescCliente", "DescCliente2", "Denominazione", "DescIva", "DescPagamento", "Mail", "Web",
                       "Indirizzo", "Cap", "Citta", "Provincia", "PartitaIva", "CodiceFiscale", "Telefono",
                       "Cellulare", "Fax", "Sconto1", "Sconto2", "Banca", "ABI", "CAB", "CIN", "NumeroConto", "Note"}},
        {"qrFornitori", {"ID", "DescFornitore", "DescFornitore2", "Mail", "Web", "Indirizzo", "Cap", "Citta",
                         "Provincia", "PartitaIva", "CodiceFiscale", "Telefono", "Cellulare", "Fax", "Banca",
                         "NumeroConto", "Note"}},
        {"qrServizi", {"ID", "DescServizio", "CodiceInterno", "CodiceIva", "CostoUnitario", "NonStampare", "Sconto1",
                       "Sconto2", "DescIva", "AliquotaIva"}},
        {"qrDocumenti", {"ID", "Tipo", "Numero", "Prefisso", "Suffisso", "Data", "Cliente", "Fornitore",
                         "CondizioniPagamento", "Sconto4", "RitenutaAcconto", "Colli", "Note", "Pagato",
                         "ImportoTotale", "TotRitenutaAcconto", "Denominazione", "DescFornitore", "DescCliente",
                         "Indirizzo", "Cap", "Citta", "Provincia", "Telefono", "Fax", "DescPagamento", "DescNum",
                         "DescEstrattoConto"}},
        {"qrDocumentiDesc", {"ID", "Tipo", "Data", "Cliente", "Fornitore", "ImportoTotale", "EscludiEstrattoConto",
                             "Denominazione", "DescNum", "DescDocumento"}},
        {"qrDocumentiIncassi", daSaldare},
        {"qrDocumentiPagamenti", daSaldare},
        {"qrDocumentiScadenze", {"ID", "Cliente", "Fornitore", "Tipo", "Numero", "Data", "DescDocumento",
                                 "ImportoTotale", "ImportoScadenze", "Rimanente"}},
        {"qrMovimenti", {"ID", "Documento", "DescMovimento", "Quantita", "PrezzoUnitario", "Sconto1", "Sconto2",
                         "DescIva", "Importo"}},
        {"qrMovimentiEx", {"ID", "Tipo", "Cliente", "Servizio", "Data", "DescNum", "DescMovimento", "Quantita",
                           "PrezzoUnitario", "Importo", "Destinatario"}},
        {"qrSpeseDocumenti", {"ID", "Documento", "DescSpesa", "DescIva", "Imponibile", "Imposta"}},
        {"qrSpese", {"ID", "Numero", "Data", "Fornitore", "TipoSpesa", "Classificazione", "File", "Pagata",
                     "Imponibile", "TotIva", "ImportoSpesa", "DescFornitore", "Indirizzo", "Cap", "Citta", "Provincia",
                     "Telefono", "Fax", "DescPagamento", "DescTipoSpesa", "DescClassificazione", "DescSpesa",
                     "TotRitenutaAcconto", "DescEstrattoConto"}},
        {"qrSpesePagamenti", {"ID", "Fornitore", "DescFornitore", "DescFornitore2", "Numero", "Data", "DescDocumento",
                              "ImportoSpesa", "ImportoPagato", "DaPagare"}},
        {"qrSpeseScadenze", {"ID", "Fornitore", "Numero", "Data", "DescDocumento", "ImportoSpesa", "ImportoScadenze",
                             "Rimanente"}},
        {"qrMovimentiSpese", {"ID", "Spesa", "DescMovimento", "Importo", "DescIva"}},
        {"qrScadenzeAttive", scadenze},
        {"qrScadenzePassive", scadenze},
        {"qrScadenzePagamenti", {"ID", "Documento", "Spesa", "Cliente", "Fornitore", "Tipo", "DescScadenza",
                                 "DataScadenza", "ImportoScadenza", "Rata", "Rate", "ImportoPagato", "DaPagare",
                                 "AgenteDestinatario"}},
        {"qrPagamenti", pagamenti},
        {"qrIncassi", pagamenti},
        {"qrPagamentiIncassi", pagamenti},
        {"qrIncPN", {"ID", "Cliente", "Totale", "TotalePagato", "TotaleDaPagare"}},
        {"qrPagPN", {"ID", "Cliente", "Totale", "TotalePagato", "TotaleDaPagare"}},
        {"qrPrimaNota", {"ID", "Data", "Descrizione", "TipoPagamento", "Tipo", "Destinazione", "CC", "Importo",
                         "Pagamento", "Entrate", "Uscite"}},
        {"qrAssistenze", {"ID", "Cliente", "Servizio", "Data", "DescServizio", "OraInizio", "OraFine",
                          "TempoIntervento", "Km", "Note", "Fattura", "Mese"}},
        {"qrCertificazioniAcconto", {"ID", "Cliente", "Denominazione", "Numero", "Data", "DataScadAcconto",
                                     "RitenutaAcconto", "TotRitenutaAcconto", "ImportoTotale", "CertAcconto",
                                     "DescCertAcconto"}},
    };
    return forme;
}

// Screens give an empty grid its columns with "where ID<0": no row, every column, none twice.
void controllaForma(store::Database& db, const std::string& sql, const Forma& f) {
    SCOPED_TRACE(sql);
    auto rs = db.OpenRecordset(sql);
    EXPECT_TRUE(rs->Eof());
    EXPECT_EQ(rs->RecordCount(), 0);
    for (const char* c : f.colonne) EXPECT_TRUE(rs->HasField(c)) << c;
    for (int i = 0; i < rs->FieldCount(); ++i)
        for (int j = i + 1; j < rs->FieldCount(); ++j)
            EXPECT_NE(store::CompareText(rs->Fields(i).Name(), rs->Fields(j).Name()), 0) << rs->Fields(i).Name();
}

TEST(Modello, EverySavedQueryGivesItsColumnsAndNoRowForANegativeID) {
    auto db = archivioVuoto();
    std::vector<std::string> nomi;
    for (const Forma& f : formeArchivio()) {
        nomi.push_back(f.query);
        controllaForma(*db, std::string("Select * from ") + f.query + " where ID<0", f);
    }
    std::vector<std::string> salvate;
    for (const store::QueryDef& q : db->QueryDefs()) salvate.push_back(q.Name);
    std::sort(nomi.begin(), nomi.end());
    std::sort(salvate.begin(), salvate.end());
    EXPECT_EQ(salvate, nomi);

    auto master = store::Workspace::Default().OpenMemory();
    store::model::CreaAziende(*master);
    controllaForma(*master, "Select * from qrUtenti where ID=-1", {"qrUtenti", {"ID", "UserName", "Denominazione", "Azienda"}});
}

// Rows written in bulk read back exactly as given, whatever their texts and numbers hold.
TEST(Modello, BulkRowsReadBackAsGiven) {
    auto db = store::Workspace::Default().OpenMemory();
    store::model::CreaTemp(*db);
    const double dataOra = store::DateSerial(2024, 3, 5) + (14 * 60 + 30) / 1440.0;
    const std::vector<std::vector<Value>> righe = {
        {L(-1), T("Saldo l'anno \"prima\""), D(0.1 + 0.2), Value::Date(dataOra), Value::Null()},
        {L(2), T(""), D(-1234567.891), Value::Date(store::DateSerial(1999, 12, 31)), T("Bianchi & figli")},
        {L(3), T("àèìòù €"), D(1e-7), Value::Null(), T("x")},
    };
    std::vector<std::vector<Value>> molte;
    for (int i = 0; i < 1203; ++i) molte.push_back({L(100 + i), T("riga"), D(i / 100.0), Value::Null(), Value::Null()});
    const std::vector<std::string> colonne{"ID", "Descrizione", "Dare", "Data", "DescFornitore"};
    store::model::InserisciRighe(*db, "Estratto", colonne, righe);
    store::model::InserisciRighe(*db, "Estratto", colonne, molte);
    for (const auto& r : righe) {
        auto rs = db->OpenRecordset("Select * from Estratto where ID=" + testo(r[0]));
        for (std::size_t c = 1; c < colonne.size(); ++c) EXPECT_EQ(rs->get(colonne[c]), r[c]) << colonne[c];
    }
    auto conta = db->OpenRecordset("Select Count(*) as N, Sum(Dare) as S from Estratto where ID>=100");
    EXPECT_EQ(conta->get("N").number(), 1203);
    EXPECT_NEAR(conta->get("S").number(), 7230.03, 1e-6);  // (0 + 1202) x 1203 / 2 / 100
    try {
        store::model::InserisciRighe(*db, "Estratto", colonne, {{L(9), T("corta")}});
        ADD_FAILURE() << "a row with fewer values than columns was written";
    } catch (const store::JetError& e) {
        EXPECT_EQ(e.number(), 3346);
    }
}

TEST_F(FileTemporanei, InstallationFiles) {
    store::model::ScriviFileInstallazione(cartella.percorso(), store::model::CartellaDatiSorgente());
    auto& ws = store::Workspace::Default();

    auto servizio = ws.OpenDatabase(cartella / "Servizio.mdb");
    EXPECT_EQ(servizio->TableNames().size(), 20u);
    EXPECT_EQ(servizio->QueryDefs().size(), 26u);
    servizio->Close();

    auto aziende = ws.OpenDatabase(cartella / "Base/Aziende.mdb");
    EXPECT_EQ(ids(*aziende, "Select * from Aziende"), std::vector<long>{});
    EXPECT_EQ(ids(*aziende, "Select * from FormReport where Azienda=0 and Predefinito=True").size(), 16u);
    EXPECT_EQ(testo(campo(*aziende, "Select * From FormReport where Azienda=0 and Sezione='RitenutaAcconto'",
                          "Report")),
              "Ritenuta Acconto.rpf");
    EXPECT_EQ(testo(campo(*aziende,
                          "Select * From FormReport where Azienda=0 and Sezione='EstrattoContoGeneraleGruppi'",
                          "Report")),
              "EstrattoContoGeneraleGruppi.rpf");
    aziende->Close();

    auto temp = ws.OpenDatabase(cartella / "temp.mdb");
    EXPECT_EQ(temp->TableNames(), (std::vector<std::string>{"Estratto", "PrimaNota", "Note"}));
    temp->Close();

    auto utilita = ws.OpenDatabase(cartella / "Utilità.mdb");
    auto conta = utilita->OpenRecordset("Select Count(*) as N from Comuni");
    EXPECT_EQ(conta->get("N").number(), 8570);
    const Testo comuni[] = {
        {"Select * from Comuni where Comune='Abano Terme'", "Cap", "35031"},
        {"Select * from Comuni where Comune='Abano Terme'", "Provincia", "PD"},
        {"Select * from Comuni where Cap='00118'", "Comune", "Roma"},
        {"Select * from Comuni where Comune='Forlì'", "Provincia", "FC"},
        {"Select * from Comuni where Comune='Sant''Agata de'' Goti'", "Provincia", "BN"},
    };
    for (const Testo& c : comuni) EXPECT_EQ(testo(campo(*utilita, c.sql, c.colonna)), c.atteso) << c.sql;
    utilita->Close();

    // A second run replaces the files.
    store::model::ScriviFileInstallazione(cartella.percorso(), store::model::CartellaDatiSorgente());
    auto ancora = ws.OpenDatabase(cartella / "Base/Aziende.mdb");
    EXPECT_EQ(ids(*ancora, "Select * from FormReport").size(), 16u);
}

TEST_F(FileTemporanei, EmptyArchiveReplacesAnExistingFile) {
    const std::string path = cartella / "2024.mdb";
    store::model::GeneraArchivioVuoto(path);
    {
        auto db = store::Workspace::Default().OpenDatabase(path);
        riga(*db, "Clienti", {{"ID", L(1)}, {"DescCliente", T("Rossi")}});
        db->Close();
    }
    store::model::GeneraArchivioVuoto(path);
    auto db = store::Workspace::Default().OpenDatabase(path);
    EXPECT_EQ(ids(*db, "Select * from Clienti"), std::vector<long>{});
    EXPECT_TRUE(db->QueryExists("qrScadenzePagamenti"));
}

TEST_F(FileTemporanei, BadMunicipalityListIsReportedWithItsLine) {
    struct Caso {
        const char* contenuto;
        const char* messaggio;
    };
    const Caso casi[] = {
        {"Comune\tCap\tProvincia\nRoma\t00118\tRM\nMilano 20121 MI\n", "riga 3"},
        {"Comune\tCap\tProvincia\n\t00118\tRM\n", "riga 2"},
    };
    for (const Caso& c : casi) {
        std::ofstream(cartella / "comuni.tsv", std::ios::binary) << c.contenuto;
        auto db = store::Workspace::Default().OpenMemory();
        try {
            store::model::CreaUtilita(*db, cartella / "comuni.tsv");
            ADD_FAILURE() << c.contenuto;
        } catch (const std::runtime_error& e) {
            EXPECT_NE(std::string(e.what()).find(c.messaggio), std::string::npos) << e.what();
        }
    }
    auto db = store::Workspace::Default().OpenMemory();
    EXPECT_THROW(store::model::CreaUtilita(*db, cartella / "manca.tsv"), std::runtime_error);
}

}  // namespace
