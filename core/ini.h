// INI files as the program keeps them: Windows-1252 text, sections and keys found without case,
// values read through a buffer of 1023 characters. Texts in and out are UTF-8.
// The files are read and written with no lock: the last writer wins.
#pragma once

#include <string>

namespace core {

// Longest value a read gives back; a longer one is cut to it.
inline constexpr std::size_t kLunghezzaMassimaIni = 1023;

// The value of key in section, or "" when the file, the section or the key is missing.
std::string LeggiValoreIni(const std::string& file, const std::string& sezione, const std::string& chiave);

// Writes key=value in section, creating the file or the section when missing. The other lines of
// the file are kept as they are. A value is one line: it is cut at its first line break.
void ScriviValoreIni(const std::string& file, const std::string& sezione, const std::string& chiave,
                     const std::string& valore);

}  // namespace core
