// The field table of Documenti as its register and editors show it, and what goes with a document
// when it is deleted.
#pragma once

#include <string>

#include "core/campi.h"

namespace sales {

const core::TabellaCampi& CampiDocumenti();
const core::TabellaCampi& CampiMovimenti();
const core::TabellaCampi& CampiSpeseDocumenti();
const core::TabellaCampi& CampiRiepilogoIva();
const core::TabellaCampi& CampiScadenzeDocumento();

// The last search of a register of documents: what each ticked box asks.
struct CriteriDocumenti {
    long tipo = 0;
    bool dataDal = false, dataAl = false, dest = false, numDal = false, numAl = false;
    std::string dal, al;   // the dates as typed
    long cliente = 0;
    int pagate = 2;        // 0 not paid, 1 paid, 2 both
    std::string prefissoDal, suffissoDal, prefissoAl, suffissoAl;
    long numeroDal = 0, numeroAl = 0;
};

// The register's source for a search: "Select * from qrDocumenti " with its conditions, the kind last.
std::string IstruzioneRicercaDocumenti(const CriteriDocumenti& c);

// The rows that hang on a document, in this order and without a transaction: its lines, its
// charges, its instalments, its payments. The document's own row stays for the caller (the
// register deletes it through its grid); a failure half way leaves deleted what was deleted.
void EliminaRigheDocumento(long documento);

}  // namespace sales
