#include "core/diritti.h"

#include "core/registro_schermi.h"
#include "core/session.h"
#include "store/convert.h"
#include "store/errors.h"

namespace core {

namespace {

const char* const kChiavePredefinita = "kqzrtwpy/xs";
constexpr int kModulo = 255;

int Codice(char c) { return static_cast<unsigned char>(c); }

// Applies passo(code of text, code of key) to each character, in Windows-1252.
template <typename Passo>
std::string Trasforma(const std::string& testo, const std::string& chiave, Passo passo) {
    const std::string t = store::Utf8ToCp1252(testo);
    std::string k = store::Utf8ToCp1252(chiave);
    if (k.empty()) k = kChiavePredefinita;
    std::string risultato;
    risultato.reserve(t.size());
    for (std::size_t i = 1; i <= t.size(); ++i) {
        const int codiceChiave = Codice(k[i % k.size()]);  // position 1 + (i mod len), 0-based here
        risultato += static_cast<char>(passo(Codice(t[i - 1]), codiceChiave));
    }
    return store::Cp1252ToUtf8(risultato);
}

const std::string& PrivilegiDaUsare(const std::string& dati) { return dati.empty() ? session().Privilegi : dati; }

}  // namespace

bool HaPrivilegio(int posizione, const std::string& privilegi) {
    while (PrivilegiDaUsare(privilegi).empty()) MostraModale("frmLogin");
    const std::string stringa = store::Utf8ToCp1252(PrivilegiDaUsare(privilegi));
    if (posizione < 1) store::raise(5);
    const auto indice = static_cast<std::size_t>(posizione - 1);
    const std::string carattere = indice < stringa.size() ? stringa.substr(indice, 1) : std::string();
    return store::CBool(store::Value::Text(store::Cp1252ToUtf8(carattere)));
}

std::string Cifra(const std::string& testo, const std::string& chiave) {
    return Trasforma(testo, chiave, [](int t, int k) { return (t + k) % kModulo; });
}

std::string Decifra(const std::string& testo, const std::string& chiave) {
    return Trasforma(testo, chiave, [](int t, int k) {
        int v = t - k;
        if (v < 0) v += kModulo;
        return v % kModulo;
    });
}

}  // namespace core
