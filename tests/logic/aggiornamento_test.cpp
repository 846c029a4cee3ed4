// The structure update on real files: an archive of an older version brought up to the model with
// its data, a second run that changes nothing, the master's new column and the reports of every
// company.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "support/archivio_logica.h"
#include "support/sessione_prova.h"
#include "core/avvio.h"
#include "core/record.h"
#include "tools/aggiornamento.h"

namespace {

namespace fs = std::filesystem;
using store::FieldDef;
using store::FieldType;
using store::Value;

class Registro : public tools::OsservatoreAggiornamento {
public:
    void Scrivi(const std::string& riga) override { righe.push_back(riga); }
    void ReportAggiornato(const std::string& voce) override { report.push_back(voce); }
    std::vector<std::string> righe;
    std::vector<std::string> report;
};

class Aggiornamento : public prova::ArchivioProva {
protected:
    void SetUp() override {
        ArchivioProva::SetUp();
        cartella = fs::path(db().Name()).parent_path();
        archivio = db().Name();
        std::ofstream(cartella / "Impostazioni.ini", std::ios::binary)
            << "[Azienda]\r\nPATH=" << cartella.string() << "\r\nID=1\r\n[Archivio]\r\nID=1\r\n";
        master().Execute("Update Esercizi set File='" + archivio + "' where ID=1");
        master().Execute("Insert Into Aziende (ID,Denominazione) VALUES (1,'Studio Alfa')");
        modello = tools::PreparaModello();
    }

    store::Database& master() { return *core::session().dbAziende; }

    // An archive as an older version left it: a table, two fields, the register's indexes and a
    // saved query missing, a name field narrower, a description wider, a number kept as text, and a
    // table, a field and a query that this version no longer has.
    void Invecchia() {
        auto& a = db();
        a.DeleteTableDef("Assistenze");
        a.DeleteIndex("Documenti", "TipoData");
        a.DeleteIndex("Documenti", "TipoClienteData");
        a.DeleteField("Documenti", "Colli");
        a.DeleteField("Clienti", "web");
        a.DeleteQueryDef("qrPrimaNota");
        Cambia("Clienti", "DescCliente", FieldType::Text, 20);
        Cambia("CodiciIva", "DescIva", FieldType::Text, 50);
        Cambia("PrimaNota", "Numero", FieldType::Text, 10);
        a.AppendTableDef({"Vecchia", {TableDef::CreateField("ID", FieldType::Long)}, {}});
        a.AppendField("Clienti", TableDef::CreateField("Fax2", FieldType::Text, 30));
        a.CreateQueryDef({"qrVecchia", "Select * from Vecchia"});
        a.AppendTableDef({"MSysProva", {TableDef::CreateField("ID", FieldType::Long)}, {}});
    }

    void Cambia(const std::string& tabella, const std::string& campo, FieldType tipo, int dimensione) {
        FieldDef f = *Campo(db(), tabella, campo);
        f.Type = tipo;
        f.Size = dimensione;
        db().SetFieldProperties(tabella, f);
    }

    static std::optional<FieldDef> Campo(store::Database& d, const std::string& tabella, const std::string& campo) {
        const auto def = d.GetTableDef(tabella);
        for (const FieldDef& f : def->Fields)
            if (f.Name == campo) return f;
        return std::nullopt;
    }

    tools::EsitoAggiornamento Aggiorna(Registro& r, double data = store::DateSerial(2026, 6, 1) + 0.5) {
        return tools::EseguiAggiornamento({archivio}, modello, data, r);
    }

    // Everything a run could change in the archive: each table's fields with their properties,
    // indexes and rows, and each query's text.
    std::string Istantanea() {
        std::ostringstream out;
        for (const std::string& t : db().TableNames()) {
            const auto def = db().GetTableDef(t);
            out << "T " << t << "\n";
            for (const FieldDef& f : def->Fields)
                out << " " << f.Name << " " << static_cast<int>(f.Type) << " " << f.Size << " " << f.AllowZeroLength
                    << " [" << f.DefaultValue << "]\n";
            for (const auto& ix : def->Indexes) out << " ix " << ix.Name << " " << ix.Unique << "\n";
            auto rs = db().OpenRecordset("Select * from [" + t + "]");
            for (; !rs->Eof(); rs->MoveNext()) {
                out << " r";
                for (int i = 0; i < rs->FieldCount(); ++i) out << " " << store::ConcatText(rs->Fields(i).value());
                out << "\n";
            }
        }
        for (const auto& q : db().QueryDefs()) out << "Q " << q.Name << " " << q.SQL << "\n";
        return out.str();
    }

    fs::path cartella;
    std::string archivio;
    std::string modello;
    using TableDef = store::TableDef;
};

TEST_F(Aggiornamento, ArchivioVecchioPortatoAlModelloConIDati) {
    Invecchia();
    CodiceIva(1, 22);
    Esegui("Insert Into CodiciIva (ID,DescIva,AliquotaIva) VALUES (2,'Esente art. 10 operazioni sanitarie ok',0)");
    Esegui("Insert Into Clienti (ID,DescCliente) VALUES (1,'Rossi Mario')");
    Esegui("Insert Into PrimaNota (ID,Descrizione,Numero) VALUES (1,'Apertura','7')");
    Esegui("Insert Into Vecchia (ID) VALUES (1)");
    Documento(1, {});  // stored total 0, lines of 100 + 50 at 22%
    Riga(1, 1, 100, 1);
    Riga(2, 1, 50, 1);
    Documento(2, {.tipo = 6, .numero = 2, .importoTotale = 999});  // no lines: every total 0
    master().Execute("Insert Into Esercizi (ID,Azienda,Nome,File) VALUES (2,1,'2025','" + archivio + "x')");

    Registro r;
    const double data = store::DateSerial(2026, 6, 1) + 0.5;
    ASSERT_TRUE(Aggiorna(r, data).riuscito()) << ::testing::PrintToString(r.righe);

    // What was missing is back, in the model's shape.
    EXPECT_TRUE(db().TableExists("Assistenze"));
    EXPECT_EQ(Campo(db(), "Clienti", "DescCliente")->Size, 100);
    EXPECT_EQ(Campo(db(), "CodiciIva", "DescIva")->Size, 30);
    EXPECT_EQ(Campo(db(), "PrimaNota", "Numero")->Type, FieldType::Long);
    const auto indici = db().GetTableDef("Documenti")->Indexes;
    for (const char* indice : {"TipoData", "TipoClienteData"})
        EXPECT_TRUE(std::any_of(indici.begin(), indici.end(), [&](const auto& i) { return i.Name == indice; })) << indice;
    // What the model no longer has is gone.
    EXPECT_FALSE(db().TableExists("Vecchia"));
    EXPECT_FALSE(Campo(db(), "Clienti", "Fax2"));
    EXPECT_FALSE(db().QueryExists("qrVecchia"));
    EXPECT_TRUE(db().TableExists("MSysProva"));  // the engine's own tables are never compared

    // Data kept; a new number holds 0, a new text Null; a shorter text is cut to 30.
    EXPECT_EQ(store::ConcatText(Valore("Select * from Clienti where ID=1", "DescCliente")), "Rossi Mario");
    EXPECT_TRUE(Valore("Select * from Clienti where ID=1", "web").isNull());
    EXPECT_EQ(Numero("Select * from Documenti where ID=1", "Colli"), 0);
    EXPECT_EQ(store::ConcatText(Valore("Select * from CodiciIva where ID=2", "DescIva")),
              "Esente art. 10 operazioni sani");
    EXPECT_EQ(Numero("Select * from PrimaNota where ID=1", "Numero"), 7);
    EXPECT_EQ(Conta("qrPrimaNota"), 1);

    // Totals from the lines: 150 taxable and 33 VAT, 183; the note without lines falls to 0.
    EXPECT_DOUBLE_EQ(Numero("Select * from Documenti where ID=1", "ImportoTotale"), 183);
    EXPECT_DOUBLE_EQ(Numero("Select * from Documenti where ID=2", "ImportoTotale"), 0);

    // The archive's row records the program's date; the row of another file is left alone.
    auto rs = master().OpenRecordset("Select * from Esercizi order by ID");
    EXPECT_DOUBLE_EQ(store::CDate(rs->get("DataAggiornamento")), data);
    rs->MoveNext();
    EXPECT_TRUE(rs->get("DataAggiornamento").isNull());

    // The log as the screen shows it (its headings are checked with the second run).
    for (const char* riga : {"Manca la tabella Assistenze", "La tabella Assistenze è stata creata.",
                             "Nella tabella Documenti Manca il campo Colli", "Creato il campo [Colli]",
                             "Eliminata la tabella Vecchia", "Tabella Clienti: Eliminato il campo Fax2",
                             "Eliminata la query qrVecchia"})
        EXPECT_NE(std::find(r.righe.begin(), r.righe.end(), riga), r.righe.end()) << riga;
}

TEST_F(Aggiornamento, SecondaEsecuzioneNonCambiaNulla) {
    Invecchia();
    CodiceIva(1, 22);
    Documento(1, {});
    Riga(1, 1, 80, 1);
    Registro primo;
    ASSERT_TRUE(Aggiorna(primo).riuscito());
    const std::string dopoIlPrimo = Istantanea();
    // A stale stored total: an archive already up to date still has its documents recomputed.
    Esegui("Update Documenti set ImportoTotale=1");

    Registro secondo;
    ASSERT_TRUE(Aggiorna(secondo).riuscito());
    EXPECT_EQ(Istantanea(), dopoIlPrimo);
    // Only the headings and the counts: nothing missing, nothing removed.
    EXPECT_EQ(secondo.righe, (std::vector<std::string>{"Verifica del database " + archivio, "Controllo Tabelle/Campi",
                                                        "Errori nelle tabelle:0", "Controllo Query",
                                                        "Errori nelle Query:0", "Controllo oggetti eliminati"}));
    EXPECT_DOUBLE_EQ(Numero("Select * from Documenti where ID=1", "ImportoTotale"), 97.6);
}

TEST_F(Aggiornamento, ColonnaDelMasterERigheReportDiOgniAzienda) {
    master().DeleteField("Aziende", "CodiceFiscale");
    master().Execute("Insert Into Aziende (ID,Denominazione) VALUES (2,'Studio Beta')");
    // The template rows are made again where they are missing; an existing row of a company stays.
    master().Execute("Delete from FormReport where Azienda=0 and Sezione in ('RitenutaAcconto','EstrattoContoGeneraleGruppi')");
    master().Execute("Insert Into FormReport (ID,Azienda,Sezione,Report,Predefinito) VALUES (100,2,'Preventivi','Mio.rpf',1)");
    std::ofstream(cartella / "NoteDebito.rpf") << "nuovo";
    std::ofstream(cartella / "Ritenuta Acconto.rpf") << "nuovo";
    fs::create_directories(cartella / "Report" / "1");
    std::ofstream(cartella / "Report" / "1" / "NoteDebito.rpf") << "vecchio";

    Registro r;
    ASSERT_TRUE(Aggiorna(r).riuscito());

    const auto cf = Campo(master(), "Aziende", "CodiceFiscale");
    ASSERT_TRUE(cf);
    EXPECT_TRUE(cf->AllowZeroLength);

    auto righe = [&](long azienda) {
        std::map<std::string, std::string> out;
        auto rs = master().OpenRecordset("Select * from FormReport where Azienda=" + std::to_string(azienda));
        for (; !rs->Eof(); rs->MoveNext()) out[store::ConcatText(rs->get("Sezione"))] = store::ConcatText(rs->get("Report"));
        return out;
    };
    // Every company gets the six rows of this version; Beta's own Preventivi stays as it was.
    auto alfa = righe(1), beta = righe(2);
    EXPECT_EQ(alfa.size(), 6u);
    EXPECT_EQ(alfa["RitenutaAcconto"], "Ritenuta Acconto.rpf");
    EXPECT_EQ(alfa["Preventivi"], "Preventivi.rpf");
    EXPECT_EQ(beta["Preventivi"], "Mio.rpf");
    beta["Preventivi"] = "Preventivi.rpf";
    EXPECT_EQ(beta, alfa);

    // The files that exist are copied over the old ones, for each company; missing ones are passed over.
    for (const char* a : {"1", "2"}) {
        EXPECT_EQ(test::LeggiFile((cartella / "Report" / a / "NoteDebito.rpf").string()), "nuovo") << a;
        EXPECT_TRUE(fs::exists(cartella / "Report" / a / "Ritenuta Acconto.rpf"));
        EXPECT_FALSE(fs::exists(cartella / "Report" / a / "Preventivi.rpf"));
    }
    EXPECT_EQ(r.report, (std::vector<std::string>{"Studio Alfa - NoteDebito.rpf", "Studio Beta - NoteDebito.rpf"}));
}

}  // namespace
