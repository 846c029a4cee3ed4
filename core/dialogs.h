// What the program asks of the user goes through this service: message boxes, modal screens,
// input boxes, file and folder choices, the busy pointer. The screen kit installs the real
// dialogs at start-up; tests install a script that answers and records what was shown.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace core {

// Buttons and icons as the platform numbers them, so that calls read as the logic is told.
enum MsgBoxStyle : int {
    vbOKOnly = 0,
    vbOKCancel = 1,
    vbYesNoCancel = 3,
    vbYesNo = 4,
    vbCritical = 16,
    vbQuestion = 32,     // 36 = vbYesNo + vbQuestion
    vbExclamation = 48,
    vbInformation = 64,
};
enum MsgBoxResult : int { vbOK = 1, vbCancel = 2, vbYes = 6, vbNo = 7 };

class Dialogs {
public:
    virtual ~Dialogs() = default;
    virtual int msgBox(const std::string& text, int style, const std::string& title) = 0;
    // Runs a screen modally by its name (frmLogin, frmConfigurazione...). The callable builds and
    // shows it; a script may answer in its place. Returns what the screen reports (true = confirmed).
    virtual bool runModal(const std::string& screen, const std::function<bool()>& show) = 0;
    virtual std::optional<std::string> inputBox(const std::string& prompt, const std::string& title,
                                                const std::string& initial) = 0;
    virtual std::optional<std::string> chooseFile(const std::string& title, const std::string& filter,
                                                  bool save, const std::string& initial) = 0;
    virtual std::optional<std::string> chooseFolder(const std::string& title, const std::string& initial) = 0;
    virtual void setBusy(bool busy) = 0;
};

// The installed service; until one is installed a silent one answers OK / No / nothing.
Dialogs& dialogs();
void installDialogs(std::shared_ptr<Dialogs> d);

// The platform's MsgBox: most calls leave the title out, and the box bears the program's name.
int MsgBox(const std::string& text, int style = vbOKOnly, const std::string& title = {});

}  // namespace core
