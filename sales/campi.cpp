#include "sales/campi.h"

namespace sales {

using core::Allineamento;

const core::TabellaCampi& CampiClienti() {
    static const core::TabellaCampi t{
        {"Denominazione", "s101", 2400},
        {"DescCliente", "s101", 2400},
        {"DescCliente2", "Denominazione (2)", 2400},
        {"Indirizzo", "s102", 2400},
        {"Cap", "s103", 700},
        {"Citta", "s104", 1800},
        {"Provincia", "s105", 500},
        {"PartitaIva", "s106", 1400},
        {"CodiceFiscale", "s147", 1800},
        {"Telefono", "s107", 1400},
        {"Cellulare", "s146", 1400},
        {"Fax", "s108", 1400},
        {"Mail", "E-mail", 2400},
        {"Web", "Web", 2400},
        {"IvaApplicata", "s158", 1800},
        {"DescIva", "s158", 1800},
        {"CondizioniPagamento", "Pagamento", 2400},
        {"DescPagamento", "Pagamento", 2400},
        {"Sconto1", "Sconto Base", 800, "#,0.00", Allineamento::Destra},
        {"Sconto2", "Sconto Extra", 800, "#,0.00", Allineamento::Destra},
        {"Banca", "s162", 2400},
        {"ABI", "ABI", 700},
        {"CAB", "CAB", 700},
        {"NumeroConto", "Conto", 1400},
        {"CIN", "CIN", 400},
        {"Note", "s20", 3000},
    };
    return t;
}

const core::TabellaCampi& CampiServizi() {
    static const core::TabellaCampi t{
        {"DescServizio", "s77", 3600},
        {"CodiceInterno", "s247", 1200},
        {"CostoUnitario", "s246", 1100, "#,0.00", Allineamento::Destra},
        {"CodiceIva", "s158", 1800},
        {"DescIva", "s158", 1800},
        {"Sconto1", "s248", 800, "#,0.00", Allineamento::Destra},
        {"NonStampare", "Non Stampare", 900},
    };
    return t;
}

const core::TabellaCampi& CampiSchedeCliente() {
    static const core::TabellaCampi t{
        {"Data", "s84", 1300, "dd/mm/yyyy"},
        {"Descrizione", "s77", 3600},
        {"Operazione", "Operazione", 1400},
        {"Dare", "Dare", 1100, "#,0.00", Allineamento::Destra},
        {"Avere", "Avere", 1100, "#,0.00", Allineamento::Destra},
        {"Saldo", "Saldo", 1100, "#,0.00", Allineamento::Destra},
        {"DataScadenza", "Scadenza", 1300, "dd/mm/yyyy"},
        {"DescScadenza", "s77", 2400},
        {"ImportoScadenza", "s171", 1100, "#,0.00", Allineamento::Destra},
        {"Rata", "Rata", 500, "", Allineamento::Destra},
        {"Rate", "Rate", 500, "", Allineamento::Destra},
        {"ImportoPagato", "Pagato", 1100, "#,0.00", Allineamento::Destra},
        {"DaPagare", "Da pagare", 1100, "#,0.00", Allineamento::Destra},
        {"DataPagamento", "s84", 1300, "dd/mm/yyyy"},
        {"DescPagamento", "s77", 2400},
        {"TipoPagamento", "Tipo", 1200},
        {"ImportoPagamento", "s171", 1100, "#,0.00", Allineamento::Destra},
        {"Importo", "s171", 1100, "#,0.00", Allineamento::Destra},
        {"DescNum", "s181", 1100},
        {"DescMovimento", "s77", 3000},
        {"Quantita", "s182", 800, "#,0.00", Allineamento::Destra},
        {"PrezzoUnitario", "s249", 1100, "#,0.00", Allineamento::Destra},
        {"DescServizio", "s39", 2400},
        {"OraInizio", "Inizio", 700, "hh:nn"},
        {"OraFine", "Fine", 700, "hh:nn"},
        {"TempoIntervento", "Minuti", 700, "", Allineamento::Destra},
        {"Km", "Km", 600, "", Allineamento::Destra},
        {"Note", "s20", 3000},
        {"Destinatario", "s40", 2400},
    };
    return t;
}

std::string SorgenteAssistenze(long cliente, int mese) {
    if (cliente == 0) return "SELECT * from qrAssistenze WHERE ID=-1";
    std::string s = "SELECT * from qrAssistenze WHERE Cliente=" + std::to_string(cliente);
    if (mese > 0) s += " and Month(DateValue(Data))=" + std::to_string(mese);
    return s;
}

}  // namespace sales
