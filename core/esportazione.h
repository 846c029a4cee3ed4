// What every export shares: the checks on the place and name of the file, the file written under a
// temporary name and renamed over the final one only when complete, the progress of a long run and
// the opening of a finished file. The screen layer installs the last two; with nothing installed a
// run shows no progress and opens nothing.
#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace core {

// A fault of the user's choice (folder, name, file): its text is the Italian message to show.
class ErroreEsportazione : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// "" when the text can name a file in a folder; otherwise the message that says why not
// (empty, a character among \ / : * ? " < > | or a control character, a trailing blank or point).
std::string ControllaNomeFile(const std::string& nome);

// The file of an export. Opening checks the folder (it exists, it can be written) and the file (not
// read-only) and makes "<name>.~tmp" beside it; Concludi renames that over the final name. A file
// never concluded is removed, so a failed export leaves under the final name what was there before.
class FileEsportazione {
public:
    // apri false: the temporary name is only reserved, for a writer that makes the file itself.
    explicit FileEsportazione(std::string percorso, bool apri = true);
    ~FileEsportazione();
    FileEsportazione(const FileEsportazione&) = delete;
    FileEsportazione& operator=(const FileEsportazione&) = delete;

    void Scrivi(std::string_view byte);
    const std::string& Temporaneo() const { return temporaneo_; }
    const std::string& Percorso() const { return percorso_; }
    void Concludi();

private:
    std::string percorso_;
    std::string temporaneo_;
    std::FILE* file_ = nullptr;
    bool concluso_ = false;
};

// The progress of a long run: the count of the rows done, out of the total given when it opened.
class Avanzamento {
public:
    virtual ~Avanzamento() = default;
    virtual void Passo(long fatti) = 0;
};
using FabbricaAvanzamento = std::function<std::unique_ptr<Avanzamento>(const std::string& testo, long totale)>;
void installaAvanzamento(FabbricaAvanzamento fabbrica);
// Never null: with nothing installed, one that shows nothing.
std::unique_ptr<Avanzamento> ApriAvanzamento(const std::string& testo, long totale);

// Opens a finished file with the desktop's handler.
void installaApriFile(std::function<void(const std::string& percorso)> apri);
void ApriFile(const std::string& percorso);

}  // namespace core
