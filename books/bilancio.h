// The period's figures: what was registered (documents and expenses by their date, taxable amount
// and VAT apart) against what moved (payments and collections by the date of the money).
#pragma once

#include <string>
#include <vector>

namespace books {

struct ImponibileIva {
    double imponibile = 0;
    double iva = 0;
};

// Expenses of the period, with the issued credit notes summed to them.
ImponibileIva SpesePeriodo(double dal, double al);
// Issued fatture of the period, with the received credit notes summed to them.
ImponibileIva VenditePeriodo(double dal, double al);
// Payments made and collections received in the period, rounded to two decimals.
double PagatoPeriodo(double dal, double al);
double IncassatoPeriodo(double dal, double al);

// The ten figures, the six read from the archive and the four differences of the unrounded values.
struct FigureBilancio {
    double spese = 0, ivaSpese = 0, vendite = 0, ivaVendite = 0, pagamenti = 0, incassi = 0;
    double imponibile = 0, iva = 0, saldoFuoriCassa = 0, saldoInCassa = 0;

    double entrateRegistrate() const { return vendite + ivaVendite; }
    double usciteRegistrate() const { return spese + ivaSpese; }
};

FigureBilancio CalcolaBilancio(double dal, double al);

// One month of the chart, computed by CalcolaBilancio over its first and last day.
struct MeseBilancio {
    int mese = 0;
    int anno = 0;
    double dal = 0;
    double al = 0;
    FigureBilancio figure;
};

// The twelve months from the month of dal on.
std::vector<MeseBilancio> MesiBilancio(double dal);

// The print's period text: the key s115 twice, as the layout has always read it.
std::string PeriodoBilancio(const std::string& testoDal, const std::string& dal, const std::string& al);

}  // namespace books
