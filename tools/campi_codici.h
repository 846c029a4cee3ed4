// The field tables of the code tables: VAT codes, kinds and classes of expense, towns.
#pragma once

#include "core/campi.h"

namespace tools {

const core::TabellaCampi& CampiCodiciIva();
const core::TabellaCampi& CampiTipiSpesa();
const core::TabellaCampi& CampiClassificazioniSpese();
const core::TabellaCampi& CampiComuni();

}  // namespace tools
