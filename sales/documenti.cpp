#include "sales/documenti.h"

#include <string>

#include "core/archivio_sql.h"
#include "core/varie.h"

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
        {"Imponibile", "s126", 2000, "#,0.00", Allineamento::Destra},
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

std::string IstruzioneRicercaDocumenti(const CriteriDocumenti& c) {
    std::string w;
    if (c.dataDal) w += " and DateValue(Data)>=DateValue('" + c.dal + "')";
    if (c.dataAl) w += " and DateValue(Data)<=DateValue('" + c.al + "')";
    if (c.dest) w += " and Cliente=" + std::to_string(c.cliente);
    if (c.pagate == 0) w += " and Pagato=False";
    else if (c.pagate == 1) w += " and Pagato=True";
    if (c.numDal) {
        w += " and Prefisso>='" + core::Apici(c.prefissoDal) + "'";
        w += " and Suffisso>='" + core::Apici(c.suffissoDal) + "'";
        w += " and Numero>=" + std::to_string(c.numeroDal);
    }
    if (c.numAl) {
        w += " and Prefisso<='" + core::Apici(c.prefissoAl) + "'";
        w += " and Suffisso<='" + core::Apici(c.suffissoAl) + "'";
        w += " and Numero<=" + std::to_string(c.numeroAl);
    }
    w += " and Tipo=" + std::to_string(c.tipo);
    // The leading " and " goes.
    return "Select * from qrDocumenti  where " + w.substr(5);
}

void EliminaRigheDocumento(long documento) {
    auto db = core::ArchivioAperto();
    const std::string id = std::to_string(documento);
    for (const char* tabella : {"Movimenti", "SpeseDocumenti", "Scadenze", "Pagamenti"})
        db->Execute(std::string("Delete from ") + tabella + " where Documento=" + id);
}

}  // namespace sales
