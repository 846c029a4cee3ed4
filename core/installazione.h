// Where an installed program keeps its own files: beside the executable when that folder can be
// written, otherwise in a folder of the user's, seeded from the installed files on first start.
#pragma once

#include <string>
#include <vector>

namespace core {

// The files a program folder needs, relative to it; the report layouts (*.rpf) come along too.
const std::vector<std::string>& FileDellaCartellaProgramma();

// The program folder to work in. `installata` is the executable's folder; when `scrivibile` is
// false, `utente` is made if missing and receives a copy of each installed file it lacks (files
// already there, with the user's settings and data, are never overwritten). Returns that folder.
std::string CartellaDiLavoro(const std::string& installata, bool scrivibile, const std::string& utente);

}  // namespace core
