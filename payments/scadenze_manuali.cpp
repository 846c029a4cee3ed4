#include "payments/scadenze_manuali.h"

#include "core/impostazioni.h"
#include "store/convert.h"

namespace payments {

std::string ListaDocumentiScadenze(bool nuova, bool latoFornitori) {
    const std::string tipi = latoFornitori ? TipiLatoFornitori : TipiLatoClienti;
    // On a change every document of the side, so that the instalment's own stays in the list.
    const std::string filtro = nuova ? " where Rimanente<>0" + tipi : " where " + tipi.substr(5);
    return "Select * from qrDocumentiScadenze" + filtro + " Order By Data Desc";
}

std::string ListaDocumentiDi(const std::string& campo, long id, bool nuova) {
    return "Select * from qrDocumentiScadenze where " + campo + "=" + std::to_string(id) +
           (nuova ? " and Rimanente<>0" : "") + " Order By Data Desc";
}

std::string ListaSpeseScadenze(bool nuova) {
    return std::string("Select * from qrSpeseScadenze") + (nuova ? " where Rimanente<>0" : "") + " Order By Data Desc";
}

std::string ListaSpeseDi(long fornitore, bool nuova) {
    return "Select * from qrSpeseScadenze where Fornitore=" + std::to_string(fornitore) +
           (nuova ? " and Rimanente<>0" : "") + " Order By Data Desc";
}

double ImportoDaConfrontare(double importo, const DocumentoScelto& d, bool modifica) {
    // To the cent, so that 100.01 less 60 is 40.01 and not a hair above or below it.
    return store::Round(modifica ? importo - d.scadenze : importo, 2);
}

std::string DescrizioneScadenza(double importo, const DocumentoScelto& d, bool modifica) {
    const bool saldo = ImportoDaConfrontare(importo, d, modifica) >= d.rimanente;
    return core::Testo(saldo ? "s170" : "s226") + " " + d.descrizione;
}

std::string ControllaScadenza(const ScadenzaDaControllare& s) {
    if (s.dataVuota) return "s219";
    if (!s.dataValida) return "s220";
    if (s.cliente == 0 && s.fornitore == 0) return s.spesa ? "s229" : "s221";
    if (s.documento == 0) return s.spesa ? "s230" : "s222";
    if (ImportoDaConfrontare(s.importo, s.scelto, s.modifica) > s.scelto.rimanente) return s.spesa ? "s242" : "s241";
    return "";
}

}  // namespace payments
