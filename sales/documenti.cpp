#include "sales/documenti.h"

#include <string>

#include "core/archivio_sql.h"

namespace sales {

const core::TabellaCampi& CampiDocumenti() {
    using core::Allineamento;
    static const core::TabellaCampi t{
        {"Data", "s84", 1300, "dd/mm/yyyy"},
        {"Prefisso", "s285", 900},
        {"Numero", "s287", 900, "", Allineamento::Destra},
        {"Suffisso", "s286", 900},
        {"ImportoTotale", "s171", 1500, "#,0.00", Allineamento::Destra},
        {"DescEstrattoConto", "Estratto Conto", 1800},
        {"Denominazione", "s101", 3500},
        {"DescFornitore", "Fornitore", 3500},
        {"Imponibile", "s126", 1400, "#,0.00", Allineamento::Destra},
        {"TotNetto", "s280", 1400, "#,0.00", Allineamento::Destra},
        {"TotSpese", "Spese", 1400, "#,0.00", Allineamento::Destra},
        {"TotIva", "s281", 1400, "#,0.00", Allineamento::Destra},
        {"TotRitenutaAcconto", "Rit.Acc.", 1400, "#,0.00", Allineamento::Destra},
    };
    return t;
}

const core::TabellaCampi& CampiMovimenti() {
    using core::Allineamento;
    static const core::TabellaCampi t{
        {"DescMovimento", "s77", 4200},
        {"Quantita", "s275", 900, "", Allineamento::Destra},
        {"PrezzoUnitario", "s276", 1500, "#,0.000", Allineamento::Destra},
        {"Sconto1", "s277", 1000, "", Allineamento::Destra},
        {"Sconto2", "s278", 1000, "", Allineamento::Destra},
        {"DescIva", "s127", 1500},
        {"Importo", "Importo", 1300, "#,0.00", Allineamento::Destra},
    };
    return t;
}

const core::TabellaCampi& CampiSpeseDocumenti() {
    using core::Allineamento;
    static const core::TabellaCampi t{
        {"DescSpesa", "s77", 4200},
        {"Imponibile", "s126", 1300, "#,0.00", Allineamento::Destra},
        {"DescIva", "s127", 1500},
    };
    return t;
}

const core::TabellaCampi& CampiRiepilogoIva() {
    using core::Allineamento;
    static const core::TabellaCampi t{
        {"DescIva", "s127", 2500},
        {"Imponibile", "s126", 1500, "#,0.00", Allineamento::Destra},
        {"Imposta", "s279", 1500, "#,0.00", Allineamento::Destra},
    };
    return t;
}

const core::TabellaCampi& CampiScadenzeDocumento() {
    using core::Allineamento;
    static const core::TabellaCampi t{
        {"DescScadenza", "s178", 4000},
        {"DataScadenza", "s179", 1200, "dd/mm/yyyy"},
        {"ImportoScadenza", "s180", 1400, "#,0.00", Allineamento::Destra},
        {"Rata", "s198", 600, "", Allineamento::Destra},
        {"Rate", "s199", 600, "", Allineamento::Destra},
    };
    return t;
}

void EliminaRigheDocumento(long documento) {
    auto db = core::ArchivioAperto();
    const std::string id = std::to_string(documento);
    for (const char* tabella : {"Movimenti", "SpeseDocumenti", "Scadenze", "Pagamenti"})
        db->Execute(std::string("Delete from ") + tabella + " where Documento=" + id);
}

}  // namespace sales
