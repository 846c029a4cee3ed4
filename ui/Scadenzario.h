// The instalments and the payments of one master record (a document, an expense) as lists of their
// own under its register: each list on the saved query of the master's side, filtered on the
// field that links its rows to the master, with its commands guarded by one right and opening its
// editor by name, since the editors are the payments area's.
#pragma once

#include <string>
#include <vector>

#include "ui/Dettaglio.h"

namespace ui {

struct RigheScadenzario {
    const char* griglia;            // GridScadenze, GridPagamenti
    std::string vista;              // the saved query of the master's side
    const char* vistaVuota;         // the one read with no master
    std::string campoPadre;         // Documento, Spesa
    const char* ordinamento;
    const core::TabellaCampi* campi;
    std::vector<std::string> colonne;
    int vedere, modificare;         // the rights: to see the rows, and of each command
    const char* editor;
    const char* comandi[3];         // new, change, delete
};

// The rows of the master in front, read again after a delete whatever the answer.
DefinizioneDettaglio DettaglioScadenzario(const RigheScadenzario& r);

// The same for instalments: one still to pay stands out in dark red, one with a payment is not
// deleted, and the delete asks with the text of s233.
DefinizioneDettaglio DettaglioScadenze(const RigheScadenzario& r);

// The same for payments: the delete asks with the text of s262, having first put the payment's
// instalment in `scadenza`, so that its flag can be worked out again once the row is gone.
DefinizioneDettaglio DettaglioPagamenti(const RigheScadenzario& r, long& scadenza);

}  // namespace ui
