#include "sales/stampa_documenti.h"

#include "core/archivio_sql.h"
#include "core/documenti.h"
#include "core/impostazioni.h"
#include "store/convert.h"

namespace sales {

namespace {

std::string limite(bool chiesto, const std::string& valore, const std::string& altrimenti) {
    return chiesto ? valore : core::Testo(altrimenti);
}

std::string nomeCliente(long cliente) {
    auto rs = core::ArchivioAperto()->OpenRecordset("Select DescCliente & DescCliente2 from Clienti where ID=" +
                                                    std::to_string(cliente));
    return rs->Eof() ? std::string() : store::ConcatText(rs->Fields(0).value());
}

}  // namespace

std::string SezioneStampaDocumenti(long tipo) {
    switch (tipo) {
    case core::TipoFatturaEmessa: return "Fatture";
    case core::TipoNotaCreditoEmessa: return "NoteDebito";
    case core::TipoPreventivo: return "Preventivi";
    default: return "";
    }
}

std::string CriterioDocumenti(const CriteriDocumenti& c) {
    static const char* const pagate[] = {"Non Pagate", "Pagate", "Pagate & Non"};
    const std::string stato = pagate[c.pagate >= 0 && c.pagate <= 2 ? c.pagate : 2];
    const std::string date = core::Testo("s236") + " " + limite(c.dataDal, c.dal, "s238") + " " +
                             core::Testo("s237") + " " + limite(c.dataAl, c.al, "s238");
    const std::string numeri = core::Testo("s272") + " " + limite(c.numDal, std::to_string(c.numeroDal), "s239") +
                               " " + core::Testo("s273") + " " +
                               limite(c.numAl, std::to_string(c.numeroAl), "s239");
    const std::string cliente = core::Testo("s40") + " " + (c.dest ? nomeCliente(c.cliente) : core::Testo("s239"));
    return core::Testo("s235") + " " + stato + "; " + date + "; " + numeri + "; " + cliente;
}

core::RichiestaStampa StampaDocumenti(const CriteriDocumenti& c, long idCorrente, const std::string& elenco) {
    core::RichiestaStampa r;
    r.sezione = SezioneStampaDocumenti(c.tipo);
    const std::string id = std::to_string(idCorrente);
    r.subReports.Add("Documento", "Select * from qrDocumenti where ID=" + id);
    r.subReports.Add("Movimento", "Select * from qrMovimenti where Documento=" + id);
    r.subReports.Add("Elenco", elenco);
    r.parametri.Add("Criterio", "Criterio", CriterioDocumenti(c));
    return r;
}

core::RichiestaStampa StampaRitenutaDocumento(long idCorrente) {
    core::RichiestaStampa r;
    r.sezione = "RitenutaAcconto";
    r.subReports.Add("Elenco", "Select * from qrCertificazioniAcconto where ID=" + std::to_string(idCorrente));
    return r;
}

}  // namespace sales
