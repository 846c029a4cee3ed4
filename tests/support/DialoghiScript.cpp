#include "support/DialoghiScript.h"

namespace prova {

namespace {

template <class T>
std::optional<T> prendi(std::deque<T>& coda) {
    if (coda.empty()) return std::nullopt;
    T v = std::move(coda.front());
    coda.pop_front();
    return v;
}

std::function<QWidget*(const std::string&)>& ricercaSchermi() {
    static std::function<QWidget*(const std::string&)> r;
    return r;
}

QWidget* cercaSchermo(const std::string& nome) { return ricercaSchermi() ? ricercaSchermi()(nome) : nullptr; }

}  // namespace

void ScriptedDialogs::rispondi(int risposta) { risposte_.push_back(risposta); }
void ScriptedDialogs::percorso(std::optional<std::string> p) { percorsi_.push_back(std::move(p)); }
void ScriptedDialogs::testo(std::optional<std::string> t) { testi_.push_back(std::move(t)); }
void ScriptedDialogs::schermo(const std::string& nome, Copione c) {
    if (c) copioni_[nome].push_back(std::move(c));
}
void ScriptedDialogs::sempre(const std::string& nome, std::function<bool()> risposta) {
    sempre_[nome] = std::move(risposta);
}
void ScriptedDialogs::lasciaAprire(const std::string& nome) { copioni_[nome].push_back(nullptr); }

void ScriptedDialogs::dimentica() {
    messaggi_.clear();
    schermi_.clear();
}

int ScriptedDialogs::msgBox(const std::string& text, int style, const std::string& title) {
    messaggi_.push_back({text, style, title});
    if (auto r = prendi(risposte_)) return *r;
    int buttons = style & 7;
    return (buttons == core::vbYesNo || buttons == core::vbYesNoCancel) ? core::vbNo : core::vbOK;
}

bool ScriptedDialogs::runModal(const std::string& screen, const std::function<bool()>& show) {
    schermi_.push_back(screen);
    auto it = copioni_.find(screen);
    if (it == copioni_.end() || it->second.empty()) {
        const auto fisso = sempre_.find(screen);
        return fisso != sempre_.end() && fisso->second();
    }
    Copione c = std::move(it->second.front());
    it->second.pop_front();
    if (!c) return show ? show() : false;
    return c(cercaSchermo(screen));
}

std::optional<std::string> ScriptedDialogs::inputBox(const std::string&, const std::string&,
                                                     const std::string&) {
    return prendi(testi_).value_or(std::nullopt);
}

std::optional<std::string> ScriptedDialogs::chooseFile(const std::string&, const std::string&, bool,
                                                       const std::string&) {
    return prendi(percorsi_).value_or(std::nullopt);
}

std::optional<std::string> ScriptedDialogs::chooseFolder(const std::string&, const std::string&) {
    return prendi(percorsi_).value_or(std::nullopt);
}

void installaRicercaSchermi(std::function<QWidget*(const std::string& nome)> ricerca) {
    ricercaSchermi() = std::move(ricerca);
}

std::shared_ptr<ScriptedDialogs> installaScript() {
    auto s = std::make_shared<ScriptedDialogs>();
    core::installDialogs(s);
    return s;
}

}  // namespace prova
