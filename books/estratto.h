// Statements: the rows of a customer's, a supplier's or all suppliers' documents and money in the
// scratch table Estratto, with Dare, Avere and the running Saldo. Nothing is stored in the archive:
// each request wipes the rows of its kind and builds them again, and a grid or a report reads them.
#pragma once

#include <functional>
#include <string>

#include "store/dao.h"

namespace books {

enum TipoEstratto : long { EstrattoCliente = 0, EstrattoFornitore = 1 };

// Called once per source row with its place (1-based) and the count of source rows; the count
// comes first with place 0, only when there is any row.
using AvanzamentoEstratto = std::function<void(long posizione, long totale)>;

// Rebuilds the rows of kind tipo: for the customer intestatario (tipo 0), for the supplier
// intestatario or, with 0, for all suppliers (tipo 1). Any other tipo only wipes its rows.
// soloAperte leaves out what is paid in full inside the period; dal and al are dates, 0 for none.
// gruppi restarts the balance at each supplier and orders by supplier. Rows go into the session's
// scratch file unless a database is given.
void GeneraEstratto(long intestatario, long tipo, bool soloAperte, double dal, double al, bool gruppi,
                    const AvanzamentoEstratto& avanza = {}, const store::DatabasePtr& temp = nullptr);

// Walks all rows of Estratto in the order given ("ID" when empty, "Data" with perData) and writes
// each Saldo again, restarting at each change of Fornitore.
void RicalcolaSaldi(bool perData, const std::string& ordine, const store::DatabasePtr& temp = nullptr);

// Folds what lies before dal into one "Saldo Precedente" row of a negative ID and drops the rows
// outside the period, for one supplier of kind tipo.
void SaldoPrecedenteEstratto(long fornitore, const std::string& descrizione, long tipo, double dal, double al,
                             const store::DatabasePtr& temp = nullptr);

// The statement a grid or a report reads for a kind.
std::string SqlEstratto(long tipo);

}  // namespace books
