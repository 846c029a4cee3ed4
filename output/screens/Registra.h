// The one place where the output area puts its screens in the registry: the print screen, which the
// registers reach through core::Stampa; the two exports; the progress and the opening of a written
// file that the spreadsheet export of the registers uses.
#pragma once

void RegistraSchermiOutput();
