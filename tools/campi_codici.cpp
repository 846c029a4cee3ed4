#include "tools/campi_codici.h"

namespace tools {

using core::Allineamento;

const core::TabellaCampi& CampiCodiciIva() {
    static const core::TabellaCampi t{
        {"DescIva", "s77", 3000},
        {"AliquotaIva", "s190", 1000, "", Allineamento::Destra},
    };
    return t;
}

const core::TabellaCampi& CampiTipiSpesa() {
    static const core::TabellaCampi t{{"DescTipoSpesa", "s77", 4500}};
    return t;
}

// DescZona is a field no table has: the search choice offers it all the same, and choosing it ends
// in the database's error, shown by the search command.
const core::TabellaCampi& CampiClassificazioniSpese() {
    static const core::TabellaCampi t{{"DescClassificazione", "s77", 4500}, {"DescZona", "Zona"}};
    return t;
}

const core::TabellaCampi& CampiComuni() {
    static const core::TabellaCampi t{{"Comune", "s104", 3500}, {"Cap", "Cap", 900}, {"Provincia", "Provincia", 900}};
    return t;
}

}  // namespace tools
