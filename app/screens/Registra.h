// The one place where the program's own screens go into the registry (login, configuration, period,
// main panel, companies, users), with the hooks start-up needs: closing a screen by name, the end of
// loading, and the notices other screens send the panel.
#pragma once

void RegistraSchermiProgramma();

// Every area's screens: the program's own and each area's, each registered in its area's one place.
// The panel enables a command once its screen is there.
void RegistraSchermi();
