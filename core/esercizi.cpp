#include "core/esercizi.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "core/archivio_sql.h"
#include "core/avvio.h"
#include "core/aziende.h"
#include "core/dialogs.h"
#include "core/services.h"
#include "core/session.h"
#include "core/varie.h"
#include "store/dao.h"
#include "store/errors.h"
#include "store/clock.h"
#include "store/convert.h"
#include "store/model/model.h"

namespace fs = std::filesystem;

namespace core {

namespace {

const double kSenzaFine = store::DateSerial(9999, 12, 31);
const double kSenzaData = *store::ParseDateText("0.00.00");

bool Vuoto(const std::string& testo) { return Trim(testo).empty(); }
bool NonData(const std::string& testo) { return !store::IsDate(store::Value::Text(testo)); }

std::optional<CampoErrato> ControllaData(const std::string& testo, const char* chiaveVuoto, int campo) {
    if (Vuoto(testo)) return CampoErrato{chiaveVuoto, campo};
    if (NonData(testo)) return CampoErrato{"s81", campo};
    return std::nullopt;
}

bool PeriodoSovrapposto(long azienda, const std::string& data) {
    const std::string d = store::ShortDate(store::DateValue(store::Value::Text(data)));
    auto rs = session().dbAziende->OpenRecordset(
        "Select * from Esercizi where Azienda=" + std::to_string(azienda) + " and DateValue(Dal)<=DateValue('" + d +
        "') and DateValue(Al)>=DateValue('" + d + "')");
    return !rs->Eof();
}

bool EsisteRiga(const char* campo, const std::string& valore) {
    return !session().dbAziende->OpenRecordset("Select ID from Esercizi where " + std::string(campo) + "='" +
                                               Apici(valore) + "'")->Eof();
}

// A period of any company already bears that name (its archive may lie elsewhere).
bool NomeUsato(const std::string& nome) { return EsisteRiga("Nome", nome); }

long SalvaRigaEsercizio(long azienda, const std::string& nome, double dal, const std::string& file) {
    auto rs = session().dbAziende->OpenRecordset("Select * from Esercizi where ID<0");
    rs->AddNew();
    NuovoID(*rs, session().dbAziende);
    rs->set("Azienda", store::Value::Long(static_cast<std::int32_t>(azienda)));
    rs->set("DataAggiornamento", store::Value::Date(DataEseguibile()));
    rs->set("File", store::Value::Text(file));
    rs->set("Nome", store::Value::Text(nome));
    rs->set("Dal", store::Value::Date(dal));
    const long id = store::CLng(rs->get("ID"));
    rs->Update();
    return id;
}

// What is fully settled on or before the date D leaves the new archive: children before their
// Documenti and Spese rows, because the joins read the parents' Pagato and Pagata.
const char* const kPrimaDelSaldo[] = {
    "Delete Movimenti.* from Movimenti LEFT JOIN Documenti ON Movimenti.Documento = Documenti.ID WHERE "
    "(((Documenti.Pagato)=True)) And DateValue(Documenti.Data)<=DateValue('D')",
    "Delete MovimentiSpese.* from MovimentiSpese LEFT JOIN Spese ON MovimentiSpese.Spesa = Spese.ID WHERE "
    "(((Spese.Pagata)=True)) And DateValue(Spese.Data)<=DateValue('D')",
    "Delete SpeseDocumenti.* from SpeseDocumenti LEFT JOIN Documenti ON SpeseDocumenti.Documento = Documenti.ID "
    "WHERE (((Documenti.Pagato)=True)) And DateValue(Documenti.Data)<=DateValue('D')",
    "Delete Pagamenti.* from Pagamenti LEFT JOIN Documenti ON Pagamenti.Documento = Documenti.ID WHERE "
    "Documenti.Pagato=True And DateValue(Documenti.Data)<=DateValue('D')",
    "Delete Pagamenti.* from Pagamenti LEFT JOIN Spese ON Pagamenti.Spesa = Spese.ID WHERE Spese.Pagata=True And "
    "DateValue(Spese.Data)<=DateValue('D')",
};
const char* const kDopoIlSaldo[] = {
    "Delete Scadenze.* from Scadenze LEFT JOIN Documenti ON Scadenze.Documento = Documenti.ID WHERE "
    "Documenti.Pagato=True And DateValue(Documenti.Data)<=DateValue('D')",
    "Delete Scadenze.* from Scadenze LEFT JOIN Spese ON Scadenze.Spesa = Spese.ID WHERE Spese.Pagata=True And "
    "DateValue(Spese.Data)<=DateValue('D')",
    "Delete Documenti.* from Documenti Where Pagato=True And DateValue(Documenti.Data)<=DateValue('D')",
    "Delete Spese.* from Spese Where Pagata=True And DateValue(Spese.Data)<=DateValue('D')",
};

std::string ConData(const char* modello, const std::string& data) {
    std::string sql = modello;
    const std::string segnaposto = "DateValue('D')";
    const std::string vero = "DateValue('" + data + "')";
    for (auto pos = sql.find(segnaposto); pos != std::string::npos; pos = sql.find(segnaposto, pos + vero.size()))
        sql.replace(pos, segnaposto.size(), vero);
    return sql;
}

std::string RigaSaldo(int id, const std::string& data, double saldo, int destinazione) {
    return "Insert Into PrimaNota (ID,Data,Descrizione,Importo,Tipo,Destinazione,Pagamento,TipoPagamento,Numero,CC) "
           "VALUES (" +
           std::to_string(id) + ",'" + data + "','Saldo esercizio precedente'," + NumeroSql(std::abs(saldo)) + "," +
           (saldo < 0 ? "1" : "0") + "," + std::to_string(destinazione) + ",0,'',0,'')";
}

// The archive of the company's last period, or "" when it has none.
std::string UltimoArchivio(long azienda) {
    auto rs = session().dbAziende->OpenRecordset("Select * from Esercizi where Azienda=" + std::to_string(azienda) +
                                                 " Order By Al Desc");
    return rs->Eof() ? "" : store::CStr(rs->get("File"));
}

void Rimuovi(const fs::path& p) {
    std::error_code ec;
    fs::remove(p, ec);
    fs::remove(fs::path(p.string() + "-journal"), ec);
}

// While a new period takes its name, a hidden mark beside its archive says that the archive has no
// row in Esercizi yet: the row is written last, and the mark dropped after it.
fs::path MarcaCreazione(const fs::path& file) { return file.parent_path() / ("." + file.filename().string() + ".creazione"); }

void Marca(const fs::path& file) {
    std::ofstream out(MarcaCreazione(file), std::ios::trunc);
    if (!out) store::raise(store::err::ErroreDiscoORete, MarcaCreazione(file).string());
}

// A creation cut short between its archive and its row (the program killed) left a marked archive
// that no period names: it goes, and the name is free again. A mark whose row was written is dropped.
void RimuoviCreazioneInterrotta(const fs::path& file) {
    std::error_code ec;
    if (!fs::exists(MarcaCreazione(file), ec)) return;
    if (!EsisteRiga("File", file.string())) Rimuovi(file);
    fs::remove(MarcaCreazione(file), ec);
}

}  // namespace

std::optional<CampoErrato> ControllaPeriodo(const std::string& dal, const std::string& al) {
    if (auto e = ControllaData(dal, "s243", 0)) return e;
    return ControllaData(al, "s244", 1);
}

std::optional<double> FineProposta(bool modifica) {
    if (!modifica) return store::Oggi();
    const double fine = DataFineEsercizio();
    if (fine == kSenzaFine) return std::nullopt;
    return fine;
}

bool ScriviFinePeriodo(double al) {
    if (store::DateValue(store::Value::Date(al)) <= DataInizioEsercizio()) {
        MsgBox(Testo("s59"), vbExclamation);
        return false;
    }
    // No WHERE: every period of every company takes this end date. That reach is the program's
    // behaviour and other commands (a new period looks for rows with no end) rely on it.
    session().dbAziende->Execute("Update Esercizi set Al='" + store::ShortDate(al) + "'");
    return true;
}

bool ChiusuraAbilitataSenzaFine() { return DataFineEsercizio() == kSenzaFine; }
bool ChiusuraAbilitataSenzaData() { return DataFineEsercizio() == kSenzaData; }

std::string FileEsercizio(const std::string& nome) {
    return (fs::path(CartellaDati()) / fs::path(nome + ".mdb")).string();
}

std::optional<EsercizioErrato> ControllaNuovoEsercizio(long azienda, const std::string& nome,
                                                       const std::string& data) {
    if (Vuoto(nome)) return EsercizioErrato{Testo("s83"), 0};
    if (Vuoto(data) || NonData(data)) return EsercizioErrato{Testo("s81"), 1};
    RimuoviCreazioneInterrotta(FileEsercizio(nome));
    if (fs::exists(fs::path(FileEsercizio(nome))) || NomeUsato(nome))
        return EsercizioErrato{Testo("s80") + " '" + nome + "'", 0};
    if (PeriodoSovrapposto(azienda, data)) return EsercizioErrato{Testo("s79"), 1};
    return std::nullopt;
}

long CreaEsercizioVuoto(long azienda, const std::string& nome, double dal) {
    const std::string file = FileEsercizio(nome);
    RimuoviCreazioneInterrotta(file);
    Marca(file);
    store::model::GeneraArchivioVuoto(file);
    const long id = SalvaRigaEsercizio(azienda, nome, dal, file);
    fs::remove(MarcaCreazione(file));
    session().IDEsercizio = id;
    return id;
}

long CreaEsercizioConRiporto(long azienda, const std::string& nome, double dal, const SaldiIniziali& saldi,
                             const AvanzamentoCopia& avanzamento) {
    const std::string ultimo = UltimoArchivio(azienda);
    if (ultimo.empty()) return CreaEsercizioVuoto(azienda, nome, dal);
    const fs::path file(FileEsercizio(nome));
    RimuoviCreazioneInterrotta(file);
    const fs::path copia = file.parent_path() / ("." + file.filename().string() + ".copia");
    const fs::path compatta = file.parent_path() / ("." + file.filename().string() + ".nuovo");
    Rimuovi(copia);
    Rimuovi(compatta);
    const auto mostra = [&](const std::string& titolo, int percento) {
        if (avanzamento) avanzamento(titolo, percento);
    };
    const std::string d = store::ShortDate(dal);
    constexpr int kPassi = std::size(kPrimaDelSaldo) + std::size(kDopoIlSaldo) + 2;
    int passo = 0;
    const auto avanza = [&](const std::string& titolo) { mostra(titolo, 20 + 70 * ++passo / kPassi); };
    try {
        mostra("Copia dell'archivio " + fs::path(ultimo).filename().string() + " ...", 0);
        store::Workspace::Default().BackupDatabase(ultimo, copia.string(), [&](long fatte, long tutte) {
            mostra("Copia dell'archivio ...", tutte > 0 ? static_cast<int>(20 * fatte / tutte) : 20);
        });
        {
            auto db = store::Workspace::Default().OpenDatabase(copia.string());
            db->SetScratch();  // the hidden copy is dropped on any failure
            for (const char* sql : kPrimaDelSaldo) {
                avanza("Eliminazione dei documenti saldati ...");
                db->Execute(ConData(sql, d));
            }
            avanza("Saldi di apertura ...");
            db->Execute("Delete * from PrimaNota");
            db->Execute(RigaSaldo(1, d, saldi.banca, 0));
            db->Execute(RigaSaldo(2, d, saldi.cassa, 1));
            for (const char* sql : kDopoIlSaldo) {
                avanza("Eliminazione dei documenti saldati ...");
                db->Execute(ConData(sql, d));
            }
            db->Close();
        }
        avanza("Compattazione del nuovo archivio ...");
        store::Workspace::Default().CompactDatabase(copia.string(), compatta.string());
        Rimuovi(copia);
        // The name is taken last, marked until its row is written: until then the period does not exist.
        if (fs::exists(file)) store::raise(store::err::FileGiaEsistente, file.string());
        Marca(file);
        fs::rename(compatta, file);
    } catch (...) {
        Rimuovi(copia);
        Rimuovi(compatta);
        throw;
    }
    const long id = SalvaRigaEsercizio(azienda, nome, dal, file.string());
    fs::remove(MarcaCreazione(file));
    session().IDEsercizio = id;
    mostra("Operazione completata", 100);
    return id;
}

}  // namespace core
