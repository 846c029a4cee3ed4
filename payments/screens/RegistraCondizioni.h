// Puts the payment terms' screens in the registry, so that menus and other screens open them by name.
#pragma once

void RegistraSchermiCondizioni();
