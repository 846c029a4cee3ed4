#include "expenses/campi.h"

namespace expenses {

using core::Allineamento;

const core::TabellaCampi& CampiFornitori() {
    static const core::TabellaCampi t{
        {"DescFornitore", "s101", 4200},
        {"DescFornitore2", "Denominazione (2)", 2400},
        {"Indirizzo", "s102", 2400},
        {"Cap", "s103", 700},
        {"Citta", "s104", 1800},
        {"Provincia", "s105", 500},
        {"PartitaIva", "Partita Iva", 1400},
        {"CodiceFiscale", "Codice fiscale", 1800},
        {"Telefono", "s107", 1400},
        {"Cellulare", "s146", 1400},
        {"Fax", "s108", 1400},
        {"Mail", "E-mail", 2400},
        {"Web", "Web", 2400},
        {"Banca", "s162", 2400},
        {"ABI", "ABI", 700},
        {"CAB", "CAB", 700},
        {"CIN", "CIN", 400},
        {"NumeroConto", "Conto N.", 1400},
        {"Note", "s20", 3000},
    };
    return t;
}

const core::TabellaCampi& CampiSpese() {
    static const core::TabellaCampi t{
        {"Numero", "s287", 1200, "", Allineamento::Destra},
        {"Data", "s84", 1300, "dd/mm/yyyy"},
        {"DescFornitore", "s41", 3000},
        {"Indirizzo", "s102", 2400},
        {"Cap", "s103", 700},
        {"Citta", "s104", 1800},
        {"Provincia", "s105", 500},
        {"Telefono", "s200", 1400},
        {"Fax", "s108", 1400},
        {"DescPagamento", "s46", 2400},
        {"DescTipoSpesa", "Tipologia", 1800},
        {"DescClassificazione", "s157", 1800},
        {"Imponibile", "Imponibile", 1300, "#,0.00", Allineamento::Destra},
        {"TotIva", "Totale Iva", 1200, "#,0.00", Allineamento::Destra},
        {"TotRitenutaAcconto", "Ritenuta", 1200, "#,0.00", Allineamento::Destra},
        {"ImportoSpesa", "Totale", 1300, "#,0.00", Allineamento::Destra},
        {"DescEstrattoConto", "Estratto conto", 1400},
        {"Note", "s20", 3000},
    };
    return t;
}

const core::TabellaCampi& CampiMovimentiSpese() {
    static const core::TabellaCampi t{
        {"DescMovimento", "s77", 4200},
        {"Importo", "s171", 1300, "#,0.00", Allineamento::Destra},
        {"DescIva", "Iva", 2000},
        {"AliquotaIva", "s190", 800, "#,0.00", Allineamento::Destra},
        {"Imponibile", "Imponibile", 1400, "#,0.00", Allineamento::Destra},
        {"Imposta", "s279", 1400, "#,0.00", Allineamento::Destra},
    };
    return t;
}

}  // namespace expenses
