#include "core/ini.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <string_view>
#include <vector>

#include "store/convert.h"
#include "store/errors.h"

namespace core {

namespace fs = std::filesystem;

namespace {

using Righe = std::vector<std::string>;  // the file's lines, UTF-8, without line ends

// A file read once is kept until its time stamp or size changes on disk, so that the screens can
// ask for dozens of texts at each load without reading the language file each time.
struct FileInCache {
    fs::file_time_type modificato{};
    std::uintmax_t dimensione = 0;
    Righe righe;
};

std::map<std::string, FileInCache>& cache() {
    static std::map<std::string, FileInCache> c;
    return c;
}

// Blanks and tabs around names and values do not count in an INI file.
std::string_view SenzaSpazi(std::string_view s) {
    const auto primo = s.find_first_not_of(" \t");
    if (primo == std::string_view::npos) return {};
    const auto ultimo = s.find_last_not_of(" \t");
    return s.substr(primo, ultimo - primo + 1);
}

bool StessoNome(std::string_view a, std::string_view b) { return store::CompareText(a, b) == 0; }

Righe DividiRighe(const std::string& testo) {
    Righe righe;
    std::string riga;
    std::istringstream in(testo);
    while (std::getline(in, riga)) {
        if (!riga.empty() && riga.back() == '\r') riga.pop_back();
        righe.push_back(riga);
    }
    return righe;
}

Righe LeggiDalDisco(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream byte;
    byte << in.rdbuf();
    return DividiRighe(store::Cp1252ToUtf8(byte.str()));
}

const Righe& RigheDi(const std::string& file) {
    static const Righe nessuna;
    std::error_code ec;
    const auto modificato = fs::last_write_time(file, ec);
    const auto dimensione = ec ? 0 : fs::file_size(file, ec);
    if (ec) {
        cache().erase(file);
        return nessuna;
    }
    auto& voce = cache()[file];
    if (voce.modificato != modificato || voce.dimensione != dimensione || voce.righe.empty()) {
        voce.righe = LeggiDalDisco(file);
        voce.modificato = modificato;
        voce.dimensione = dimensione;
    }
    return voce.righe;
}

// "[Nome]" gives Nome; any other line gives nothing.
std::optional<std::string_view> NomeSezione(std::string_view riga) {
    riga = SenzaSpazi(riga);
    if (riga.size() < 2 || riga.front() != '[') return std::nullopt;
    const auto chiusa = riga.find(']');
    if (chiusa == std::string_view::npos) return std::nullopt;
    return SenzaSpazi(riga.substr(1, chiusa - 1));
}

struct Coppia {
    std::string_view chiave, valore;
};

std::optional<Coppia> ChiaveValore(std::string_view riga) {
    riga = SenzaSpazi(riga);
    if (riga.empty() || riga.front() == ';' || riga.front() == '[') return std::nullopt;
    const auto uguale = riga.find('=');
    if (uguale == std::string_view::npos) return std::nullopt;
    return Coppia{SenzaSpazi(riga.substr(0, uguale)), SenzaSpazi(riga.substr(uguale + 1))};
}

std::string_view SenzaVirgolette(std::string_view valore) {
    if (valore.size() >= 2 && (valore.front() == '"' || valore.front() == '\'') && valore.back() == valore.front())
        return valore.substr(1, valore.size() - 2);
    return valore;
}

// Cut at a number of characters, not bytes: each Windows-1252 character is one UTF-8 sequence.
std::string TagliaACaratteri(std::string_view testo, std::size_t massimo) {
    std::size_t caratteri = 0;
    for (std::size_t i = 0; i < testo.size(); ++i) {
        const bool inizioCarattere = (static_cast<unsigned char>(testo[i]) & 0xC0) != 0x80;
        if (inizioCarattere && ++caratteri > massimo) return std::string(testo.substr(0, i));
    }
    return std::string(testo);
}

// Index of the section's header line, or npos.
std::size_t TrovaSezione(const Righe& righe, std::string_view sezione) {
    for (std::size_t i = 0; i < righe.size(); ++i) {
        const auto nome = NomeSezione(righe[i]);
        if (nome && StessoNome(*nome, sezione)) return i;
    }
    return std::string::npos;
}

// One past the section's last line: the next header or the end of the file.
std::size_t FineSezione(const Righe& righe, std::size_t intestazione) {
    std::size_t i = intestazione + 1;
    while (i < righe.size() && !NomeSezione(righe[i])) ++i;
    return i;
}

void ScriviSuDisco(const std::string& file, const Righe& righe) {
    std::string testo;
    for (const auto& riga : righe) testo += riga + "\r\n";
    // Written beside the file and renamed over it, so that a reader never sees half a file.
    const std::string provvisorio = file + ".~" + std::to_string(::getpid());
    {
        std::ofstream out(provvisorio, std::ios::binary | std::ios::trunc);
        out << store::Utf8ToCp1252(testo);
        out.flush();
        if (!out) {
            std::remove(provvisorio.c_str());
            store::raise(75, file);
        }
    }
    std::error_code ec;
    fs::rename(provvisorio, file, ec);
    if (ec) {
        std::remove(provvisorio.c_str());
        store::raise(75, file);
    }
}

void ImpostaChiave(Righe& righe, const std::string& sezione, const std::string& chiave, const std::string& valore) {
    const std::string nuova = chiave + "=" + valore;
    const auto intestazione = TrovaSezione(righe, sezione);
    if (intestazione == std::string::npos) {
        righe.push_back("[" + sezione + "]");
        righe.push_back(nuova);
        return;
    }
    const auto fine = FineSezione(righe, intestazione);
    std::size_t ultimaPiena = intestazione;
    for (std::size_t i = intestazione + 1; i < fine; ++i) {
        const auto coppia = ChiaveValore(righe[i]);
        if (coppia && StessoNome(coppia->chiave, chiave)) {
            righe[i] = nuova;
            return;
        }
        if (!SenzaSpazi(righe[i]).empty()) ultimaPiena = i;
    }
    righe.insert(righe.begin() + static_cast<std::ptrdiff_t>(ultimaPiena + 1), nuova);
}

}  // namespace

std::string LeggiValoreIni(const std::string& file, const std::string& sezione, const std::string& chiave) {
    const Righe& righe = RigheDi(file);
    const auto intestazione = TrovaSezione(righe, sezione);
    if (intestazione == std::string::npos) return {};
    const auto fine = FineSezione(righe, intestazione);
    for (std::size_t i = intestazione + 1; i < fine; ++i) {
        const auto coppia = ChiaveValore(righe[i]);
        if (coppia && StessoNome(coppia->chiave, chiave))
            return TagliaACaratteri(SenzaVirgolette(coppia->valore), kLunghezzaMassimaIni);
    }
    return {};
}

void ScriviValoreIni(const std::string& file, const std::string& sezione, const std::string& chiave,
                     const std::string& valore) {
    Righe righe = RigheDi(file);
    const std::string unaRiga = valore.substr(0, valore.find_first_of("\r\n"));
    ImpostaChiave(righe, sezione, chiave, unaRiga);
    ScriviSuDisco(file, righe);
    cache().erase(file);
}

}  // namespace core
