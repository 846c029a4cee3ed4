#include "tools/aggiornamento.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <functional>

#include "core/services.h"
#include "core/session.h"
#include "sales/totali.h"
#include "store/convert.h"
#include "store/model/model.h"

namespace fs = std::filesystem;

namespace tools {

namespace {

using store::FieldDef;
using store::FieldType;
using store::TableDef;

bool StessoNome(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](unsigned char x, unsigned char y) {
               return std::toupper(x) == std::toupper(y);
           });
}

// The engine's own tables, of either file, are never compared.
bool TabellaDiSistema(const std::string& nome) {
    std::string inizio = nome.substr(0, 4);
    for (char& c : inizio) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return inizio == "MSYS";
}

const FieldDef* Campo(const TableDef& t, const std::string& nome) {
    for (const FieldDef& f : t.Fields)
        if (StessoNome(f.Name, nome)) return &f;
    return nullptr;
}

bool HaIndice(const TableDef& t, const std::string& nome) {
    return std::any_of(t.Indexes.begin(), t.Indexes.end(), [&](const auto& ix) { return StessoNome(ix.Name, nome); });
}

bool Testuale(FieldType t) { return t == FieldType::Text || t == FieldType::Memo; }

// One pass of the check: every step that fails is logged and counted, and the pass goes on.
class Passo {
public:
    Passo(OsservatoreAggiornamento& o, const std::string& titolo) : o_(o) { o_.Scrivi(titolo); }

    void operator()(const std::function<void()>& passo) {
        try {
            passo();
        } catch (const std::exception& e) {
            o_.Scrivi(std::string("Errore: ") + e.what());
            ++errori_;
        }
    }
    int errori() const { return errori_; }

private:
    OsservatoreAggiornamento& o_;
    int errori_ = 0;
};

// The table as the model has it. A field's validation rule and zero-length flag only mean
// something on text, and the table's own rule is never carried over.
TableDef CopiaTabella(const TableDef& modello) {
    TableDef t;
    t.Name = modello.Name;
    for (const FieldDef& m : modello.Fields) {
        FieldDef f = m;
        if (!Testuale(m.Type)) {
            f.AllowZeroLength = false;
            f.ValidationRule.clear();
            f.ValidationText.clear();
        }
        t.Fields.push_back(f);
    }
    t.Indexes = modello.Indexes;
    return t;
}

void CreaTabella(store::Database& archivio, const TableDef& modello, OsservatoreAggiornamento& o) {
    o.Scrivi("Manca la tabella " + modello.Name);
    archivio.AppendTableDef(CopiaTabella(modello));
    o.Scrivi("La tabella " + modello.Name + " è stata creata.");
    for (const FieldDef& f : modello.Fields)
        if (CampoNumerico(f)) AzzeraNulli(archivio, modello.Name, f.Name);
}

// A field the archive lacks takes the model's type, size and zero-length flag, and the default 0
// whatever its type; the rows already there hold 0 in a numeric field and Null in any other.
void CreaCampo(store::Database& archivio, const std::string& tabella, const FieldDef& m, OsservatoreAggiornamento& o) {
    o.Scrivi("Nella tabella " + tabella + " Manca il campo " + m.Name);
    FieldDef f = TableDef::CreateField(m.Name, m.Type, m.Size);
    f.AllowZeroLength = m.AllowZeroLength;
    f.DefaultValue = "0";
    archivio.AppendField(tabella, f);
    if (CampoNumerico(m)) AzzeraNulli(archivio, tabella, m.Name);
    o.Scrivi("Creato il campo [" + m.Name + "]");
}

// A field of both files: retyped when the type differs, then for text its zero-length flag and its
// size as in the model. A shorter size cuts the values.
void AllineaCampo(store::Database& archivio, const std::string& tabella, const FieldDef& m) {
    auto def = archivio.GetTableDef(tabella);
    const FieldDef* a = def ? Campo(*def, m.Name) : nullptr;
    if (!a) return;
    if (a->Type != m.Type) {
        const std::string parola = ParolaTipo(static_cast<int>(m.Type));
        if (!parola.empty()) {
            archivio.Execute("ALTER TABLE " + tabella + " ALTER COLUMN " + m.Name + " " + parola);
            def = archivio.GetTableDef(tabella);
            a = def ? Campo(*def, m.Name) : nullptr;
            if (!a) return;
        }
    }
    if (m.Type != FieldType::Text || a->Type != FieldType::Text) return;
    if (a->AllowZeroLength != m.AllowZeroLength) {
        FieldDef f = *a;
        f.AllowZeroLength = m.AllowZeroLength;
        archivio.SetFieldProperties(tabella, f);
    }
    if (a->Size != m.Size)
        archivio.Execute("ALTER TABLE " + tabella + " ALTER COLUMN " + m.Name + " TEXT(" + std::to_string(m.Size) + ")");
}

void ControllaTabelle(store::Database& archivio, store::Database& modello, Passo& passo, OsservatoreAggiornamento& o) {
    for (const std::string& nome : modello.TableNames()) {
        if (TabellaDiSistema(nome)) continue;
        const TableDef m = *modello.GetTableDef(nome);
        if (!archivio.TableExists(nome)) {
            passo([&] { CreaTabella(archivio, m, o); });
            o.Respira();
            continue;
        }
        for (const FieldDef& campo : m.Fields) {
            passo([&] {
                const auto a = archivio.GetTableDef(nome);
                if (!Campo(*a, campo.Name)) CreaCampo(archivio, a->Name, campo, o);
                else AllineaCampo(archivio, a->Name, campo);
            });
            o.Respira();
        }
        // An index the model gained since the archive was made: the lookups of the new version
        // count on it.
        for (const store::IndexDef& ix : m.Indexes) {
            passo([&] {
                const auto a = archivio.GetTableDef(nome);
                if (!HaIndice(*a, ix.Name)) archivio.AppendIndex(a->Name, ix);
            });
        }
        o.Respira();
    }
}

// Every saved query is replaced by the model's, never compared.
void ControllaQuery(store::Database& archivio, store::Database& modello, Passo& passo, OsservatoreAggiornamento& o) {
    for (const store::QueryDef& q : modello.QueryDefs()) {
        passo([&] {
            if (archivio.QueryExists(q.Name)) archivio.DeleteQueryDef(q.Name);
            archivio.CreateQueryDef(q);
        });
        o.Respira();
    }
}

// Tables, fields and queries the model no longer has go, and their data with them.
void ControllaEliminati(store::Database& archivio, store::Database& modello, Passo& tabelle, Passo& query,
                        OsservatoreAggiornamento& o) {
    for (const std::string& nome : archivio.TableNames()) {
        if (TabellaDiSistema(nome)) continue;
        tabelle([&] {
            const auto m = modello.GetTableDef(nome);
            if (!m) {
                archivio.DeleteTableDef(nome);
                o.Scrivi("Eliminata la tabella " + nome);
                return;
            }
            const auto a = archivio.GetTableDef(nome);
            for (const FieldDef& campo : a->Fields) {
                if (Campo(*m, campo.Name)) continue;
                archivio.DeleteField(nome, campo.Name);
                o.Scrivi("Tabella " + nome + ": Eliminato il campo " + campo.Name);
                o.Respira();
            }
        });
        o.Respira();
    }
    for (const store::QueryDef& q : archivio.QueryDefs()) {
        if (modello.QueryExists(q.Name)) continue;
        query([&] {
            archivio.DeleteQueryDef(q.Name);
            o.Scrivi("Eliminata la query " + q.Name);
        });
    }
}

// The archive stands in for the session's for as long as its documents are recomputed.
class ArchivioDiTurno {
public:
    explicit ArchivioDiTurno(store::DatabasePtr db) : prima_(core::session().dbArchivio) {
        core::session().dbArchivio = std::move(db);
    }
    ~ArchivioDiTurno() { core::session().dbArchivio = prima_; }

private:
    store::DatabasePtr prima_;
};

void RicalcolaDocumenti(const store::DatabasePtr& db, OsservatoreAggiornamento& o) {
    ArchivioDiTurno turno(db);
    std::vector<long> documenti;
    auto rs = db->OpenRecordset("Select * from Documenti");
    for (; !rs->Eof(); rs->MoveNext()) documenti.push_back(store::CLng(rs->get("ID")));
    rs->Close();
    // Totals are a cache that a cut run recomputes at the next start, so the rewrite of every
    // document goes in transactions of a few hundred writes rather than a disk sync per row.
    store::WriteBatch batch(*db);
    for (long id : documenti) {
        sales::CalcolaTotaliDocumento(id);
        o.Respira();
    }
    batch.End();
}

void SegnaAggiornato(const std::string& file, double data) {
    auto rs = core::session().dbAziende->OpenRecordset("Select * from Esercizi where File='" + core::Apici(file) + "'");
    if (rs->Eof()) return;
    rs->Edit();
    rs->set("DataAggiornamento", store::Value::Date(data));
    rs->Update();
}

bool AggiornaArchivio(const std::string& file, const std::string& percorsoModello, double data,
                      OsservatoreAggiornamento& o) {
    store::DatabasePtr archivio;
    store::DatabasePtr modello;
    bool ok = false;
    try {
        archivio = store::Workspace::Default().OpenDatabase(file);
        modello = store::Workspace::Default().OpenDatabase(percorsoModello);
        ok = VerificaDatabase(*archivio, *modello, o);
        modello->Close();
        if (ok) {
            SegnaAggiornato(file, data);
            RicalcolaDocumenti(archivio, o);
        }
    } catch (const std::exception& e) {
        o.Scrivi(std::string("Errore: ") + e.what());
        ok = false;
    }
    if (modello && modello->isOpen()) modello->Close();
    if (archivio && archivio->isOpen()) archivio->Close();
    return ok;
}

// ---- reports ----------------------------------------------------------------------------------

struct ReportDaPreparare {
    const char* sezione;   // "" = the file alone, no row
    const char* file;
    bool modelloAzienda0;  // also the template row that new companies copy
};

constexpr ReportDaPreparare kReport[] = {
    {"PrimaNota2", "PrimaNota2.rpf", false},
    {"PrimaNota3", "PrimaNota3.rpf", false},
    {"", "PrimaNota.rpf", false},
    {"Preventivi", "Preventivi.rpf", false},
    {"NoteDebito", "NoteDebito.rpf", false},
    {"", "Fatture.rpf", false},
    {"RitenutaAcconto", "Ritenuta Acconto.rpf", true},
    {"EstrattoContoGeneraleGruppi", "EstrattoContoGeneraleGruppi.rpf", true},
};
constexpr int kPassoElenco = 4;  // the entry in the list follows the copy of NoteDebito.rpf

void RigaReport(long azienda, const std::string& sezione, const std::string& file) {
    store::Database& db = *core::session().dbAziende;
    const std::string a = std::to_string(azienda);
    auto rs = db.OpenRecordset("Select * From FormReport where Azienda=" + a + " and Sezione='" + sezione + "'");
    const bool manca = rs->Eof();
    rs->Close();
    if (!manca) return;
    const long id = core::ProssimoID("FormReport", core::session().dbAziende);
    db.Execute("Insert Into FormReport (ID,Azienda,Sezione,Report,Predefinito) VALUES (" + std::to_string(id) + "," + a +
               ",'" + sezione + "','" + core::Apici(file) + "',1)");
}

// The new version's report files come with the program; a data folder that holds its own copy
// beside Aziende.mdb serves when the program folder has none.
void CopiaReport(const std::string& cartellaDati, long azienda, const std::string& file) {
    std::error_code ec;
    const fs::path cartella = fs::path(cartellaDati) / "Report" / std::to_string(azienda);
    fs::create_directories(cartella, ec);
    fs::path origine = fs::path(core::PercorsoProgramma(file));
    if (!fs::is_regular_file(origine, ec)) origine = fs::path(cartellaDati) / file;
    if (!fs::is_regular_file(origine, ec)) return;
    fs::copy_file(origine, cartella / file, fs::copy_options::overwrite_existing, ec);
}

}  // namespace

std::string ParolaTipo(int codice) {
    switch (codice) {
        case 10: return "TEXT";
        case 12: return "MEMO";
        case 1: return "BOOLEAN";
        case 18: return "CHAR";
        case 8: return "DATE";
        case 19: return "NUMERIC";
        case 20: return "DECIMAL";
        case 7: return "DOUBLE";
        case 21: return "FLOAT";
        case 3: return "INTEGER";
        case 4: return "LONG";
        case 22: return "TIME";
        default: return "";
    }
}

bool CampoNumerico(const FieldDef& campo) {
    const int t = static_cast<int>(campo.Type);
    const bool numero = t == 3 || t == 4 || t == 6 || t == 7 || t == 19;
    return numero && campo.Attributes != 17;
}

void AzzeraNulli(store::Database& db, const std::string& tabella, const std::string& campo) {
    db.Execute("UPDATE " + tabella + " SET [" + campo + "]=0 WHERE IsNull([" + campo + "])");
}

bool VerificaDatabase(store::Database& archivio, store::Database& modello, OsservatoreAggiornamento& o) {
    o.Scrivi("Verifica del database " + archivio.Name());
    Passo tabelle(o, "Controllo Tabelle/Campi");
    ControllaTabelle(archivio, modello, tabelle, o);
    o.Scrivi("Errori nelle tabelle:" + std::to_string(tabelle.errori()));
    Passo query(o, "Controllo Query");
    ControllaQuery(archivio, modello, query, o);
    o.Scrivi("Errori nelle Query:" + std::to_string(query.errori()));
    o.Scrivi("Controllo oggetti eliminati");
    ControllaEliminati(archivio, modello, tabelle, query, o);
    return tabelle.errori() == 0 && query.errori() == 0;
}

std::vector<std::string> FileDaAggiornare() {
    std::vector<std::string> file;
    auto rs = core::session().dbAziende->OpenRecordset("Select * from Esercizi");
    for (; !rs->Eof(); rs->MoveNext()) file.push_back(store::ConcatText(rs->get("File")));
    return file;
}

std::string PreparaModello() {
    const std::string percorso = core::PercorsoProgramma("Servizio.mdb");
    std::error_code ec;
    if (fs::exists(percorso, ec)) fs::remove(percorso);
    store::model::GeneraArchivioVuoto(percorso);
    return percorso;
}

void AggiungiColonneAziende() {
    store::Database& db = *core::session().dbAziende;
    const auto aziende = db.GetTableDef("Aziende");
    if (!aziende || Campo(*aziende, "CodiceFiscale")) return;
    FieldDef f = TableDef::CreateField("CodiceFiscale", FieldType::Text);
    const TableDef modello = store::model::TabellaModello("Aziende").definizione();  // outlives the pointer into it
    if (const FieldDef* m = Campo(modello, "CodiceFiscale")) f.Size = m->Size;
    f.AllowZeroLength = true;
    db.AppendField("Aziende", f);
}

void PreparaReport(OsservatoreAggiornamento& o) {
    const std::string cartellaDati = core::LeggiIni("Azienda", "PATH");
    struct Azienda {
        long id;
        std::string nome;
    };
    std::vector<Azienda> aziende;
    auto rs = core::session().dbAziende->OpenRecordset("Select * from aziende");
    for (; !rs->Eof(); rs->MoveNext())
        aziende.push_back({store::CLng(rs->get("ID")), store::ConcatText(rs->get("Denominazione"))});
    rs->Close();
    for (const Azienda& a : aziende) {
        for (int i = 0; i < static_cast<int>(std::size(kReport)); ++i) {
            const ReportDaPreparare& r = kReport[i];
            if (*r.sezione) {
                RigaReport(a.id, r.sezione, r.file);
                if (r.modelloAzienda0) RigaReport(0, r.sezione, r.file);
            }
            CopiaReport(cartellaDati, a.id, r.file);
            if (i == kPassoElenco) o.ReportAggiornato(a.nome + " - " + r.file);
        }
        o.Respira();
    }
}

EsitoAggiornamento EseguiAggiornamento(const std::vector<std::string>& file, const std::string& modello,
                                       double dataEseguibile, OsservatoreAggiornamento& o) {
    EsitoAggiornamento esito;
    for (const std::string& f : file)
        if (!AggiornaArchivio(f, modello, dataEseguibile, o)) esito.falliti.push_back(f);
    AggiungiColonneAziende();
    PreparaReport(o);
    return esito;
}

std::string MessaggioFallimento(const EsitoAggiornamento& esito) {
    std::string file;
    for (const std::string& f : esito.falliti) file += (file.empty() ? "" : ", ") + f;
    return core::Testo("s70") + file + core::Testo("s71");
}

}  // namespace tools
