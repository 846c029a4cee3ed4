#include "core/esportazione.h"

#include <filesystem>

namespace core {

namespace fs = std::filesystem;

namespace {

bool SolaLettura(const fs::path& p) {
    std::error_code ec;
    const fs::perms permessi = fs::status(p, ec).permissions();
    if (ec) return false;
    return (permessi & (fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write)) == fs::perms::none;
}

FabbricaAvanzamento& fabbricaAvanzamento() {
    static FabbricaAvanzamento f;
    return f;
}

std::function<void(const std::string&)>& apriFile() {
    static std::function<void(const std::string&)> f;
    return f;
}

class NessunAvanzamento : public Avanzamento {
public:
    void Passo(long) override {}
};

}  // namespace

std::string ControllaNomeFile(const std::string& nome) {
    if (nome.empty()) return "Indicare il nome del file!";
    for (unsigned char c : nome) {
        if (c < 32 || std::string_view("\\/:*?\"<>|").find(static_cast<char>(c)) != std::string_view::npos)
            return "Il nome \"" + nome + "\" non può essere usato per un file: non deve contenere i caratteri \\ / : * ? \" < > |";
    }
    if (nome.back() == ' ' || nome.back() == '.' || nome == "." || nome == "..")
        return "Il nome \"" + nome + "\" non può essere usato per un file: non deve finire con uno spazio o un punto.";
    return {};
}

FileEsportazione::FileEsportazione(std::string percorso, bool apri) : percorso_(std::move(percorso)) {
    const fs::path finale(percorso_);
    if (std::string errore = ControllaNomeFile(finale.filename().string()); !errore.empty())
        throw ErroreEsportazione(errore);
    const fs::path cartella = finale.has_parent_path() ? finale.parent_path() : fs::path(".");
    std::error_code ec;
    if (!fs::is_directory(cartella, ec))
        throw ErroreEsportazione("La cartella " + cartella.string() + " non esiste!");
    if (SolaLettura(cartella))
        throw ErroreEsportazione("La cartella " + cartella.string() + " è di sola lettura: impossibile salvarvi il file.");
    if (fs::exists(finale, ec)) {
        if (fs::is_directory(finale, ec))
            throw ErroreEsportazione("Esiste già una cartella di nome " + percorso_ + "!");
        if (SolaLettura(finale))
            throw ErroreEsportazione("Il file " + percorso_ + " è di sola lettura: impossibile sovrascriverlo.");
    }
    temporaneo_ = percorso_ + ".~tmp";
    file_ = std::fopen(temporaneo_.c_str(), "wb");
    if (!file_) throw ErroreEsportazione("Impossibile scrivere nella cartella " + cartella.string() + "!");
    if (!apri) {
        std::fclose(file_);
        file_ = nullptr;
    }
}

FileEsportazione::~FileEsportazione() {
    if (file_) std::fclose(file_);
    if (!concluso_) {
        std::error_code ec;
        fs::remove(temporaneo_, ec);
    }
}

void FileEsportazione::Scrivi(std::string_view byte) {
    if (!file_ || std::fwrite(byte.data(), 1, byte.size(), file_) != byte.size())
        throw ErroreEsportazione("Errore durante la scrittura del file " + percorso_ + ": il disco potrebbe essere pieno.");
}

void FileEsportazione::Concludi() {
    if (file_) {
        const bool chiuso = std::fclose(file_) == 0;
        file_ = nullptr;
        if (!chiuso) throw ErroreEsportazione("Errore durante la scrittura del file " + percorso_ + ": il disco potrebbe essere pieno.");
    }
    std::error_code ec;
    fs::rename(temporaneo_, percorso_, ec);
    if (ec) throw ErroreEsportazione("Impossibile salvare il file " + percorso_ + ": " + ec.message());
    concluso_ = true;
}

void installaAvanzamento(FabbricaAvanzamento fabbrica) { fabbricaAvanzamento() = std::move(fabbrica); }

std::unique_ptr<Avanzamento> ApriAvanzamento(const std::string& testo, long totale) {
    if (fabbricaAvanzamento()) {
        if (auto a = fabbricaAvanzamento()(testo, totale)) return a;
    }
    return std::make_unique<NessunAvanzamento>();
}

void installaApriFile(std::function<void(const std::string& percorso)> apri) { apriFile() = std::move(apri); }

void ApriFile(const std::string& percorso) {
    if (apriFile()) apriFile()(percorso);
}

}  // namespace core
