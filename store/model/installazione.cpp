// The files an installation supplies, and the generator of empty archives.
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "store/model/model.h"
#include "store/names.h"

namespace fs = std::filesystem;

namespace store::model {

namespace {

void inserisciModelliReport(Database& db) {
    long id = 0;
    for (const ModelloReport& m : ModelliReport())
        db.Execute("Insert Into FormReport (ID,Azienda,Sezione,Report,Predefinito) VALUES (" + std::to_string(++id) +
                   ",0," + detail::quoteText(m.sezione) + "," + detail::quoteText(m.report) + ",1)");
}

struct Comune {
    std::string nome, cap, provincia;
};

std::vector<std::string> dividi(const std::string& riga, char separatore) {
    std::vector<std::string> parti(1);
    for (char c : riga) {
        if (c == separatore) parti.emplace_back();
        else if (c != '\r') parti.back() += c;
    }
    return parti;
}

// The TSV file: a header line, then name, CAP and province separated by tabs.
std::vector<Comune> leggiComuni(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw std::runtime_error("Impossibile aprire l'elenco dei comuni: " + file);
    std::vector<Comune> comuni;
    std::string riga;
    for (int n = 1; std::getline(in, riga); ++n) {
        if (n == 1 || riga.empty()) continue;
        std::vector<std::string> parti = dividi(riga, '\t');
        if (parti.size() != 3 || parti[0].empty())
            throw std::runtime_error(file + ", riga " + std::to_string(n) + ": attesi comune, CAP e provincia");
        comuni.push_back({parti[0], parti[1], parti[2]});
    }
    return comuni;
}

void inserisciComuni(Database& db, const std::vector<Comune>& comuni) {
    std::vector<std::vector<Value>> righe;
    righe.reserve(comuni.size());
    std::int32_t id = 0;
    for (const Comune& c : comuni)
        righe.push_back({Value::Long(++id), Value::Text(c.nome), Value::Text(c.cap), Value::Text(c.provincia)});
    InserisciRighe(db, "Comuni", {"ID", "Comune", "Cap", "Provincia"}, righe);
}

DatabasePtr nuovoFile(const fs::path& path) {
    std::error_code ec;
    fs::remove(path, ec);
    if (path.has_parent_path()) fs::create_directories(path.parent_path());
    return Workspace::Default().CreateDatabase(path.string());
}

template <typename Scrivi>
void scriviFile(const fs::path& path, Scrivi scrivi) {
    DatabasePtr db = nuovoFile(path);
    try {
        scrivi(*db);
    } catch (...) {
        db->Close();
        throw;
    }
    db->Close();
}

}  // namespace

const std::vector<ModelloReport>& ModelliReport() {
    static const std::vector<ModelloReport> modelli{
        {"Fatture", "Fatture.rpf"},
        {"NoteDebito", "NoteDebito.rpf"},
        {"Preventivi", "Preventivi.rpf"},
        {"RitenutaAcconto", "Ritenuta Acconto.rpf"},
        {"Clienti", "Clienti.rpf"},
        {"Fornitori", "Fornitori.rpf"},
        {"Servizi", "Servizi.rpf"},
        {"Spese", "Spese.rpf"},
        {"Scadenze", "Scadenze.rpf"},
        {"Pagamenti", "Pagamenti.rpf"},
        {"PrimaNota", "PrimaNota.rpf"},
        {"PrimaNota2", "PrimaNota2.rpf"},
        {"PrimaNota3", "PrimaNota3.rpf"},
        {"Estratto", "Estratto.rpf"},
        {"EstrattoContoGeneraleGruppi", "EstrattoContoGeneraleGruppi.rpf"},
        {"Bilancio", "Bilancio.rpf"},
    };
    return modelli;
}

void CreaAziende(Database& db) {
    CreaTabelle(db, TabelleAziende());
    CreaQuery(db, QueryAziende());
    inserisciModelliReport(db);
}

void CreaUtilita(Database& db, const std::string& fileComuni) {
    std::vector<Comune> comuni = leggiComuni(fileComuni);
    CreaTabelle(db, TabelleUtilita());
    inserisciComuni(db, comuni);
}

void GeneraArchivioVuoto(const std::string& path) {
    scriviFile(path, [](Database& db) { CreaArchivio(db); });
}

void ScriviFileInstallazione(const std::string& programFolder, const std::string& dataFolder) {
    const fs::path programma(programFolder);
    const fs::path comuni = fs::path(dataFolder) / "comuni.tsv";
    GeneraArchivioVuoto((programma / "Servizio.mdb").string());
    scriviFile(programma / "Base" / "Aziende.mdb", [](Database& db) { CreaAziende(db); });
    scriviFile(programma / "temp.mdb", [](Database& db) { CreaTemp(db); });
    scriviFile(programma / "Utilità.mdb", [&](Database& db) { CreaUtilita(db, comuni.string()); });
}

std::string CartellaDatiSorgente() {
#ifdef BREVANO_DATA_DIR
    return BREVANO_DATA_DIR;
#else
    return "data";
#endif
}

}  // namespace store::model
