// The screens of the purchase side, put in the registries at start-up.
#pragma once

void RegistraSchermiSpese();
