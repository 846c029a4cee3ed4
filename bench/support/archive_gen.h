// Archives of known size and content for the benchmarks: registers, documents of every kind with
// their lines, instalments, payments (some partial, some above the amount due), expenses and the
// journal rows of the payments. The same sizes always give the same rows.
#pragma once

#include <string>

#include "store/dao.h"

namespace bench {

struct Dimensioni {
    int clienti = 1000;
    int fornitori = 200;
    int servizi = 300;
    int documenti = 50000;    // kinds mixed: 60% fatture, 10% note emesse, 20% preventivi, 10% note ricevute
    int righe = 5;            // lines per document
    int scadenze = 100000;    // over the fatture and notes, then over the expenses
    int pagamenti = 120000;   // over the instalments, then on documents directly
    int spese = 5000;         // each with two lines
    bool primaNota = true;    // one journal row per payment
};

// Fills an archive made by the model routine (store::model::CreaArchivio), with no rows yet.
void GeneraArchivioProva(store::Database& db, const Dimensioni& d);

// The archive of a million documents that the document register and the payment benchmarks share.
Dimensioni MilioneDiDocumenti();

// The indexes of the model that a generated archive lacks, added as the structure update adds them.
void AggiungiIndiciMancanti(store::Database& db);

// The path of an archive with these sizes under the system's temporary folder, generated on first
// use and kept for later runs.
std::string ArchivioProva(const Dimensioni& d = {});

}  // namespace bench
