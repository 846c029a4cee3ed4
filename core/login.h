// The login to the current company and the choice of the working language.
#pragma once

#include <string>

namespace core {

// What the login screen shows when it opens. Loading it also logs the current user out, so that
// a cancelled login leaves nobody logged in.
struct StatoLogin {
    std::string utente;     // the last name typed (Login/Username)
    std::string azienda;    // Denominazione of the current company
    std::string archivio;   // Nome of the current period
    std::string lingua;     // the language file the working copy came from
};
StatoLogin ApriLogin();

// Checks a name and a password against the users of the current company and, when they match,
// fixes the session's user and rights. On a mismatch shows the refusal and returns false.
bool ConfermaLogin(const std::string& utente, const std::string& password);

// Makes the given language file the working copy Lang.lng and remembers where it came from.
void ScegliLingua(const std::string& percorso);

}  // namespace core
