// What the register of documents hands to the print screen: the section of its kind, the current
// document, its lines and the list as filtered, and a line of text saying how the list was chosen.
#pragma once

#include <string>

#include "core/stampa.h"
#include "sales/documenti.h"

namespace sales {

// "Fatture", "NoteDebito" or "Preventivi"; "" for the supplier notes, which have no print.
std::string SezioneStampaDocumenti(long tipo);

// The selection in words, from the last search: the paid state, the dates, the numbers and the
// customer, each "Tutti"/"nessun limite" when not asked, joined with "; ".
std::string CriterioDocumenti(const CriteriDocumenti& c);

// The print of the list: sub-reports "Documento" (the current document), "Movimento" (its lines)
// and "Elenco" (the list's own statement), and the parameter "Criterio".
core::RichiestaStampa StampaDocumenti(const CriteriDocumenti& c, long idCorrente, const std::string& elenco);

// The withholding certificate of the current document.
core::RichiestaStampa StampaRitenutaDocumento(long idCorrente);

}  // namespace sales
