#include "core/esercizio.h"

#include <optional>

#include "core/session.h"
#include "store/convert.h"

namespace core {

namespace {

// The field of the current Esercizio's row; nullopt when it is Null or the row is missing.
std::optional<double> DataEsercizio(const char* campo) {
    auto& s = session();
    if (!s.dbAziende) store::raise(91, "(Aziende.mdb non aperto)");
    auto rs = s.dbAziende->OpenRecordset("Select * from Esercizi where ID=" + std::to_string(s.IDEsercizio));
    if (rs->Eof()) return std::nullopt;
    const store::Value valore = rs->get(campo);
    if (valore.isNull()) return std::nullopt;
    return store::CDate(valore);
}

bool Vuoto(const std::string& testo) { return testo.find_first_not_of(" \t") == std::string::npos; }

}  // namespace

double DataInizioEsercizio() { return DataEsercizio("Dal").value_or(store::CDate(store::Value::Text("0.00.00"))); }

double DataFineEsercizio() {
    if (const auto al = DataEsercizio("Al")) return *al;
    const int anno = store::SplitDate(DataInizioEsercizio()).year;
    return store::CDate(store::Value::Text("31/12/" + std::to_string(anno)));
}

bool DataFuoriEsercizio(const std::string& testo) {
    const store::Value valore = store::Value::Text(testo);
    if (Vuoto(testo) || !store::IsDate(valore)) return true;
    const double data = store::DateValue(valore);
    const double inizio = store::DateValue(store::Value::Date(DataInizioEsercizio()));
    const double fine = store::DateValue(store::Value::Date(DataFineEsercizio()));
    return !(data >= inizio && data <= fine);
}

}  // namespace core
