// For tests: the one core::Dialogs that answers from queues instead of showing anything, and
// records every message, input and screen it was asked for. It needs no widgets: the tests of the
// core and of the logic use it as the screen tests do.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/dialogs.h"

class QApplication;
class QWidget;

namespace prova {

class ScriptedDialogs : public core::Dialogs {
public:
    struct Messaggio {
        std::string testo;
        int stile = 0;
        std::string titolo;
    };
    // What a scripted screen does when shown: it gets the screen (null when none was found under
    // that name) and returns what the screen reports (true = confirmed).
    using Copione = std::function<bool(QWidget* schermo)>;

    // Answers to the next message boxes, in order; with none queued a box answers OK, or No to a question.
    void rispondi(int risposta);
    void rispondiSi() { rispondi(core::vbYes); }
    void rispondiNo() { rispondi(core::vbNo); }
    // Answer to the next file or folder choice (nullopt = cancelled).
    void percorso(std::optional<std::string> p);
    // Answer to the next input box (nullopt = cancelled).
    void testo(std::optional<std::string> t);
    // Behaviour of the next showing of the named screen; unscripted screens are not shown and report false.
    void schermo(const std::string& nome, Copione c);
    // Every showing of the named screen answers so, after the queued behaviours are used up.
    void sempre(const std::string& nome, std::function<bool()> risposta);
    // The next showing of the named screen runs its real code (the registry's factory, say), so that
    // the screen it builds comes back to the script when it is shown in turn.
    void lasciaAprire(const std::string& nome);

    const std::vector<Messaggio>& messaggi() const { return messaggi_; }
    const std::vector<std::string>& schermiMostrati() const { return schermi_; }
    void dimentica();   // clears what was recorded (answers still queued stay)

    int msgBox(const std::string& text, int style, const std::string& title) override;
    bool runModal(const std::string& screen, const std::function<bool()>& show) override;
    std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                        const std::string& initial) override;
    std::optional<std::string> chooseFile(const std::string& title, const std::string& filter,
                                          bool save, const std::string& initial) override;
    std::optional<std::string> chooseFolder(const std::string& title, const std::string& initial) override;
    void setBusy(bool) override {}

private:
    std::deque<int> risposte_;
    std::deque<std::optional<std::string>> percorsi_;
    std::deque<std::optional<std::string>> testi_;
    std::map<std::string, std::deque<Copione>> copioni_;
    std::map<std::string, std::function<bool()>> sempre_;
    std::vector<Messaggio> messaggi_;
    std::vector<std::string> schermi_;
};

// Installs a fresh script as the dialogs service and returns it.
std::shared_ptr<ScriptedDialogs> installaScript();

// How a script finds the screen being shown by its name; the application of the screen tests
// installs it (without one, scripted behaviours get no screen).
void installaRicercaSchermi(std::function<QWidget*(const std::string& nome)> ricerca);

// The application object of a test program, made once (offscreen unless a platform is set); it
// also installs the search of screens by name.
QApplication& applicazioneDiProva();

}  // namespace prova
