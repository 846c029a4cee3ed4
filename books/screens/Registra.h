// The one place where the books area puts its screens in the registry.
#pragma once

void RegistraSchermiLibri();
