#include "core/login.h"

#include <filesystem>

#include "core/dialogs.h"
#include "core/diritti.h"
#include "core/impostazioni.h"
#include "core/services.h"
#include "core/session.h"
#include "store/convert.h"

namespace fs = std::filesystem;

namespace core {

namespace {

std::string TestoCampo(store::Recordset& rs, const char* campo) {
    return store::ConcatText(rs.get(campo));
}

std::string PrimoValore(store::Database& db, const std::string& sql, const char* campo) {
    auto rs = db.OpenRecordset(sql);
    return rs->Eof() ? std::string() : TestoCampo(*rs, campo);
}

void EntraComeAmministratore(const std::string& utenteDigitato) {
    Session& s = session();
    s.Privilegi = "11111111111111";
    s.NomeUtente = "Amministratore";
    ScriviIni("Login", "Username", utenteDigitato);
}

void EntraComeUtente(store::Recordset& rs, const std::string& utenteDigitato) {
    Session& s = session();
    const std::string username = TestoCampo(rs, "Username");
    s.Privilegi = Decifra(TestoCampo(rs, "Accessi"), username);
    ScriviIni("Login", "Username", utenteDigitato);
    s.NomeUtente = username;
    s.IDUtente = store::CLng(rs.get("ID"));
}

}  // namespace

StatoLogin ApriLogin() {
    Session& s = session();
    StatoLogin st;
    st.utente = LeggiIni("Login", "Username");
    if (s.dbAziende) {
        st.azienda = PrimoValore(*s.dbAziende, "Select * from Aziende where ID=" + std::to_string(s.IDAzienda),
                                 "Denominazione");
        st.archivio = PrimoValore(*s.dbAziende, "Select * from Esercizi where ID=" + std::to_string(s.IDEsercizio),
                                  "Nome");
    }
    s.Privilegi.clear();
    s.NomeUtente.clear();
    st.lingua = LeggiLingua("Parametri", "File");
    if (st.lingua.empty()) {
        RipristinaLingua();
        st.lingua = PercorsoProgramma("Italiano.lng");
    }
    return st;
}

bool ConfermaLogin(const std::string& utente, const std::string& password) {
    Session& s = session();
    const std::string tutti = "Select * from Utenti where Azienda=" + std::to_string(s.IDAzienda);
    if (Trim(utente).empty() && Trim(password).empty()) {
        // A company with no users lets anyone in with every right; one with users never does.
        if (s.dbAziende->OpenRecordset(tutti)->Eof()) {
            EntraComeAmministratore(utente);
            return true;
        }
    } else {
        auto rs = s.dbAziende->OpenRecordset(tutti + " and Username='" + Apici(utente) + "' and Password='" +
                                             Apici(password) + "'");
        if (!rs->Eof()) {
            EntraComeUtente(*rs, utente);
            return true;
        }
    }
    MsgBox("Nome utente o Password non corretti!", vbExclamation);
    return false;
}

void ScegliLingua(const std::string& percorso) {
    const fs::path lavoro = fs::path(PercorsoProgramma("Lang.lng"));
    const fs::path origine = fs::path(percorso);
    std::error_code ec;
    if (fs::equivalent(origine, lavoro, ec)) return;  // the working copy chosen as its own source
    fs::remove(lavoro);
    fs::copy_file(origine, lavoro);
    ScriviLingua("Parametri", "File", percorso);
}

}  // namespace core
