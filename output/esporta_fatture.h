// The documents of a period and the customers, as two comma-separated text files for the outside
// accounting program: FATS (one line per document) and ANAS (one line per customer). Field order,
// widths and literal codes are that program's format, kept byte for byte; Windows-1252, CR LF after
// every line.
#pragma once

#include <functional>
#include <string>

#include "store/dao.h"

namespace output {

// One line of the documents file, without its line end: the row of Documenti and the VAT of its
// first line (a Null rate counts 0, a Null description is "0"). A Numero of more than five
// characters is an ErroreEsportazione.
std::string RigaFattura(store::Recordset& documento, const store::Value& aliquotaIva, const store::Value& descIva);
// One line of the customers file, without its line end.
std::string RigaCliente(store::Recordset& cliente);

struct EsitoFatture {
    long documenti = 0;
    long clienti = 0;
};
// Called per row of each of the two files: which file, the rows done and the rows of that file.
using AvanzamentoFatture = std::function<void(bool clienti, long fatti, long totale)>;

// Writes both files (dates are serials, the period includes both ends). Either both files are
// written or, on an error, neither is touched.
EsitoFatture EsportaFatture(store::Database& db, double dal, double al, const std::string& fileFatture,
                            const std::string& fileClienti, const AvanzamentoFatture& avanza = {});

}  // namespace output
