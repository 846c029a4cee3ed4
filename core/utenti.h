// Users and their rights: the rights string, its checks, and the rules of the users' editor.
#pragma once

#include "core/campi.h"

#include <string>
#include <vector>

#include "store/dao.h"

namespace core {

// The fields of a user as the register of users shows them.
const TabellaCampi& CampiUtenti();

// One right per position, "1" granted and "0" refused; odd positions see an area, even ones change it.
inline constexpr int NumeroPrivilegi = 14;
// The captions of the rights list, in list order (language keys s300..s313).
std::vector<std::string> ChiaviPrivilegi();

// The ticks of the rights list for a stored Accessi text, deciphered with the row's own name.
std::vector<bool> PrivilegiUtente(const std::string& accessi, const std::string& username);
// The "1"/"0" string of a list of ticks.
std::string StringaPrivilegi(const std::vector<bool>& spunte);
// What Accessi stores for those ticks under that user name.
std::string AccessiCifrati(const std::vector<bool>& spunte, const std::string& username);

struct DatiUtente {
    long azienda = 0;
    std::string username;
    std::string password;
    std::vector<bool> privilegi;
};

// The language key of the first rule the editor's data break ("" when none): company, name,
// password, and for a new user a name already taken in that company and, for the first user of
// a company, every right.
std::string ControllaUtente(store::Database& dbAziende, const DatiUtente& dati, bool nuovo);

// Writes the fields of the editor into a recordset already in AddNew/Edit mode.
void ScriviUtente(store::Recordset& rs, const DatiUtente& dati);

}  // namespace core
