#include "core/file.h"

#include <filesystem>

#include "core/session.h"
#include "store/dao.h"
#include "store/errors.h"

namespace core {

namespace fs = std::filesystem;

namespace {

void EliminaFile(const std::string& percorso) {
    std::error_code ec;
    if (!fs::remove(percorso, ec) || ec) store::raise(53, percorso);
}

}  // namespace

void CompattaDatabase(const std::string& percorso) {
    CompattaTramite(percorso, "~tmp" + fs::path(percorso).filename().string());
}

void CompattaTramite(const std::string& percorso, const std::string& nomeCopia) {
    const fs::path originale(percorso);
    const std::string copia = (originale.parent_path() / nomeCopia).string();
    store::Workspace::Default().CompactDatabase(percorso, copia);
    EliminaFile(percorso);
    RinominaFile(copia, originale.filename().string());
}

void RinominaFile(const std::string& percorso, const std::string& nuovoNome) {
    const fs::path da(percorso);
    const fs::path a = da.parent_path() / nuovoNome;
    std::error_code ec;
    if (!fs::exists(da, ec)) store::raise(53, percorso);
    if (fs::exists(a, ec)) store::raise(58, a.string());
    fs::rename(da, a, ec);
    if (ec) store::raise(75, percorso + " (" + ec.message() + ")");
}

std::string CartellaReport() {
    const auto& s = session();
    if (!s.dbAziende) store::raise(91, "(Aziende.mdb non aperto)");
    const std::string cartellaDati = fs::path(s.dbAziende->Name()).parent_path().string();
    return cartellaDati + "/Report/" + std::to_string(s.IDAzienda);
}

}  // namespace core
