#include "payments/generazione_scadenze.h"

#include <algorithm>

#include "core/services.h"
#include "core/archivio_sql.h"
#include "core/documenti.h"
#include "core/pannello.h"
#include "core/registro_schermi.h"
#include "store/clock.h"
#include "store/convert.h"
#include "store/errors.h"

namespace payments {

namespace {

constexpr int kMassimoRate = 12;

int NumeroRate(int rate) {
    if (rate > kMassimoRate) store::raise(9);  // the day table has twelve entries
    return rate > 0 ? rate : 1;
}

double DataScadenza(const RegolaScadenze& regola, int indice) {
    double data = regola.dataConteggio + static_cast<double>(regola.giorni[indice]);
    if (regola.fineMese) data = FineMese(data);
    return PrimoGiornoLavorativo(data);
}

double ScartoAvviso(const RegolaScadenze& regola, bool scrittura) {
    const store::Value testo = store::Value::Text(regola.giorniAvviso);
    if (regola.verso == VersoAvviso::GiorniPrima) return -store::CDbl(testo);
    return scrittura ? store::CDate(testo) : store::CDbl(testo);
}

void RichiediRiga(const std::unique_ptr<store::Recordset>& rs) {
    if (rs->Eof()) store::raise(3021);
}

long LongOZero(const store::Value& v) { return v.isNull() ? 0 : store::CLng(v); }

}  // namespace

double ImportoRata(double totale, int rate) { return rate > 0 ? store::Round(totale / rate, 2) : 0; }

double ImportoUltimaRata(double totale, int rate) {
    const double a = ImportoRata(totale, rate);
    return store::Round(a + totale - a * NumeroRate(rate), 2);
}

double FineMese(double data) {
    const store::DateParts parti = store::SplitDate(data);
    return store::DateSerial(parti.year, parti.month, core::GiorniMese(parti.month, parti.year));
}

double PrimoGiornoLavorativo(double data) {
    while (core::GiornoFestivo(data)) data += 1;
    return data;
}

std::vector<RataPiano> PianoScadenze(const RegolaScadenze& regola, bool scrittura) {
    const int conteggio = NumeroRate(regola.rate);
    const double scarto = ScartoAvviso(regola, scrittura);
    const double quota = ImportoRata(regola.totale, regola.rate);
    std::vector<RataPiano> piano;
    for (int i = 1; i <= conteggio; ++i) {
        RataPiano rata;
        rata.rata = i;
        rata.rate = conteggio;
        rata.dataScadenza = DataScadenza(regola, i - 1);
        rata.dataAvviso = PrimoGiornoLavorativo(rata.dataScadenza + scarto);
        rata.importo = i < conteggio ? quota : ImportoUltimaRata(regola.totale, regola.rate);
        piano.push_back(rata);
    }
    return piano;
}

DocumentoDaScadenzare LeggiDocumentoDaScadenzare(long id) {
    auto rs = core::Apri("Select * from qrDocumenti where ID=" + std::to_string(id));
    RichiediRiga(rs);
    DocumentoDaScadenzare d;
    d.id = id;
    d.cliente = LongOZero(rs->get("Cliente"));
    d.fornitore = LongOZero(rs->get("Fornitore"));
    d.tipo = LongOZero(rs->get("Tipo"));
    d.descNum = store::ConcatText(rs->get("DescNum"));
    d.data = rs->get("Data").isNull() ? 0 : store::CDate(rs->get("Data"));
    d.importoTotale = core::NumeroOZero(rs->get("ImportoTotale"));
    d.condizioniPagamento = LongOZero(rs->get("CondizioniPagamento"));
    return d;
}

CondizionePagamento LeggiCondizionePagamento(long id) {
    auto rs = core::Apri("Select * from CondizioniPagamento where ID=" + std::to_string(id));
    RichiediRiga(rs);
    CondizionePagamento c;
    c.descPagamento = store::ConcatText(rs->get("DescPagamento"));
    c.rate = static_cast<int>(LongOZero(rs->get("Rate")));
    c.fineMese = !rs->get("FineMese").isNull() && store::CBool(rs->get("FineMese"));
    for (int i = 0; i < std::min(c.rate, kMassimoRate); ++i)
        c.giorni[i] = LongOZero(rs->get("Rata" + std::to_string(i + 1)));
    return c;
}

bool HaCondizionePagamento(const DocumentoDaScadenzare& documento) { return documento.condizioniPagamento > 0; }

RegolaScadenze RegolaIniziale(const DocumentoDaScadenzare& documento, const CondizionePagamento* condizione) {
    RegolaScadenze regola;
    regola.totale = documento.importoTotale;
    regola.dataConteggio = store::Oggi();
    if (condizione) {
        regola.rate = condizione->rate;
        regola.giorni = condizione->giorni;
        regola.fineMese = condizione->fineMese;
        regola.dataConteggio = documento.data;
    }
    return regola;
}

std::string DidascaliaDocumento(long tipo, const std::string& descNum, double data) {
    return core::TitoloStampaDocumento(tipo) + " N." + descNum + " del " + store::DateText(data);
}

std::string DescrizioneRata(const RataPiano& rata, const std::string& didascalia) {
    return core::Testo(rata.rata == rata.rate ? "s170" : "s226") + " " + didascalia;
}

void ScriviScadenze(const DocumentoDaScadenzare& documento, const std::vector<RataPiano>& piano) {
    const std::string didascalia = DidascaliaDocumento(documento.tipo, documento.descNum, documento.data);
    auto rs = core::Apri("Select * from Scadenze where ID<0");  // no rows to read, only new ones to add
    for (const RataPiano& rata : piano) {
        rs->AddNew();
        core::NuovoID(*rs);
        rs->set("DescScadenza", store::Value::Text(DescrizioneRata(rata, didascalia)));
        rs->set("Documento", store::Value::Long(documento.id));
        rs->set("DataScadenza", store::Value::Date(rata.dataScadenza));
        rs->set("DataAvviso", store::Value::Date(rata.dataAvviso));
        rs->set("Rata", store::Value::Long(rata.rata));
        rs->set("Rate", store::Value::Long(rata.rate));
        rs->set("ImportoScadenza", store::Value::Double(rata.importo));
        rs->set("Cliente", store::Value::Long(documento.cliente));
        rs->set("Fornitore", store::Value::Long(documento.fornitore));
        rs->Update();
    }
}

bool MostraGeneraScadenze(long id) {
    core::ImpostaModoSchermo("frmGeneraScadenze", static_cast<int>(id));
    return core::MostraModale("frmGeneraScadenze");
}

}  // namespace payments
