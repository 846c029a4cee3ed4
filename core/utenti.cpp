#include "core/utenti.h"

#include "core/services.h"

namespace core {

std::vector<std::string> ChiaviPrivilegi() {
    std::vector<std::string> chiavi;
    for (int i = 0; i < NumeroPrivilegi; ++i) chiavi.push_back("s" + std::to_string(300 + i));
    return chiavi;
}

std::vector<bool> PrivilegiUtente(const std::string& accessi, const std::string& username) {
    const std::string chiaro = Decifra(accessi, username);
    std::vector<bool> spunte(NumeroPrivilegi, false);
    // A text deciphered with the wrong name is garbage: only a plain "1" ticks a row.
    for (int i = 0; i < NumeroPrivilegi && i < static_cast<int>(chiaro.size()); ++i)
        spunte[i] = chiaro[i] == '1';
    return spunte;
}

std::string StringaPrivilegi(const std::vector<bool>& spunte) {
    std::string s;
    for (bool b : spunte) s += b ? '1' : '0';
    return s;
}

std::string AccessiCifrati(const std::vector<bool>& spunte, const std::string& username) {
    return Cifra(StringaPrivilegi(spunte), username);
}

namespace {

bool EsisteRiga(store::Database& db, const std::string& sql) {
    auto rs = db.OpenRecordset(sql);
    return !rs->Eof();
}

bool NessunUtente(store::Database& dbAziende, long azienda) {
    return !EsisteRiga(dbAziende, "Select * from Utenti where Azienda=" + std::to_string(azienda));
}

bool TuttiSpuntati(const std::vector<bool>& spunte) {
    int n = 0;
    for (bool b : spunte) n += b ? 1 : 0;
    return n >= NumeroPrivilegi;
}

}  // namespace

std::string ControllaUtente(store::Database& dbAziende, const DatiUtente& dati, bool nuovo) {
    if (dati.azienda == 0) return "s314";
    if (Trim(dati.username).empty()) return "s315";
    if (Trim(dati.password).empty()) return "s316";
    if (!nuovo) return {};
    if (EsisteRiga(dbAziende, "Select * from Utenti where Username='" + Apici(dati.username) +
                                  "' and Azienda=" + std::to_string(dati.azienda)))
        return "s317";
    // The first user of a company is its administrator and must hold every right.
    if (NessunUtente(dbAziende, dati.azienda) && !TuttiSpuntati(dati.privilegi)) return "s318";
    return {};
}

void ScriviUtente(store::Recordset& rs, const DatiUtente& dati) {
    rs.set("Username", store::Value::Text(dati.username));
    rs.set("Password", store::Value::Text(dati.password));
    rs.set("Azienda", store::Value::Long(static_cast<std::int32_t>(dati.azienda)));
    // Enciphered afresh under the name being saved, so a rename leaves no text readable only
    // under the old name.
    rs.set("Accessi", store::Value::Text(AccessiCifrati(dati.privilegi, dati.username)));
}

const TabellaCampi& CampiUtenti() {
    static const TabellaCampi t{
        {"UserName", "s297", 2500},
        {"Denominazione", "s101", 3500},
    };
    return t;
}

}  // namespace core
