// genmodel <programFolder> [dataFolder]: writes Servizio.mdb, Base/Aziende.mdb, temp.mdb and
// Utilità.mdb into the program folder, and copies the language file Italiano.lng beside them.
#include <exception>
#include <filesystem>
#include <iostream>

#include <fstream>
#include <sstream>

#include "store/convert.h"
#include "store/model/model.h"

namespace fs = std::filesystem;

namespace {

// Lang.lng is the installation's working copy of its language; a first run reads its captions from
// it before anybody has chosen a language, so a new installation starts with Italian. An existing
// working copy is the user's choice and stays.
void scriviCopiaDiLavoro(const fs::path& italiano, const fs::path& programma) {
    const fs::path lingua = programma / "Lang.lng";
    if (fs::exists(lingua)) return;
    std::ifstream in(italiano, std::ios::binary);
    std::stringstream testo;
    testo << in.rdbuf();
    std::string contenuto = testo.str();
    const std::string origine = store::Utf8ToCp1252(italiano.string());
    auto sezione = contenuto.find("[Parametri]");
    auto chiave = sezione == std::string::npos ? sezione : contenuto.find("File=", sezione);
    if (chiave == std::string::npos) {
        contenuto += "\r\n[Parametri]\r\nFile=" + origine + "\r\n";
    } else {
        auto fine = contenuto.find_first_of("\r\n", chiave);
        contenuto.replace(chiave, (fine == std::string::npos ? contenuto.size() : fine) - chiave, "File=" + origine);
    }
    std::ofstream(lingua, std::ios::binary) << contenuto;
}

void copiaLingua(const fs::path& dati, const fs::path& programma) {
    const fs::path lingua = dati / "Italiano.lng";
    if (!fs::exists(lingua)) return;
    fs::copy_file(lingua, programma / "Italiano.lng", fs::copy_options::overwrite_existing);
    scriviCopiaDiLavoro(fs::absolute(programma / "Italiano.lng"), programma);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::cerr << "uso: genmodel <cartella del programma> [cartella dei dati]\n";
        return 2;
    }
    const std::string programma = argv[1];
    const std::string dati = argc == 3 ? argv[2] : store::model::CartellaDatiSorgente();
    try {
        fs::create_directories(programma);
        store::model::ScriviFileInstallazione(programma, dati);
        copiaLingua(dati, programma);
    } catch (const store::JetError& e) {
        std::cerr << "genmodel: errore " << e.number() << ": " << e.what() << "\n";
        return 1;
    } catch (const std::exception& e) {
        std::cerr << "genmodel: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
