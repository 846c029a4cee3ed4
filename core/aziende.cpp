#include "core/aziende.h"

#include <filesystem>
#include <vector>

#include "core/backup.h"
#include "core/dialogs.h"
#include "core/services.h"
#include "core/session.h"
#include "store/convert.h"

namespace fs = std::filesystem;

namespace core {

namespace {

fs::path Percorso(const std::string& testo) { return fs::path(testo); }
std::string Testo8(const fs::path& p) { return p.string(); }

fs::path MasterDi(const std::string& cartella) { return Percorso(cartella) / "Aziende.mdb"; }

void ApriMaster(const std::string& cartella) {
    CompletaRipristinoInterrotto(cartella);
    session().dbAziende = store::Workspace::Default().OpenDatabase(Testo8(MasterDi(cartella)));
    SegnaCartellaInUso(cartella);
}

fs::path CartellaReportDi(long idAzienda) { return Percorso(CartellaDati()) / "Report" / std::to_string(idAzienda); }

void CreaCartellaReport(long idAzienda) {
    fs::create_directories(CartellaReportDi(idAzienda));
}

void CopiaRigheReport(long idAzienda) {
    store::Database& db = *session().dbAziende;
    auto modelli = db.OpenRecordset("Select * from FormReport where Azienda=0");
    struct Riga { store::Value sezione, report, predefinito; };
    std::vector<Riga> righe;
    for (; !modelli->Eof(); modelli->MoveNext())
        righe.push_back({modelli->get("Sezione"), modelli->get("Report"), modelli->get("Predefinito")});
    modelli->Close();
    auto nuove = db.OpenRecordset("Select * from FormReport where ID<0");
    for (const Riga& r : righe) {
        nuove->AddNew();
        NuovoID(*nuove, session().dbAziende);
        nuove->set("Azienda", store::Value::Long(static_cast<std::int32_t>(idAzienda)));
        nuove->set("Sezione", r.sezione);
        nuove->set("Report", r.report);
        nuove->set("Predefinito", r.predefinito);
        nuove->Update();
    }
}

void CopiaFileReport(long idAzienda) {
    const fs::path destinazione = CartellaReportDi(idAzienda);
    for (const auto& voce : fs::directory_iterator(Percorso(session().CartellaProgramma))) {
        if (!voce.is_regular_file() || voce.path().extension() != ".rpf") continue;
        fs::copy_file(voce.path(), destinazione / voce.path().filename(), fs::copy_options::overwrite_existing);
    }
}

bool ConfermaDoppia(const std::string& denominazione) {
    if (MsgBox(Testo("s95") + denominazione + Testo("s96"), vbYesNo + vbQuestion) != vbYes) return false;
    return MsgBox(Testo("s97") + denominazione + Testo("s98"), vbYesNo + vbQuestion) == vbYes;
}

void EliminaEserciziDi(long idAzienda) {
    store::Database& db = *session().dbAziende;
    const std::string dove = " where Azienda=" + std::to_string(idAzienda);
    std::vector<fs::path> archivi;
    auto rs = db.OpenRecordset("Select * from Esercizi" + dove);
    for (; !rs->Eof(); rs->MoveNext()) archivi.push_back(Percorso(store::ConcatText(rs->get("File"))));
    rs->Close();
    for (const fs::path& file : archivi)
        if (!file.empty() && fs::exists(file)) fs::remove(file);
    db.Execute("Delete * from Esercizi" + dove);
}

}  // namespace

std::string CartellaDati() {
    const auto& db = session().dbAziende;
    if (!db) return LeggiIni("Azienda", "PATH");
    return Testo8(Percorso(db->Name()).parent_path());
}

std::string ApriConfigurazione() {
    Session& s = session();
    const fs::path masterProgramma = MasterDi(s.CartellaProgramma);
    if (!s.dbAziende && fs::exists(masterProgramma))
        s.dbAziende = store::Workspace::Default().OpenDatabase(Testo8(masterProgramma));
    std::string cartella = LeggiIni("Azienda", "PATH");
    if (Trim(cartella).empty()) cartella = s.CartellaProgramma;
    ScriviIni("Azienda", "PATH", cartella);
    if (!fs::exists(MasterDi(cartella))) {
        // A first run from a fresh installation: the program folder becomes a data folder.
        ScegliCartellaDati(cartella);
        return cartella;
    }
    ApriMaster(cartella);
    return cartella;
}

void ScegliCartellaDati(const std::string& cartella) {
    const fs::path master = MasterDi(cartella);
    if (!fs::exists(master))
        fs::copy_file(Percorso(session().CartellaProgramma) / "Base" / "Aziende.mdb", master);
    ScriviIni("Azienda", "PATH", cartella);
    ApriMaster(cartella);
}

bool ConfermaConfigurazione(const std::string& cartella, long azienda, long esercizio) {
    if (esercizio == 0) {
        MsgBox(Testo("s202"), vbExclamation);
        return false;
    }
    Session& s = session();
    s.IDAzienda = azienda;
    s.IDEsercizio = esercizio;
    ScriviIni("Azienda", "PATH", cartella);
    ScriviIni("Azienda", "ID", std::to_string(azienda));
    ScriviIni("Archivio", "ID", std::to_string(esercizio));
    return true;
}

std::string ControllaAzienda(const std::string& denominazione) {
    return Trim(denominazione).empty() ? "s83" : "";
}

void PreparaNuovaAzienda(long idAzienda) {
    CreaCartellaReport(idAzienda);
    CopiaRigheReport(idAzienda);
    CopiaFileReport(idAzienda);
}

bool EliminaAzienda(long idAzienda, const std::string& denominazione) {
    if (idAzienda == session().IDAzienda) {
        MsgBox(Testo("s93") + denominazione + Testo("s94"), vbExclamation);
        return false;
    }
    if (!ConfermaDoppia(denominazione)) return false;
    EliminaEserciziDi(idAzienda);
    fs::remove_all(CartellaReportDi(idAzienda));
    return true;
}

const TabellaCampi& CampiAziende() {
    static const TabellaCampi t{
        {"Denominazione", "s101", 3500}, {"Indirizzo", "Indirizzo"},        {"Cap", "Cap"},
        {"Citta", "s104", 2000},          {"Provincia", "Provincia"},        {"PartitaIva", "s106", 1600},
        {"CodiceFiscale", "Codice Fiscale"}, {"Telefono", "Telefono"},       {"Fax", "Fax"},
    };
    return t;
}

}  // namespace core
