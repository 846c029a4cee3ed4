// The field tables of the purchase side: suppliers, expenses and their lines, as the registers,
// editors and side panels show them.
#pragma once

#include "core/campi.h"

namespace expenses {

const core::TabellaCampi& CampiFornitori();
const core::TabellaCampi& CampiSpese();
const core::TabellaCampi& CampiMovimentiSpese();

}  // namespace expenses
