#include "core/installazione.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace core {

const std::vector<std::string>& FileDellaCartellaProgramma() {
    static const std::vector<std::string> file = {"Impostazioni.ini", "Servizio.mdb", "Base/Aziende.mdb", "temp.mdb",
                                                  "Utilità.mdb",      "Italiano.lng", "Lang.lng",         "guida"};
    return file;
}

std::string CartellaDiLavoro(const std::string& installata, bool scrivibile, const std::string& utente) {
    if (scrivibile) return installata;
    const fs::path da(installata), a(utente);
    fs::create_directories(a);
    std::vector<fs::path> daCopiare;
    for (const std::string& nome : FileDellaCartellaProgramma()) daCopiare.push_back(nome);
    std::error_code ec;
    for (const auto& voce : fs::directory_iterator(da, ec))
        if (voce.path().extension() == ".rpf") daCopiare.push_back(voce.path().filename());
    for (const fs::path& relativo : daCopiare) {
        const fs::path sorgente = da / relativo, destinazione = a / relativo;
        if (!fs::exists(sorgente, ec) || fs::exists(destinazione, ec)) continue;
        fs::create_directories(destinazione.parent_path());
        // A copy taken under a hidden name and renamed: a start cut short leaves no half file.
        const fs::path provvisorio = destinazione.parent_path() / ("." + destinazione.filename().string() + ".copia");
        fs::remove_all(provvisorio, ec);
        fs::copy(sorgente, provvisorio, fs::copy_options::recursive);
        fs::rename(provvisorio, destinazione);
    }
    return a.string();
}

}  // namespace core
