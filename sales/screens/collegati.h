// The editors of linked tables that belong to other areas (customers, suppliers, services, VAT
// codes, payment terms), opened by their names through the screen registry.
#pragma once

#include <string>

#include "ui/EditorBase.h"

// The editor registered under that name: it finds the record to change as its mode (0 for a new
// one) and leaves the id it saved in the session's IDRecordEdit, which is read and reset.
EditorBase::ApriCollegato perNome(std::string schermo);
