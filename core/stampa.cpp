#include "core/stampa.h"

#include <algorithm>

#include "core/dialogs.h"
#include "store/convert.h"

namespace core {
namespace {

template <class V>
auto trova(V& membri, const std::string& chiave) {
    return std::find_if(membri.begin(), membri.end(),
                        [&](const auto& m) { return store::AsciiLower(m.Chiave) == store::AsciiLower(chiave); });
}

std::function<void(const RichiestaStampa&)>& stampaInstallata() {
    static std::function<void(const RichiestaStampa&)> s;
    return s;
}

}  // namespace

Parametro& Parametri::Add(const std::string& chiave, const std::string& nome, const std::string& valore) {
    auto it = trova(membri_, chiave);
    if (it != membri_.end()) {
        *it = {chiave, nome, valore};
        return *it;
    }
    membri_.push_back({chiave, nome, valore});
    return membri_.back();
}

const Parametro* Parametri::Item(const std::string& chiave) const {
    auto it = trova(membri_, chiave);
    return it == membri_.end() ? nullptr : &*it;
}

const Parametro* Parametri::PerNome(const std::string& nome) const {
    auto it = std::find_if(membri_.begin(), membri_.end(),
                           [&](const Parametro& p) { return store::AsciiLower(p.Nome) == store::AsciiLower(nome); });
    return it == membri_.end() ? nullptr : &*it;
}

void Parametri::Remove(const std::string& chiave) {
    auto it = trova(membri_, chiave);
    if (it != membri_.end()) membri_.erase(it);
}

Parametri Parametri::Nessuno() {
    Parametri p;
    p.Add("null", "", "");
    return p;
}

SubReport& SubReports::Add(const std::string& chiave, const std::string& query, Parametri parametri) {
    auto it = trova(membri_, chiave);
    if (it != membri_.end()) {
        *it = {chiave, query, std::move(parametri)};
        return *it;
    }
    membri_.push_back({chiave, query, std::move(parametri)});
    return membri_.back();
}

const SubReport* SubReports::Item(const std::string& chiave) const {
    auto it = trova(membri_, chiave);
    return it == membri_.end() ? nullptr : &*it;
}

void SubReports::Remove(const std::string& chiave) {
    auto it = trova(membri_, chiave);
    if (it != membri_.end()) membri_.erase(it);
}

void installaStampa(std::function<void(const RichiestaStampa&)> stampa) { stampaInstallata() = std::move(stampa); }

void Stampa(const RichiestaStampa& richiesta) {
    if (!stampaInstallata()) {
        MsgBox("La stampa non è ancora disponibile in questa versione del programma.", vbInformation);
        return;
    }
    stampaInstallata()(richiesta);
}

}  // namespace core
