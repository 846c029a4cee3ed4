#include "books/bilancio.h"

#include "core/archivio_sql.h"
#include "core/calendario.h"
#include "core/documenti.h"
#include "sales/totali.h"
#include "store/convert.h"
#include "store/format.h"

namespace books {

namespace {

std::string Tra(const std::string& campo, double dal, double al) {
    return "DateValue(" + campo + ")>=DateValue('" + core::DataSql(dal) + "') And DateValue(" + campo +
           ")<=DateValue('" + core::DataSql(al) + "')";
}

ImponibileIva Leggi(const std::string& sql) {
    auto rs = core::Apri(sql);
    return {core::NumeroOZero(rs->get("TotImponibile")), core::NumeroOZero(rs->get("TotImposta"))};
}

ImponibileIva IvaPeriodo(long tipo, double dal, double al) {
    return Leggi("Select Round(Sum(Imponibile),2) AS TotImponibile, Round(Sum(Imposta),2) AS TotImposta from (" +
                 sales::SqlIvaPeriodo(tipo, dal, al) + ")");
}

ImponibileIva operator+(ImponibileIva a, const ImponibileIva& b) {
    a.imponibile += b.imponibile;
    a.iva += b.iva;
    return a;
}

double Importo(const std::string& sql, const char* campo) { return core::NumeroOZero(core::Apri(sql)->get(campo)); }

int Parte(double data, const char* maschera) { return std::stoi(store::Format(store::Value::Date(data), maschera)); }

}  // namespace

// An issued credit note lowers the sales by standing with the expenses.
ImponibileIva SpesePeriodo(double dal, double al) {
    const ImponibileIva spese = Leggi(
        "SELECT Sum(Round([Importo],2)) AS TotImponibile, Sum(Round([Importo]/100*[AliquotaIva],2)) AS TotImposta "
        "FROM (MovimentiSpese LEFT JOIN Spese ON MovimentiSpese.Spesa = Spese.ID) LEFT JOIN CodiciIva ON "
        "MovimentiSpese.Iva = CodiciIva.ID WHERE " + Tra("Spese.Data", dal, al));
    return spese + IvaPeriodo(core::TipoNotaCreditoEmessa, dal, al);
}

ImponibileIva VenditePeriodo(double dal, double al) {
    return IvaPeriodo(core::TipoFatturaEmessa, dal, al) + IvaPeriodo(core::TipoNotaCreditoRicevuta, dal, al);
}

double PagatoPeriodo(double dal, double al) {
    return Importo("Select round(Sum(ImportoPagamento),2) as Pagato from qrPagamenti Where " +
                       Tra("DataPagamento", dal, al),
                   "Pagato");
}

double IncassatoPeriodo(double dal, double al) {
    return Importo("Select round(Sum(ImportoPagamento),2) as Incassato from qrIncassi Where " +
                       Tra("DataPagamento", dal, al),
                   "Incassato");
}

FigureBilancio CalcolaBilancio(double dal, double al) {
    FigureBilancio f;
    const ImponibileIva spese = SpesePeriodo(dal, al);
    const ImponibileIva vendite = VenditePeriodo(dal, al);
    f.spese = spese.imponibile;
    f.ivaSpese = spese.iva;
    f.vendite = vendite.imponibile;
    f.ivaVendite = vendite.iva;
    f.pagamenti = PagatoPeriodo(dal, al);
    f.incassi = IncassatoPeriodo(dal, al);
    f.imponibile = f.vendite - f.spese;
    f.iva = f.ivaVendite - f.ivaSpese;
    f.saldoFuoriCassa = f.vendite + f.ivaVendite - f.spese - f.ivaSpese;
    f.saldoInCassa = f.incassi - f.pagamenti;
    return f;
}

std::vector<MeseBilancio> MesiBilancio(double dal) {
    std::vector<MeseBilancio> mesi;
    int mese = Parte(dal, "m");
    int anno = Parte(dal, "yyyy");
    for (int i = 0; i < 12; ++i) {
        MeseBilancio m;
        m.mese = mese;
        m.anno = anno;
        m.dal = store::DateSerial(anno, mese, 1);
        m.al = store::DateSerial(anno, mese, core::GiorniMese(mese, anno));
        m.figure = CalcolaBilancio(m.dal, m.al);
        mesi.push_back(m);
        if (++mese > 12) {
            mese = 1;
            ++anno;
        }
    }
    return mesi;
}

std::string PeriodoBilancio(const std::string& testoDal, const std::string& dal, const std::string& al) {
    return testoDal + " " + dal + " " + testoDal + " " + al;
}

}  // namespace books
