#include "sales/numerazione.h"

#include "core/services.h"
#include "sales/archivio_sql.h"
#include "store/convert.h"
#include "store/errors.h"

namespace sales {

namespace {

std::string TestoPrefissoSuffisso(const std::string& prefisso, const std::string& suffisso) {
    return " and Prefisso='" + prefisso + "' and Suffisso='" + suffisso + "'";
}

std::string DalInizioEsercizio() {
    return " and DateValue(Data)>=DateValue('" + DataSql(core::DataInizioEsercizio()) + "')";
}

std::vector<std::string> ValoriDistinti(long tipo, const std::string& campo) {
    auto rs = Apri("Select " + campo + " From Documenti where Tipo=" + std::to_string(tipo) + " Group By " + campo);
    std::vector<std::string> valori;
    for (; !rs->Eof(); rs->MoveNext()) valori.push_back(store::ConcatText(rs->get(campo)));
    return valori;
}

}  // namespace

std::string TitoloTipoDocumento(long tipo) {
    switch (tipo) {
        case TipoFatturaEmessa: return core::Testo("s14");
        case TipoNotaCreditoEmessa: return "Note di Credito Emesse";
        case TipoPreventivo: return core::Testo("s320");
        case TipoNotaCreditoRicevuta: return "Note di Credito Ricevute";
        default: return {};
    }
}

std::string TitoloStampaDocumento(long tipo) {
    switch (tipo) {
        case TipoFatturaEmessa: return core::Testo("s321");
        case TipoNotaCreditoEmessa:
        case TipoNotaCreditoRicevuta: return "Nota di Credito";
        case TipoPreventivo: return "PREVENTIVO";
        default: return {};
    }
}

bool TipoAttivo(long tipo) { return tipo == TipoFatturaEmessa || tipo == TipoNotaCreditoRicevuta; }

bool TipoVersoCliente(long tipo) {
    return tipo == TipoFatturaEmessa || tipo == TipoNotaCreditoEmessa || tipo == TipoPreventivo;
}

std::vector<std::string> CaricaPrefissi(long tipo) { return ValoriDistinti(tipo, "Prefisso"); }
std::vector<std::string> CaricaSuffissi(long tipo) { return ValoriDistinti(tipo, "Suffisso"); }

long ProssimoNumeroDocumento(long tipo, const std::string& prefisso, const std::string& suffisso) {
    auto rs = Apri("Select Max(Numero) as dNum from Documenti where Tipo=" + std::to_string(tipo) +
                   TestoPrefissoSuffisso(prefisso, suffisso) + DalInizioEsercizio());
    const store::Value massimo = rs->get("dNum");
    return massimo.isNull() ? 1 : store::CLng(massimo) + 1;
}

short ProssimoNumeroSpesa() {
    try {
        auto rs = Apri("Select Max(cdbl(Numero)) as dNum from Spese where IsNumeric(Numero)" + DalInizioEsercizio());
        const store::Value massimo = rs->get("dNum");
        if (massimo.isNull()) return 1;
        return store::CInt(store::Value::Double(store::CDbl(massimo) + 1));
    } catch (const store::JetError&) {
        return 0;
    }
}

bool NumeroDuplicato(long tipo, long numero, const std::string& prefisso, const std::string& suffisso,
                     long numeroAttuale) {
    return HaRighe("Select * from Documenti where Tipo=" + std::to_string(tipo) + " and Numero=" +
                   std::to_string(numero) + TestoPrefissoSuffisso(prefisso, suffisso) + " and Numero<>" +
                   std::to_string(numeroAttuale));
}

bool SequenzaCronologicaValida(long tipo, long numero, double data, const std::string& prefisso,
                               const std::string& suffisso) {
    const std::string n = std::to_string(numero);
    const std::string d = DataSql(data);
    return !HaRighe("Select * from Documenti where Tipo=" + std::to_string(tipo) + " and ((Numero<" + n +
                    " and DateValue(Data)>DateValue('" + d + "')) OR (Numero>" + n +
                    " and DateValue(Data)<DateValue('" + d + "')))" + TestoPrefissoSuffisso(prefisso, suffisso) +
                    DalInizioEsercizio());
}

long TipoDocumento(long id) {
    auto rs = Apri("Select Tipo from Documenti where ID=" + std::to_string(id));
    if (rs->Eof()) return 0;
    return store::CLng(rs->get("Tipo"));
}

}  // namespace sales
