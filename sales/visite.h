// Service visits: the checks of a visit's times, and the visits of a period turned into the lines of
// a fattura. Each visit to charge gives a line for the work, and when kilometres were driven a flat
// call charge and the mileage; the quantity stays 1, time and distance show in the description.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace sales {

// ---- one visit --------------------------------------------------------------------------------

// A time as typed ("9.30", "14.05", "9:30"): the fraction of a day, or nothing when the text is no
// time. An empty text and the box's default "0" mean no time.
std::optional<double> OraVisita(const std::string& testo);
bool OraVuota(const std::string& testo);

enum class EsitoOrari {
    Validi,
    InizioNonValido,   // a text that is no time
    FineNonValida,
    FinePrimaDellInizio,
};
// The start and end of a visit, as the editor checks them before saving.
EsitoOrari ControllaOrari(const std::string& inizio, const std::string& fine);
extern const char* const MsgFinePrimaDellInizio;

// ---- the visits of a period -------------------------------------------------------------------

// The visits to charge of a customer between two dates, as typed ("" is the no-date sentinel).
std::string SorgenteVisitePeriodo(long cliente, const std::string& dal, const std::string& al);

struct Visita {
    long id = 0;
    double data = 0;
    std::string oraInizio, oraFine;
    double minuti = 0;   // TempoIntervento of qrAssistenze
    double km = 0;
    std::string servizio;
};
// The visits a statement over qrAssistenze gives, in its order.
std::vector<Visita> LeggiVisite(const std::string& istruzione);

struct Tariffe {
    double costoOra = 15;
    double costoKm = 0.20;
    long iva = 0;
};
// A rate as typed in its box: a number (comma or point as the decimal separator), or nothing.
std::optional<double> LeggiTariffa(const std::string& testo);

struct RigaVisita {
    std::string descrizione;
    double prezzo = 0;   // quantity 1: the amount is the price
};
// The one to three lines of a visit: the work at the hourly rate, and with kilometres the flat call
// charge and the mileage, each rounded to the cent.
std::vector<RigaVisita> RigheVisita(const Visita& v, const Tariffe& t);
// The flat charge of a visit with kilometres.
constexpr double DirittoFissoChiamata = 10;

// A visit that an earlier document of the customer already charged: its date lies in that
// document's period.
struct VisitaGiaFatturata {
    long visita = 0;
    double data = 0;
    long documento = 0;
    std::string numero;   // as the document shows it: prefix, number, suffix
};
std::vector<VisitaGiaFatturata> VisiteGiaFatturate(long cliente, long tipo, const std::vector<Visita>& visite,
                                                   long escludiDocumento = 0);
// The refusal shown for them, naming the first ones.
std::string MessaggioGiaFatturate(const std::vector<VisitaGiaFatturata>& gia);

// Writes the lines of the visits on the document, in their order, and recomputes its totals.
// Answers the number of lines written.
int GeneraRigheVisite(long documento, const std::vector<Visita>& visite, const Tariffe& t);

}  // namespace sales
