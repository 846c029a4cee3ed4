#include "sales/numerazione.h"

#include "core/services.h"
#include "core/archivio_sql.h"
#include "store/convert.h"
#include "store/errors.h"

namespace sales {

namespace {

std::string TestoPrefissoSuffisso(const std::string& prefisso, const std::string& suffisso) {
    return " and Prefisso='" + prefisso + "' and Suffisso='" + suffisso + "'";
}

std::string DalInizioEsercizio() {
    return " and DateValue(Data)>=DateValue('" + core::DataSql(core::DataInizioEsercizio()) + "')";
}

std::vector<std::string> ValoriDistinti(long tipo, const std::string& campo) {
    auto rs = core::Apri("Select " + campo + " From Documenti where Tipo=" + std::to_string(tipo) + " Group By " + campo);
    std::vector<std::string> valori;
    for (; !rs->Eof(); rs->MoveNext()) valori.push_back(store::ConcatText(rs->get(campo)));
    return valori;
}

}  // namespace

std::vector<std::string> CaricaPrefissi(long tipo) { return ValoriDistinti(tipo, "Prefisso"); }
std::vector<std::string> CaricaSuffissi(long tipo) { return ValoriDistinti(tipo, "Suffisso"); }

long ProssimoNumeroDocumento(long tipo, const std::string& prefisso, const std::string& suffisso) {
    auto rs = core::Apri("Select Max(Numero) as dNum from Documenti where Tipo=" + std::to_string(tipo) +
                   TestoPrefissoSuffisso(prefisso, suffisso) + DalInizioEsercizio());
    const store::Value massimo = rs->get("dNum");
    return massimo.isNull() ? 1 : store::CLng(massimo) + 1;
}

short ProssimoNumeroSpesa() {
    try {
        auto rs = core::Apri("Select Max(cdbl(Numero)) as dNum from Spese where IsNumeric(Numero)" + DalInizioEsercizio());
        const store::Value massimo = rs->get("dNum");
        if (massimo.isNull()) return 1;
        return store::CInt(store::Value::Double(store::CDbl(massimo) + 1));
    } catch (const store::JetError&) {
        return 0;
    }
}

bool NumeroDuplicato(long tipo, long numero, const std::string& prefisso, const std::string& suffisso,
                     long numeroAttuale) {
    return core::HaRighe("Select * from Documenti where Tipo=" + std::to_string(tipo) + " and Numero=" +
                   std::to_string(numero) + TestoPrefissoSuffisso(prefisso, suffisso) + " and Numero<>" +
                   std::to_string(numeroAttuale));
}

bool SequenzaCronologicaValida(long tipo, long numero, double data, const std::string& prefisso,
                               const std::string& suffisso) {
    const std::string n = std::to_string(numero);
    const std::string d = core::DataSql(data);
    return !core::HaRighe("Select * from Documenti where Tipo=" + std::to_string(tipo) + " and ((Numero<" + n +
                    " and DateValue(Data)>DateValue('" + d + "')) OR (Numero>" + n +
                    " and DateValue(Data)<DateValue('" + d + "')))" + TestoPrefissoSuffisso(prefisso, suffisso) +
                    DalInizioEsercizio());
}

}  // namespace sales
