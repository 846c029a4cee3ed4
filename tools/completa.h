// The typing aid of free-text boxes: what the user has typed so far is completed with the first
// value of a field that begins with it, and the completed tail stands selected so that typing on
// replaces it.
#pragma once

#include <optional>
#include <string>

#include "store/dao.h"

namespace tools {

// "SELECT Distinct F FROM T WHERE F LIKE 'text*'" (or "= 'text'" when uguale), apostrophes doubled.
std::string IstruzioneCompletamento(const std::string& testo, const std::string& tabella, const std::string& campo,
                                    bool uguale);

struct Completamento {
    std::string testo;     // the whole value found
    int selStart = 0;      // where the typed part ends (in characters)
    int selLength = 0;     // the completed tail
};

// Nothing with an empty text, after a deleting key (so a backspace does not complete the word again),
// or with no value found.
std::optional<Completamento> CompletaTesto(const std::string& testo, store::Database& db, const std::string& tabella,
                                           const std::string& campo, bool uguale, bool tastoCancellazione);

}  // namespace tools
