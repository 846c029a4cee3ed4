// The one place where the sales area puts its screens in the registry: documents, customers, services.
#pragma once

void RegistraSchermiVendite();
