#include "core/impostazioni.h"

#include <filesystem>

#include "core/ini.h"
#include "core/session.h"
#include "store/errors.h"

namespace core {

namespace fs = std::filesystem;

namespace {
const char* const kImpostazioni = "Impostazioni.ini";
const char* const kLingua = "Lang.lng";
const char* const kItaliano = "Italiano.lng";
}  // namespace

std::string PercorsoProgramma(const std::string& nome) {
    std::string cartella = session().CartellaProgramma;
    if (!cartella.empty() && cartella.back() != '/') cartella += '/';
    return cartella + nome;
}

std::string LeggiIni(const std::string& sezione, const std::string& chiave) {
    return LeggiValoreIni(PercorsoProgramma(kImpostazioni), sezione, chiave);
}

void ScriviIni(const std::string& sezione, const std::string& chiave, const std::string& valore) {
    ScriviValoreIni(PercorsoProgramma(kImpostazioni), sezione, chiave, valore);
}

std::string LeggiLingua(const std::string& sezione, const std::string& chiave) {
    return LeggiValoreIni(PercorsoProgramma(kLingua), sezione, chiave);
}

void ScriviLingua(const std::string& sezione, const std::string& chiave, const std::string& valore) {
    ScriviValoreIni(PercorsoProgramma(kLingua), sezione, chiave, valore);
}

std::string Testo(const std::string& chiave) { return LeggiLingua("Stringhe", chiave); }

namespace {
bool ChiaveLingua(const std::string& s) {
    if (s.size() < 2 || s[0] != 's') return false;
    for (size_t i = 1; i < s.size(); ++i)
        if (s[i] < '0' || s[i] > '9') return false;
    return true;
}
}  // namespace

std::string Didascalia(const std::string& chiaveOTesto) {
    return ChiaveLingua(chiaveOTesto) ? Testo(chiaveOTesto) : chiaveOTesto;
}

void RipristinaLingua() {
    const std::string italiano = PercorsoProgramma(kItaliano);
    const std::string lingua = PercorsoProgramma(kLingua);
    if (!fs::exists(italiano)) store::raise(53, italiano);
    std::error_code ec;
    fs::remove(lingua, ec);
    if (!ec) fs::copy_file(italiano, lingua, fs::copy_options::overwrite_existing, ec);
    if (ec) store::raise(75, lingua + " (" + ec.message() + ")");
    ScriviLingua("Parametri", "File", italiano);
}

}  // namespace core
