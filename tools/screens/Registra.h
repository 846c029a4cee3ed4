// The one place where the tools area puts its screens in the registry: code tables and the structure
// update, opened by name from the menus and from other screens.
#pragma once

void RegistraSchermiStrumenti();
