#include "support/DialoghiScript.h"

#include <QApplication>
#include <QIcon>
#include <QWidget>

#include <cstdlib>

#include "ui/Dialoghi.h"

namespace prova {

namespace {

template <class T>
std::optional<T> prendi(std::deque<T>& coda) {
    if (coda.empty()) return std::nullopt;
    T v = std::move(coda.front());
    coda.pop_front();
    return v;
}

QWidget* cercaSchermo(const std::string& nome) {
    QWidget* corrente = ui::schermoInCorso();
    if (corrente && corrente->objectName().toStdString() == nome) return corrente;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName().toStdString() == nome) return w;
    return nullptr;
}

}  // namespace

void ScriptedDialogs::rispondi(int risposta) { risposte_.push_back(risposta); }
void ScriptedDialogs::percorso(std::optional<std::string> p) { percorsi_.push_back(std::move(p)); }
void ScriptedDialogs::testo(std::optional<std::string> t) { testi_.push_back(std::move(t)); }
void ScriptedDialogs::schermo(const std::string& nome, Copione c) {
    if (c) copioni_[nome].push_back(std::move(c));
}
void ScriptedDialogs::lasciaAprire(const std::string& nome) { copioni_[nome].push_back(nullptr); }

void ScriptedDialogs::dimentica() {
    messaggi_.clear();
    schermi_.clear();
    domande_.clear();
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
    if (it == copioni_.end() || it->second.empty()) return false;
    Copione c = std::move(it->second.front());
    it->second.pop_front();
    if (!c) return show ? show() : false;
    return c(cercaSchermo(screen));
}

std::optional<std::string> ScriptedDialogs::inputBox(const std::string& prompt, const std::string&,
                                                     const std::string&) {
    domande_.push_back(prompt);
    auto r = prendi(testi_);
    return r ? *r : std::nullopt;
}

std::optional<std::string> ScriptedDialogs::chooseFile(const std::string&, const std::string&, bool,
                                                       const std::string&) {
    auto r = prendi(percorsi_);
    return r ? *r : std::nullopt;
}

std::optional<std::string> ScriptedDialogs::chooseFolder(const std::string&, const std::string&) {
    auto r = prendi(percorsi_);
    return r ? *r : std::nullopt;
}

void ScriptedDialogs::setBusy(bool busy) { occupato_ += busy ? 1 : (occupato_ > 0 ? -1 : 0); }

std::shared_ptr<ScriptedDialogs> installaScript() {
    auto s = std::make_shared<ScriptedDialogs>();
    core::installDialogs(s);
    return s;
}

QApplication& applicazioneDiProva() {
    if (auto* app = qobject_cast<QApplication*>(QCoreApplication::instance())) return *app;
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static int argc = 1;
    static char nome[] = "brevano-test";
    static char* argv[] = {nome, nullptr};
    // Made once and never destroyed: a static QApplication would be torn down by the exit handlers
    // after Qt's own globals, and the process would crash on its way out.
    static auto* app = new QApplication(argc, argv);
    QIcon::setThemeName("Tango");
    return *app;
}

}  // namespace prova
