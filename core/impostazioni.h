// The two settings files beside the program: Impostazioni.ini (data folder, last company,
// period and user) and Lang.lng, the working copy of the chosen language file.
#pragma once

#include <string>

namespace core {

// <program folder>/<nome>.
std::string PercorsoProgramma(const std::string& nome);

std::string LeggiIni(const std::string& sezione, const std::string& chiave);
void ScriviIni(const std::string& sezione, const std::string& chiave, const std::string& valore);

std::string LeggiLingua(const std::string& sezione, const std::string& chiave);
void ScriviLingua(const std::string& sezione, const std::string& chiave, const std::string& valore);

// The text of key in section Stringhe of Lang.lng. There is no fallback: an unknown key gives "",
// so a caption goes blank rather than showing the key.
std::string Testo(const std::string& chiave);
// The one caption routine of the screens: the text of a language key ("s77"), blank when the language
// file lacks it, or the caption itself when it is no key ("Giorni per rata").
std::string Didascalia(const std::string& chiaveOTesto);

// Puts Italian back as the working language: Lang.lng becomes a copy of Italiano.lng and records
// where it came from in Parametri/File. Used at start-up with no users and by the login.
void RipristinaLingua();

}  // namespace core
