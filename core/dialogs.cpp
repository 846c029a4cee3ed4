#include "core/dialogs.h"

namespace core {

namespace {
class SilentDialogs : public Dialogs {
public:
    int msgBox(const std::string&, int style, const std::string&) override {
        int buttons = style & 7;
        return (buttons == vbYesNo || buttons == vbYesNoCancel) ? vbNo : vbOK;
    }
    bool runModal(const std::string&, const std::function<bool()>& show) override { return show ? show() : false; }
    std::optional<std::string> inputBox(const std::string&, const std::string&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::string> chooseFile(const std::string&, const std::string&, bool, const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::string> chooseFolder(const std::string&, const std::string&) override { return std::nullopt; }
    void setBusy(bool) override {}
};

std::shared_ptr<Dialogs>& installed() {
    static std::shared_ptr<Dialogs> d = std::make_shared<SilentDialogs>();
    return d;
}
}  // namespace

Dialogs& dialogs() { return *installed(); }
void installDialogs(std::shared_ptr<Dialogs> d) {
    installed() = d ? std::move(d) : std::make_shared<SilentDialogs>();
}

int MsgBox(const std::string& text, int style, const std::string& title) {
    return dialogs().msgBox(text, style, title.empty() ? std::string("Brevano") : title);
}

}  // namespace core
