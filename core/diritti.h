// The rights string of the logged-in user and the cipher it is stored with in Utenti.Accessi.
#pragma once

#include <string>

namespace core {

// The positions of the rights string: each area has a pair, an odd position to see it and the next
// even one to change it; notes have one position.
enum Diritto : int {
    NessunDiritto = 0,
    UtentiVedere = 1,
    UtentiModificare = 2,
    DocumentiVedere = 3,
    DocumentiModificare = 4,
    SpeseVedere = 5,
    SpeseModificare = 6,
    PagamentiVedere = 7,
    PagamentiModificare = 8,
    IncassiVedere = 9,
    IncassiModificare = 10,
    ScadenzeVedere = 11,
    ScadenzeModificare = 12,
    PrimaNotaVedere = 13,
    NoteUtente = 14,
};

// True when the right at the 1-based position is granted in the given string, or in the session's
// Privilegi when the string is "". While that string is empty nobody is logged in, so frmLogin is
// shown first, again and again until someone logs in. The character is converted as the platform
// converts text to a Boolean: "1" true, "0" false, a position past the end or another character
// raises error 13.
bool HaPrivilegio(int posizione, const std::string& privilegi = {});

// The additive cipher of Utenti.Accessi, on Windows-1252 codes with modulus 255. Key character
// 1 + (i mod key length) serves text character i: a stored value depends on that offset. An empty
// key means the default key. A character of code 255 does not survive: it comes back as code 0.
std::string Cifra(const std::string& testo, const std::string& chiave);
std::string Decifra(const std::string& testo, const std::string& chiave);

}  // namespace core
