// genmodel <programFolder> [dataFolder]: writes Servizio.mdb, Base/Aziende.mdb, temp.mdb and
// Utilità.mdb into the program folder, and copies the language file Italiano.lng beside them.
#include <exception>
#include <filesystem>
#include <iostream>

#include "store/model/model.h"

namespace fs = std::filesystem;

namespace {

void copiaLingua(const fs::path& dati, const fs::path& programma) {
    const fs::path lingua = dati / "Italiano.lng";
    if (fs::exists(lingua)) fs::copy_file(lingua, programma / "Italiano.lng", fs::copy_options::overwrite_existing);
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
