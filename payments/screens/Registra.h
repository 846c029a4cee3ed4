// The one place where the payments area puts its screens in the registry.
#pragma once

void RegistraSchermiPagamenti();
