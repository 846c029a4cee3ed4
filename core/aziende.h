// The data folder and the managed companies: first-run choice of the folder, creation of a
// company's report folder and report list, deletion of a company with its archives.
#pragma once

#include "core/campi.h"

#include <string>

namespace core {

// The fields of a company as its register, side panel and editor show them.
const TabellaCampi& CampiAziende();

// The data folder: the folder of the open master file.
std::string CartellaDati();

// What frmConfigurazione does on opening: takes the data folder from the settings (the program
// folder when none is set), writes it back and opens its master file. Returns the folder.
std::string ApriConfigurazione();

// Makes a folder the data folder: a folder with no master file receives a copy of the empty one
// the installation supplies (Base/Aziende.mdb); the folder goes into the settings and its master
// file is opened.
void ScegliCartellaDati(const std::string& cartella);

// Confirms the choice of company and period. With no period shows s202 and returns false.
bool ConfermaConfigurazione(const std::string& cartella, long azienda, long esercizio);

// Checks a company before saving: the key of the message for a blank name, else "".
std::string ControllaAzienda(const std::string& denominazione);

// What a new company receives once saved: its report folder under the data folder, one FormReport
// row for each template row, and a copy of the report files of the program folder.
void PreparaNuovaAzienda(long idAzienda);

// Runs the questions before deleting a company and, when both are answered Yes, deletes its
// archive files, their Esercizi rows and its report folder. Returns true when the caller is to
// delete the company's own row. The current company is refused.
bool EliminaAzienda(long idAzienda, const std::string& denominazione);

}  // namespace core
