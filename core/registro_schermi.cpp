#include "core/registro_schermi.h"

#include <map>

#include "core/dialogs.h"
#include "core/session.h"
#include "store/errors.h"

namespace core {

namespace {

struct Registro {
    std::map<std::string, FabbricaSchermo> fabbriche;
    ChiusuraSchermo chiusura;
    std::function<void()> fineCaricamento;
    std::function<void(Novita)> ascolto;
};

Registro& registro() {
    static Registro r;
    return r;
}

const FabbricaSchermo& FabbricaDi(const std::string& nome) {
    const auto& fabbriche = registro().fabbriche;
    const auto it = fabbriche.find(nome);
    if (it == fabbriche.end() || !it->second) store::raise(3265, "Schermata '" + nome + "' non registrata.");
    return it->second;
}

}  // namespace

void registraSchermo(const std::string& nome, FabbricaSchermo fabbrica) {
    registro().fabbriche[nome] = std::move(fabbrica);
}

void registraEditor(const std::string& nome, std::function<std::optional<long>()> apri) {
    registraSchermo(nome, [apri = std::move(apri)] {
        const std::optional<long> salvato = apri();
        if (salvato) session().IDRecordEdit = *salvato;
        return salvato.has_value();
    });
}

bool schermoRegistrato(const std::string& nome) {
    const auto& fabbriche = registro().fabbriche;
    const auto it = fabbriche.find(nome);
    return it != fabbriche.end() && it->second;
}

bool MostraModale(const std::string& nome) {
    return dialogs().runModal(nome, [nome] { return FabbricaDi(nome)(); });
}

void MostraPannello(const std::string& nome) { FabbricaDi(nome)(); }

void installaChiusuraSchermo(ChiusuraSchermo chiusura) { registro().chiusura = std::move(chiusura); }

bool ChiudiFormAperta(const std::string& nome) {
    const auto& chiusura = registro().chiusura;
    return chiusura ? chiusura(nome) : false;
}

void installaFineCaricamento(std::function<void()> fine) { registro().fineCaricamento = std::move(fine); }

void FineCaricamento() {
    if (registro().fineCaricamento) registro().fineCaricamento();
}

void installaAscoltoNovita(std::function<void(Novita)> ascolto) { registro().ascolto = std::move(ascolto); }

void AnnunciaNovita(Novita novita) {
    if (registro().ascolto) registro().ascolto(novita);
}

void svuotaRegistroSchermi() { registro() = Registro{}; }

}  // namespace core
