#include "core/esercizi.h"

#include <filesystem>

#include "core/avvio.h"
#include "core/aziende.h"
#include "core/dialogs.h"
#include "core/services.h"
#include "core/session.h"
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
    if (fs::exists(fs::path(FileEsercizio(nome)))) return EsercizioErrato{Testo("s80") + " '" + nome + "'", 0};
    if (PeriodoSovrapposto(azienda, data)) return EsercizioErrato{Testo("s79"), 1};
    return std::nullopt;
}

long CreaEsercizioVuoto(long azienda, const std::string& nome, double dal) {
    const std::string file = FileEsercizio(nome);
    store::model::GeneraArchivioVuoto(file);
    const long id = SalvaRigaEsercizio(azienda, nome, dal, file);
    session().IDEsercizio = id;
    return id;
}

}  // namespace core
