// The session: the process-wide database handles and ids that every command works on.
#pragma once

#include <string>

#include "store/dao.h"

namespace core {

struct Session {
    store::DatabasePtr dbAziende;   // master file Aziende.mdb of the data folder
    store::DatabasePtr dbArchivio;  // archive of the current Esercizio
    store::DatabasePtr dbTemp;      // temp.mdb beside the program
    store::DatabasePtr dbUtilita;   // Utilità.mdb beside the program

    long IDAzienda = 0;
    long IDEsercizio = 0;
    std::string NomeUtente;
    long IDUtente = 0;
    std::string Privilegi;    // rights string, 14 positions of '0'/'1'
    std::string MsgNegato;    // text shown when a right is refused

    long IDRecordEdit = 0;    // set by editors: the record just saved
    double PeriodoDal = 0;    // set by frmSelPeriodo
    double PeriodoAl = 0;

    std::string CartellaProgramma;  // the program folder (where Impostazioni.ini, Lang.lng, temp.mdb lie)
};

// The one session of the process.
Session& session();

}  // namespace core
