#include "sales/visite.h"

#include <algorithm>
#include <cmath>

#include "core/archivio_sql.h"
#include "core/impostazioni.h"
#include "core/record.h"
#include "core/varie.h"
#include "sales/totali.h"
#include "store/convert.h"

namespace sales {

namespace {

std::string Testo(const char* chiave) { return core::Testo(chiave); }

}  // namespace

const char* const MsgFinePrimaDellInizio = "L'ora di fine dell'intervento è precedente all'ora di inizio!";

bool OraVuota(const std::string& testo) {
    const std::string t = core::Trim(testo);
    return t.empty() || t == "0";
}

// Only a time of day: a text that is a date as well ("1.2.3" apart) is no time of a visit.
std::optional<double> OraVisita(const std::string& testo) {
    if (OraVuota(testo)) return std::nullopt;
    const std::optional<double> d = store::ParseDateText(core::Trim(testo));
    if (!d || *d < 0 || *d >= 1) return std::nullopt;
    return d;
}

EsitoOrari ControllaOrari(const std::string& inizio, const std::string& fine) {
    const std::optional<double> i = OraVisita(inizio), f = OraVisita(fine);
    if (!OraVuota(inizio) && !i) return EsitoOrari::InizioNonValido;
    if (!OraVuota(fine) && !f) return EsitoOrari::FineNonValida;
    if (i && f && *f < *i) return EsitoOrari::FinePrimaDellInizio;
    return EsitoOrari::Validi;
}

std::string SorgenteVisitePeriodo(long cliente, const std::string& dal, const std::string& al) {
    auto data = [](const std::string& d) { return core::Trim(d).empty() ? std::string("0.00.00") : d; };
    return "Select * from qrAssistenze where Cliente=" + std::to_string(cliente) +
           " and DateValue(Data)>=DateValue('" + data(dal) + "') and DateValue(Data)<=DateValue('" + data(al) +
           "') And Fattura=True";
}

std::vector<Visita> LeggiVisite(const std::string& istruzione) {
    std::vector<Visita> out;
    for (auto rs = core::Apri(istruzione); !rs->Eof(); rs->MoveNext()) {
        Visita v;
        v.id = store::CLng(rs->get("ID"));
        const store::Value data = rs->get("Data");
        v.data = data.isNull() ? 0 : store::CDate(data);
        v.oraInizio = store::ConcatText(rs->get("OraInizio"));
        v.oraFine = store::ConcatText(rs->get("OraFine"));
        v.minuti = core::NumeroOZero(rs->get("TempoIntervento"));
        v.km = core::NumeroOZero(rs->get("Km"));
        v.servizio = store::ConcatText(rs->get("DescServizio"));
        out.push_back(std::move(v));
    }
    return out;
}

std::optional<double> LeggiTariffa(const std::string& testo) {
    std::string t = core::Trim(testo);
    // A lone point is the decimal comma typed with the keypad.
    if (t.find(',') == std::string::npos && t.find('.') != std::string::npos && t.find('.') == t.rfind('.'))
        t[t.find('.')] = ',';
    const std::optional<double> n = store::ParseNumberText(t);
    if (!n || !std::isfinite(*n) || *n < 0) return std::nullopt;
    return n;
}

std::vector<RigaVisita> RigheVisita(const Visita& v, const Tariffe& t) {
    const std::string testa = Testo("s204") + " " + store::ConcatText(store::Value::Date(v.data)) + " " +
                              Testo("s205") + " " + v.oraInizio + " " + Testo("s206") + " " + v.oraFine + " " +
                              Testo("s207") + " " + store::NumberText(v.minuti) + " " + Testo("s208") + " " +
                              v.servizio + ". ";
    std::vector<RigaVisita> righe{{testa + Testo("s209"), store::Round(v.minuti * (t.costoOra / 60), 2)}};
    if (v.km > 0) {
        righe.push_back({testa + Testo("s210"), DirittoFissoChiamata});
        righe.push_back({testa + Testo("s211") + " " + store::NumberText(v.km), store::Round(v.km * t.costoKm, 2)});
    }
    return righe;
}

std::vector<VisitaGiaFatturata> VisiteGiaFatturate(long cliente, long tipo, const std::vector<Visita>& visite,
                                                   long escludiDocumento) {
    struct Periodo {
        long id;
        double dal, al;
        std::string numero;
    };
    std::vector<Periodo> periodi;
    for (auto rs = core::Apri("Select ID, DataDal, DataAl, DescNum from qrDocumenti where Cliente=" +
                              std::to_string(cliente) + " and Tipo=" + std::to_string(tipo) +
                              " and Not IsNull(DataDal) and Not IsNull(DataAl) and ID<>" +
                              std::to_string(escludiDocumento) + " order by Data, ID");
         !rs->Eof(); rs->MoveNext())
        periodi.push_back({store::CLng(rs->get("ID")), store::DateValue(rs->get("DataDal")),
                           store::DateValue(rs->get("DataAl")), store::ConcatText(rs->get("DescNum"))});
    std::vector<VisitaGiaFatturata> gia;
    for (const Visita& v : visite) {
        const double giorno = std::floor(v.data);
        for (const Periodo& p : periodi)
            if (giorno >= p.dal && giorno <= p.al) {
                gia.push_back({v.id, v.data, p.id, p.numero});
                break;
            }
    }
    return gia;
}

std::string MessaggioGiaFatturate(const std::vector<VisitaGiaFatturata>& gia) {
    std::string m = "Alcuni interventi del periodo sono già stati fatturati:";
    const size_t mostrati = std::min<size_t>(gia.size(), 5);
    for (size_t i = 0; i < mostrati; ++i)
        m += "\r\n- intervento del " + store::ShortDate(gia[i].data) + " nella fattura n. " + gia[i].numero;
    if (gia.size() > mostrati) m += "\r\n- e altri " + std::to_string(gia.size() - mostrati);
    return m + "\r\nScegliere un periodo che non comprenda interventi già fatturati.";
}

int GeneraRigheVisite(long documento, const std::vector<Visita>& visite, const Tariffe& t) {
    int scritte = 0;
    auto rs = core::Apri("Select * from Movimenti where ID<0");
    for (const Visita& v : visite)
        for (const RigaVisita& r : RigheVisita(v, t)) {
            rs->AddNew();
            rs->set("ID", store::Value::Long(static_cast<std::int32_t>(core::ProssimoID("Movimenti"))));
            rs->set("Documento", store::Value::Long(static_cast<std::int32_t>(documento)));
            rs->set("DescMovimento", store::Value::Text(r.descrizione));
            rs->set("Quantita", store::Value::Double(1));
            rs->set("PrezzoUnitario", store::Value::Double(r.prezzo));
            rs->set("Importo", store::Value::Double(r.prezzo));
            rs->set("Iva", store::Value::Long(static_cast<std::int32_t>(t.iva)));
            rs->Update();
            ++scritte;
        }
    CalcolaTotaliDocumento(documento);
    return scritte;
}

}  // namespace sales
