// A statement's rows to a spreadsheet file (.xlsx): the field names in a bold first row that stays
// in view, then one row per record with typed cells, then the final lines in column A. Every
// register's list offers it on what it shows; other screens call it with their own statement.
#pragma once

#include <string>
#include <vector>

#include "store/dao.h"

namespace core {

// Writes the recordset from its current row to the end into a new workbook at percorso (through a
// temporary name): amounts (Single, Double, Currency) as numbers shown "#,##0.00", whole numbers as
// numbers, dates as dates (dd/mm/yyyy, with the time when it has one; the empty date 0 as an empty
// cell), Yes/No as "X" or blank, every other value as text, a Null as an empty cell. Columns are as
// wide as their longest text. Returns the records written.
long ScriviExcel(store::Recordset& rs, const std::vector<std::string>& righeFinali, const std::string& percorso,
                 long totale = 0);

// The command: asks for the file ("Salva file Excel...", ".xlsx" added when missing), reads the
// statement on database (unset: the archive), says "Nessun dato da esportare!" when it has no rows,
// writes with the progress shown, then opens the file. A fault of the chosen file is told and
// leaves no file; an engine error goes to the caller.
void EsportaExcel(const std::string& sql, const std::vector<std::string>& righeFinali = {},
                  store::DatabasePtr database = nullptr);

}  // namespace core
