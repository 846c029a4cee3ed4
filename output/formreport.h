// The layouts of each printing section: the list of FormReport in the master file, the default, a copy
// of a layout under a new name, its deletion; and how what a register hands to the print screen is
// matched, name by name, with what the chosen layout declares.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/stampa.h"
#include "store/dao.h"

namespace output {

// The section's layouts of the company, the default first (the stored true sorts before false).
std::string SqlElencoReport(const std::string& sezione, long idAzienda);

// The row becomes the section's one default: the section is cleared first, then the row is set.
void ImpostaPredefinito(store::Database& master, const std::string& sezione, long idAzienda, long id);

// Why a layout cannot take this name (nullopt when it can): characters a file name cannot hold.
std::optional<std::string> NomeNonValido(const std::string& nome);

// The file name a typed name becomes: with ".rpf" added when it has no such ending.
std::string NomeFileReport(const std::string& nome);

// Copies the layout of row id to <cartella>/<nome>.rpf and adds its row to FormReport in the same
// section, not as default. Answers the new ID, or 0 with the message that tells why not.
struct EsitoDuplica {
    long id = 0;
    std::string messaggio;
};
EsitoDuplica DuplicaReport(store::DatabasePtr master, const std::string& cartella, long id, const std::string& nome);

// Removes the layout's file (when it is there) and its row.
void EliminaReport(store::Database& master, const std::string& cartella, long id);

// What a layout declares, read from its file.
struct Dichiarazioni {
    struct Sub {
        std::string nome;
        std::vector<std::string> parametri;
    };
    std::vector<Sub> subReports;
    std::vector<std::string> parametri;
};

// What the layout is to run with: per sub-report the statement that replaces its own (none when the
// caller's was blank) and its parameters' values; the report's parameters' values.
struct Assegnazioni {
    struct Sub {
        std::string nome;
        std::optional<std::string> query;
        std::vector<std::pair<std::string, std::string>> parametri;
    };
    std::vector<Sub> subReports;
    std::vector<std::pair<std::string, std::string>> parametri;
};

// When the caller passed sub-reports, each declared one takes the caller's of the same name: its
// statement when not blank, and each parameter it declares the value of the same name. Likewise the
// report's parameters when the caller passed any. A declared name the caller did not pass is error
// 3265 naming the file and the name.
Assegnazioni Assegna(const Dichiarazioni& dichiarate, const core::RichiestaStampa& richiesta, const std::string& nomeFile);

}  // namespace output
