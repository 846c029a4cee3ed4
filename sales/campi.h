// The field tables of customers and services, and of the lists that hang on a customer: what each
// column, search choice and side-panel row is called and how wide and formatted it is.
#pragma once

#include <string>

#include "core/campi.h"

namespace sales {

const core::TabellaCampi& CampiClienti();
const core::TabellaCampi& CampiServizi();
// The rows of a customer's tabs: statement, open instalments, payments, lines sold, visits.
const core::TabellaCampi& CampiSchedeCliente();

// The visits of a customer: every month (mese 0, grouped by month) or one month (1 to 12).
std::string SorgenteAssistenze(long cliente, int mese);

}  // namespace sales
