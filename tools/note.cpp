#include "tools/note.h"

#include "core/impostazioni.h"
#include "core/varie.h"
#include "store/convert.h"
#include "store/errors.h"

namespace tools {

namespace {

std::string N(long n) { return std::to_string(n); }

// Past this size a text column cannot hold the field: it is kept as a memo, as a field with no limit.
constexpr long kTestoMassimo = 255;

long caratteri(const std::string& utf8) {
    long n = 0;
    for (unsigned char c : utf8)
        if ((c & 0xC0) != 0x80) ++n;
    return n;
}

long lungo(const store::Value& v) { return v.isNull() ? 0 : store::CLng(v); }

}  // namespace

std::vector<CampoNota> CampiCategoria(store::Database& archivio, long categoria) {
    std::vector<CampoNota> campi;
    auto rs = archivio.OpenRecordset("Select * from NoteCampi where Note=" + N(categoria) + " order by ID");
    for (; !rs->Eof(); rs->MoveNext())
        campi.push_back({lungo(rs->get("ID")), store::ConcatText(rs->get("NomeCampo")), lungo(rs->get("Dimensione"))});
    return campi;
}

std::vector<CampoNota> PreparaVistaNote(store::Database& archivio, store::Database& temp, long categoria) {
    const std::vector<CampoNota> campi = CampiCategoria(archivio, categoria);
    if (temp.TableExists("Note")) temp.DeleteTableDef("Note");
    store::TableDef t;
    t.Name = "Note";
    t.Fields.push_back(store::TableDef::CreateField("ID", store::FieldType::Long));
    for (const CampoNota& c : campi) {
        const bool memo = c.dimensione <= 0 || c.dimensione > kTestoMassimo;
        store::FieldDef f = store::TableDef::CreateField(c.nome, memo ? store::FieldType::Memo : store::FieldType::Text,
                                                         memo ? 0 : static_cast<int>(c.dimensione));
        f.AllowZeroLength = true;
        t.Fields.push_back(f);
    }
    temp.AppendTableDef(t);

    auto dettagli = archivio.OpenRecordset(
        "Select NoteDettagli.*, NoteCampi.NomeCampo FROM NoteDettagli LEFT JOIN NoteCampi ON NoteDettagli.Campo = "
        "NoteCampi.ID where NoteDettagli.Note=" +
        N(categoria) + " order by NoteDettagli.Record,NoteDettagli.Campo");
    auto vista = temp.OpenRecordset("Select * from [Note]");
    long corrente = -1;
    bool aperto = false;
    for (; !dettagli->Eof(); dettagli->MoveNext()) {
        const long record = lungo(dettagli->get("Record"));
        if (record != corrente) {
            if (aperto) vista->Update();
            vista->AddNew();
            vista->set("ID", store::Value::Long(static_cast<std::int32_t>(record)));
            corrente = record;
            aperto = true;
        }
        const store::Value nome = dettagli->get("NomeCampo");
        // A value whose field is gone has no column to go in.
        if (!nome.isNull()) vista->set(store::ConcatText(nome), dettagli->get("Valore"));
    }
    if (aperto) vista->Update();
    return campi;
}

std::string ControllaScheda(store::Database& archivio, long categoria, const ValoriScheda& valori) {
    const std::vector<CampoNota> campi = CampiCategoria(archivio, categoria);
    for (const auto& [campo, valore] : valori) {
        const CampoNota* c = nullptr;
        for (const CampoNota& x : campi)
            if (x.id == campo) c = &x;
        if (!c) return "Il campo " + N(campo) + " non appartiene alla categoria: la scheda non è stata salvata.";
        if (c->dimensione > 0 && caratteri(valore) > c->dimensione)
            return "Il campo " + c->nome + " ammette al massimo " + N(c->dimensione) + " caratteri.";
    }
    return {};
}

long SalvaScheda(store::Database& archivio, long categoria, long record, const ValoriScheda& valori) {
    const std::string errore = ControllaScheda(archivio, categoria, valori);
    if (!errore.empty()) store::raise(5, errore);
    if (record == 0) {
        auto rs = archivio.OpenRecordset("Select Max(Record) as NewID from NoteDettagli");
        record = lungo(rs->get("NewID")) + 1;
    }
    const std::string nota = N(categoria);
    for (const auto& [campo, valore] : valori) {
        const std::string testo = "'" + core::Apici(valore) + "'";
        auto esiste = archivio.OpenRecordset("Select * from NoteDettagli where [Note]=" + nota +
                                             " and Campo=" + N(campo) + " and Record=" + N(record));
        if (esiste->Eof()) {
            auto id = archivio.OpenRecordset("Select Max(ID) as NewID from NoteDettagli");
            archivio.Execute("Insert Into NoteDettagli (ID,[Note],Campo,Valore,Record) Values (" +
                             N(lungo(id->get("NewID")) + 1) + "," + nota + "," + N(campo) + "," + testo + "," +
                             N(record) + ")");
        } else {
            archivio.Execute("Update NoteDettagli set Valore=" + testo + " where [Note]=" + nota +
                             " and Campo=" + N(campo) + " and Record=" + N(record));
        }
    }
    return record;
}

std::string ControllaCampo(store::Database& archivio, long categoria, long campo, const std::string& nome,
                           long dimensione) {
    if (core::Trim(nome).empty()) return core::Testo("s137");
    if (dimensione < 0) return "La dimensione non può essere negativa!";
    // The view numbers its rows in a column ID of its own.
    if (store::AsciiLower(core::Trim(nome)) == "id") return "Il nome ID è riservato: sceglierne un altro.";
    auto uguali = archivio.OpenRecordset("Select ID from NoteCampi where [Note]=" + N(categoria) +
                                         " and NomeCampo='" + core::Apici(core::Trim(nome)) + "' and ID<>" + N(campo));
    if (!uguali->Eof()) return "Esiste già un campo " + core::Trim(nome) + " in questa categoria!";
    if (campo != 0) {
        auto rs = archivio.OpenRecordset("Select Dimensione from NoteCampi where ID=" + N(campo));
        if (!rs->Eof()) {
            const long prima = lungo(rs->get("Dimensione"));
            // 0 is no limit: every size is smaller than that.
            const bool minore = prima == 0 ? dimensione != 0 : dimensione != 0 && dimensione < prima;
            if (minore) return "Impossibile inserire una dimensione inferiore a quella precedente !";
        }
    }
    return {};
}

void EliminaScheda(store::Database& archivio, long record) {
    archivio.Execute("Delete from NoteDettagli where Record=" + N(record));
}

void EliminaCampo(store::Database& archivio, long campo) {
    archivio.Execute("Delete from NoteDettagli where Campo=" + N(campo));
    archivio.Execute("Delete from NoteCampi where ID=" + N(campo));
}

void EliminaCategoria(store::Database& archivio, long categoria) {
    archivio.Execute("Delete from NoteDettagli where Note=" + N(categoria));
    archivio.Execute("Delete from NoteCampi where Note=" + N(categoria));
    archivio.Execute("Delete from [Note] where ID=" + N(categoria));
}

}  // namespace tools
