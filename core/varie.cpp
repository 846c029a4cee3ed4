#include "core/varie.h"

#include "store/convert.h"
#include "store/errors.h"

namespace core {

namespace {

// Chr of the platform: codes 0 to 255 only.
std::string Chr(int codice) {
    if (codice < 0 || codice > 255) store::raise(5);
    return store::Cp1252ToUtf8(std::string(1, static_cast<char>(codice)));
}

}  // namespace

std::string ColonnaFoglio(const std::string& colonna, int scarto) {
    if (colonna.empty()) store::raise(5);
    const int numero = static_cast<unsigned char>(colonna[0]) - 64 + scarto;
    if (numero <= 26) return Chr(64 + numero);
    int prima = numero / 26;
    int seconda = numero % 26;
    if (seconda == 0) {
        seconda = 26;
        --prima;
    }
    return Chr(64 + prima) + Chr(64 + seconda);
}

double MassimoDi(double a, double b) { return a > b ? a : b; }
double MinimoDi(double a, double b) { return a < b ? a : b; }

std::string Trim(const std::string& testo) {
    const auto inizio = testo.find_first_not_of(' ');
    if (inizio == std::string::npos) return {};
    return testo.substr(inizio, testo.find_last_not_of(' ') - inizio + 1);
}

std::string Unisci(const std::vector<std::string>& parti, const std::string& tra) {
    std::string s;
    for (const auto& p : parti) s += (s.empty() ? "" : tra) + p;
    return s;
}

std::string Apici(const std::string& testo) {
    std::string out;
    for (char c : testo) {
        out += c;
        if (c == '\'') out += '\'';
    }
    return out;
}

}  // namespace core
