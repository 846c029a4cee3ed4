#include "tools/screens/frmTipiSpesa.h"

const TabellaDescrizioni& TipiSpesa() {
    static const TabellaDescrizioni t{
        "frmTipiSpesa", "frmTipiSpesaEdita", "TipiSpesa", "DescTipoSpesa", "s31", "s44",
        {{"s77", "DescTipoSpesa"}},
        {"TipoSpesa", {{"Spese", "s295"}}},
        "s296",
    };
    return t;
}

// The search choice keeps a second entry on a field no table has: choosing it ends in the
// database's error, shown by the search command.
const TabellaDescrizioni& ClassificazioniSpese() {
    static const TabellaDescrizioni t{
        "frmClassificazioniSpese", "frmClassificazioniSpeseEdita", "ClassificazioniSpese", "DescClassificazione",
        "s27", "s157",
        {{"s77", "DescClassificazione"}, {"Zona", "DescZona"}},
        {"Classificazione", {{"Spese", "s29"}}},
        "Eliminare la classificazione",
    };
    return t;
}
