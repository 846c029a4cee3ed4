// The one place where the output area puts its screens in the registry: the print screen, which the
// registers reach through core::Stampa.
#pragma once

void RegistraSchermiOutput();
