// Fiscal periods: the choice of a date range, the closing and the change of a period's end,
// and a new period with an empty archive.
#pragma once

#include <optional>
#include <string>

#include "core/backup.h"

namespace core {

// A field that failed a check: the language key of its message and which field takes the focus.
struct CampoErrato {
    std::string chiave;
    int campo = 0;  // 0 the first field, 1 the second
};

// The checks of frmSelPeriodo on the two date texts, in the order they are made.
std::optional<CampoErrato> ControllaPeriodo(const std::string& dal, const std::string& al);

// The date that the end field of frmSelPeriodo starts on: today for a closure; for a change of
// the end date, the current end unless the period has none (31/12/9999).
std::optional<double> FineProposta(bool modifica);

// Writes an end date as chosen in frmSelPeriodo. Refuses (s59) a date on or before the start of
// the current period. The statement reaches every row of Esercizi, of every company.
// Returns false when nothing was written.
bool ScriviFinePeriodo(double al);

// Whether the closing command is on: CaricaComboDati asks for an open-ended period (31/12/9999),
// a change of company or period for the no-date sentinel; both rules are kept as they are.
bool ChiusuraAbilitataSenzaFine();
bool ChiusuraAbilitataSenzaData();

// The checks of frmArchiviEdita before a new period is made, with the focus field
// (0 the description, 1 the date). The message is the text to show.
struct EsercizioErrato {
    std::string messaggio;
    int campo = 0;
};
std::optional<EsercizioErrato> ControllaNuovoEsercizio(long azienda, const std::string& nome,
                                                       const std::string& data);

// The archive path of a period of that name in the data folder.
std::string FileEsercizio(const std::string& nome);

// Makes a new period with an empty archive: writes the file, saves the Esercizi row and makes
// the period current. Returns its id.
long CreaEsercizioVuoto(long azienda, const std::string& nome, double dal);

// The journal balances a new period opens with: bank (Destinazione 0) and cash (1).
struct SaldiIniziali {
    double banca = 0;
    double cassa = 0;
};

// Makes a new period from the company's last one (the latest end first): its archive copied, what
// is fully settled on or before `dal` removed, the journal replaced by the two opening balances;
// then the Esercizi row, and the period made current. A company with no period gets an empty
// archive. The archive is built under a hidden name and takes its own name only when whole, so a
// run cut short leaves no archive and no row (its remains are cleared by the next run).
long CreaEsercizioConRiporto(long azienda, const std::string& nome, double dal, const SaldiIniziali& saldi,
                             const AvanzamentoCopia& avanzamento = {});

}  // namespace core
