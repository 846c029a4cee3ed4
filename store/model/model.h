// The model of every database file the program works on: the tables with their fields and indexes,
// and the saved queries. The files an installation supplies (Servizio.mdb, Base/Aziende.mdb,
// temp.mdb, Utilità.mdb) are written from here, and so is every new empty archive.
#pragma once

#include <string>
#include <vector>

#include "store/dao.h"

namespace store::model {

// One field of a model table. A link holds the ID of a row of another table (0 = no link) and is
// indexed so that the lookups by link that every screen makes do not scan the table.
struct Campo {
    std::string nome;
    FieldType tipo = FieldType::Long;
    int dimensione = 0;    // text fields: maximum length
    bool legame = false;
};

// An index on several fields, named as the archive knows it.
struct IndiceComposto {
    std::string nome;
    std::vector<std::string> campi;
};

struct Tabella {
    std::string nome;
    std::vector<Campo> campi;
    std::vector<std::string> indiciAggiuntivi;  // fields indexed beyond ID and the links
    std::vector<IndiceComposto> indiciComposti{};
    TableDef definizione() const;              // fields, the unique ID key and the indexes
};

// The tables of each kind of file, in creation order.
const std::vector<Tabella>& TabelleArchivio();
const std::vector<Tabella>& TabelleAziende();
const std::vector<Tabella>& TabelleTemp();
const std::vector<Tabella>& TabelleUtilita();
const Tabella& TabellaModello(const std::string& nome);  // an archive or master table; JetError 3078

// The saved queries of an archive, and the one of the master file.
std::vector<QueryDef> QueryArchivio();
std::vector<QueryDef> QueryAziende();

// Writers, each on an open database that holds none of the objects yet.
void CreaTabelle(Database& db, const std::vector<Tabella>& tabelle);
void CreaQuery(Database& db, const std::vector<QueryDef>& query);
void CreaArchivio(Database& db);                 // archive tables and queries
void CreaAziende(Database& db);                  // master tables, qrUtenti and the report templates
void CreaTemp(Database& db);                     // the scratch tables
void CreaUtilita(Database& db, const std::string& fileComuni);  // Comuni, filled from the TSV file

// The FormReport rows with Azienda 0 that a new company copies: section and report file.
struct ModelloReport {
    std::string sezione;
    std::string report;
};
const std::vector<ModelloReport>& ModelliReport();

// Adds many rows to one table in few statements, each a single write of the file: a statement per
// row would make the file system sync the file for every row. Each row gives the columns in order.
void InserisciRighe(Database& db, const std::string& tabella, const std::vector<std::string>& colonne,
                    const std::vector<std::vector<Value>>& righe);

// A value written as a literal of the dialect: 12, 0.1, 'l''albero', #03/05/2024#, True, Null.
std::string Letterale(const Value& v);

// The database-generator component: a new empty archive at path (an existing file is replaced).
void GeneraArchivioVuoto(const std::string& path);

// Writes Servizio.mdb, Base/Aziende.mdb, temp.mdb and Utilità.mdb into programFolder, replacing
// what is there. dataFolder is the folder of the program's own data (comuni.tsv).
void ScriviFileInstallazione(const std::string& programFolder, const std::string& dataFolder);

// The folder of the program's own data files in the source tree.
std::string CartellaDatiSorgente();

}  // namespace store::model
