// Files of the program: compaction in place, renaming, the report folder of the current Azienda.
#pragma once

#include <string>

namespace core {

// Compacts the database file into ~tmp<name> beside it, deletes the original and renames the copy
// back. A crash between the delete and the rename leaves only the ~tmp file.
void CompattaDatabase(const std::string& percorso);

// The same through a copy of the given name in the same folder. Fails when that copy is already
// there, left over from a crash.
void CompattaTramite(const std::string& percorso, const std::string& nomeCopia);

// Renames a file within its folder. Error 53 when it is missing, 58 when the new name is taken.
void RinominaFile(const std::string& percorso, const std::string& nuovoNome);

// <folder of the master file>/Report/<IDAzienda>: every Azienda keeps its report files apart.
std::string CartellaReport();

}  // namespace core
