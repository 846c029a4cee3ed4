#include "core/estratto_conto.h"

namespace core {

namespace {
GeneratoreEstratto& generatore() {
    static GeneratoreEstratto g;
    return g;
}
}  // namespace

void installaGeneraEstratto(GeneratoreEstratto g) { generatore() = std::move(g); }

void GeneraEstratto(long intestatario, long tipo, bool soloAperte, double dal, double al, bool gruppi) {
    if (generatore()) generatore()(intestatario, tipo, soloAperte, dal, al, gruppi);
}

RichiestaStampa StampaEstratto(long tipo, const IntestazioneEstratto& i) {
    RichiestaStampa r;
    r.sezione = "Estratto";
    r.subReports.Add("Elenco", "Select * from Estratto where Tipo=" + std::to_string(tipo) + " Order By ID");
    r.parametri.Add("Denominazione", "Denominazione", i.denominazione);
    r.parametri.Add("Indirizzo", "Indirizzo", i.indirizzo);
    r.parametri.Add("Cap", "Cap", i.cap);
    r.parametri.Add("Citta", "Citta", i.citta);
    r.parametri.Add("Provincia", "Provincia", i.provincia);
    r.parametri.Add("Recapito", "Recapito", i.cap + " " + i.citta + " " + i.provincia);
    r.parametri.Add("PartitaIva", "PartitaIva", i.partitaIva);
    return r;
}

}  // namespace core
