// The field table of Documenti as its register and editors show it, and what goes with a document
// when it is deleted.
#pragma once

#include "core/campi.h"

namespace sales {

const core::TabellaCampi& CampiDocumenti();
const core::TabellaCampi& CampiMovimenti();
const core::TabellaCampi& CampiSpeseDocumenti();
const core::TabellaCampi& CampiRiepilogoIva();
const core::TabellaCampi& CampiScadenzeDocumento();

// The rows that hang on a document, in this order and without a transaction: its lines, its
// charges, its instalments, its payments. The document's own row stays for the caller (the
// register deletes it through its grid); a failure half way leaves deleted what was deleted.
void EliminaRigheDocumento(long documento);

}  // namespace sales
