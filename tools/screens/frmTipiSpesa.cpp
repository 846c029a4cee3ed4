#include "tools/screens/frmTipiSpesa.h"

#include "tools/campi_codici.h"

const TabellaDescrizioni& TipiSpesa() {
    static const TabellaDescrizioni t{
        "frmTipiSpesa", "frmTipiSpesaEdita", "TipiSpesa", "DescTipoSpesa", tools::CampiTipiSpesa(), "s31", "s44",
        {"DescTipoSpesa"},
        {"TipoSpesa", {{"Spese", "s295"}}},
        "s296",
    };
    return t;
}

const TabellaDescrizioni& ClassificazioniSpese() {
    static const TabellaDescrizioni t{
        "frmClassificazioniSpese", "frmClassificazioniSpeseEdita", "ClassificazioniSpese", "DescClassificazione",
        tools::CampiClassificazioniSpese(), "s27", "s157",
        {"DescClassificazione", "DescZona"},
        {"Classificazione", {{"Spese", "s29"}}},
        "Eliminare la classificazione",
    };
    return t;
}
