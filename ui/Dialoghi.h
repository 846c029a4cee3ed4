// The real dialogs behind core::Dialogs: message boxes with the platform's icons and buttons,
// the modal runner, input boxes, file and folder choices, the busy pointer.
#pragma once

#include <functional>
#include <string>

#include "core/dialogs.h"

class QWidget;

namespace ui {

class QtDialogs : public core::Dialogs {
public:
    int msgBox(const std::string& text, int style, const std::string& title) override;
    bool runModal(const std::string& screen, const std::function<bool()>& show) override;
    std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                        const std::string& initial) override;
    std::optional<std::string> chooseFile(const std::string& title, const std::string& filter,
                                          bool save, const std::string& initial) override;
    std::optional<std::string> chooseFolder(const std::string& title, const std::string& initial) override;
    void setBusy(bool busy) override;

private:
    int occupato_ = 0;
};

// Shows a screen modally through the installed service, under its objectName. While it runs the
// screen is "the screen being shown", so that a test script can drive it.
bool eseguiModale(QWidget* schermo, const std::function<bool()>& mostra);
QWidget* schermoInCorso();

// The window modal screens open over: the main panel while it is shown, else none. The panel
// names itself when it opens, so that no screen needs to know it.
QWidget* finestraPrincipale();
void impostaFinestraPrincipale(QWidget* finestra);

// What the screen registry runs for a modal screen that is no editor: shown over the main panel.
template <class Schermo>
bool MostraSchermo() {
    Schermo s(finestraPrincipale());
    return eseguiModale(&s, [&s] { return s.exec() == 1; });
}

// Runs a command and turns any failure into the error box: a database error with its number and
// text, anything else with its own message. Returns false when the command failed.
bool protetto(const std::function<void()>& comando);

// Installs the real dialogs and the program's look (icon theme).
void installaInterfaccia();

}  // namespace ui
