// Bringing the archives of an older version up to the structure of the model file Servizio.mdb,
// which the generator writes afresh before each run. There are no schema versions: the model is the
// whole definition, and what the archive has more is removed. After the structure, the totals of
// every document are recomputed, the master file gets its new columns and every company the report
// rows and files of this version.
#pragma once

#include <string>
#include <vector>

#include "store/dao.h"

namespace tools {

// What a run tells its screen: the lines of the log, the reports listed as updated, and the moments
// at which the screen may let the event loop run.
class OsservatoreAggiornamento {
public:
    virtual ~OsservatoreAggiornamento() = default;
    virtual void Scrivi(const std::string& riga) {}
    virtual void ReportAggiornato(const std::string& voce) {}
    virtual void Respira() {}
};

// The word of ALTER COLUMN for a field type code; empty for the codes that get no statement.
std::string ParolaTipo(int codice);

// A numeric field that the update fills with 0 where it is Null: Integer, Long, Single, Double and
// Numeric, counters left out.
bool CampoNumerico(const store::FieldDef& campo);

// Sets the Null values of a field to 0.
void AzzeraNulli(store::Database& db, const std::string& tabella, const std::string& campo);

// One archive against the model, in three passes: tables and fields, saved queries, objects the
// model no longer has. Every failure is logged and counted; true when nothing failed.
bool VerificaDatabase(store::Database& archivio, store::Database& modello, OsservatoreAggiornamento& o);

// The archive files of every Esercizio of every company, as the master file stores them.
std::vector<std::string> FileDaAggiornare();

// <program folder>/Servizio.mdb, written afresh by the generator.
std::string PreparaModello();

// Adds to the master file the columns that later versions brought (Aziende.CodiceFiscale).
void AggiungiColonneAziende();

// For every company: the FormReport rows this version needs, and its report files copied into
// <data folder>/Report/<ID>, overwriting the earlier ones. A file that is nowhere is passed over.
void PreparaReport(OsservatoreAggiornamento& o);

struct EsitoAggiornamento {
    std::vector<std::string> falliti;   // archives that could not be brought up to date
    bool riuscito() const { return falliti.empty(); }
};

// The whole run: every file against the model, its DataAggiornamento set to dataEseguibile and its
// documents' totals recomputed when it succeeded, then the master's columns and the reports.
EsitoAggiornamento EseguiAggiornamento(const std::vector<std::string>& file, const std::string& modello,
                                       double dataEseguibile, OsservatoreAggiornamento& o);

// The warning of a run with failed archives: s70, the files, s71.
std::string MessaggioFallimento(const EsitoAggiornamento& esito);

}  // namespace tools
