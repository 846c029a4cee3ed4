#include "store/errors.h"

#include <map>

namespace store {

namespace {
// "%s" marks where the detail goes; a text without it gets the detail appended.
const std::map<int, const char*>& texts() {
    static const std::map<int, const char*> t = {
        {err::ChiamataNonValida, "Chiamata di routine o argomento non validi."},
        {err::Overflow, "Overflow."},
        {err::MemoriaEsaurita, "Memoria esaurita."},
        {err::DivisionePerZero, "Divisione per zero."},
        {err::TipoNonCorrispondente, "Tipo non corrispondente."},
        {err::FileNonTrovato, "File non trovato:"},
        {err::FileGiaEsistente, "File già esistente:"},
        {err::AccessoPercorsoNegato, "Errore di accesso al percorso/file:"},
        {err::OggettoNonImpostato, "Variabile oggetto o variabile del blocco With non impostata."},
        {err::CriterioNonValido, "Stringa criterio non valida."},
        {err::UsoNonValidoDiNull, "Utilizzo non valido di Null."},
        {err::ErroreRiservato, "Errore riservato (%s); non esiste un messaggio per questo errore."},
        {err::ArgomentoNonValido, "Argomento non valido."},
        {err::TabellaGiaEsistente, "La tabella '%s' esiste già."},
        {err::OggettoGiaEsistente, "L'oggetto '%s' esiste già."},
        {err::AggiornamentoSenzaModifica, "Update o CancelUpdate senza AddNew o Edit."},
        {err::NessunRecordCorrente, "Nessun record corrente."},
        {err::ValoriDuplicati,
         "Le modifiche richieste alla tabella non sono state apportate perché creerebbero valori duplicati "
         "nell'indice, nella chiave primaria o nella relazione."},
        {err::FileDatabaseNonTrovato, "Impossibile trovare il file '%s'."},
        {err::ErroreDiscoORete, "Errore del disco o della rete."},
        {err::SelezioneNonEseguibile, "Impossibile eseguire una query di selezione."},
        {err::SolaLettura, "Impossibile aggiornare. Il database o l'oggetto è di sola lettura."},
        {err::PercorsoNonValido, "'%s' non è un percorso valido."},
        {err::FileGiaInUso, "Impossibile utilizzare '%s'. File già in uso."},
        {err::DatabaseNonRiconosciuto,
         "Impossibile aprire il database '%s'. Potrebbe non essere un database riconosciuto "
         "dall'applicazione o il file potrebbe essere danneggiato."},
        {err::FileApertoInEsclusiva,
         "Impossibile aprire il file '%s'. È già aperto in modo esclusivo da un altro utente."},
        {err::ChiavePrimariaNull, "L'indice o la chiave primaria non può contenere un valore Null."},
        {err::ParametriInsufficienti, "Parametri insufficienti. Previsto %s."},
        {err::SintassiEspressione, "Errore di sintassi nell'espressione della query '%s'."},
        {err::TabellaOQueryNonTrovata,
         "Il motore di database non trova la tabella o la query di input '%s'."},
        {err::CampoAmbiguo,
         "Il campo specificato '%s' potrebbe fare riferimento a più di una tabella elencata nella "
         "clausola FROM dell'istruzione SQL."},
        {err::FunzioneNonDefinita, "Funzione '%s' non definita nell'espressione."},
        {err::EliminazioneImpossibile, "Impossibile eliminare dalle tabelle specificate."},
        {err::AggregazioneInWhere,
         "Impossibile utilizzare la funzione di aggregazione nella clausola WHERE: %s."},
        {err::NomeNonValido, "'%s' non è un nome valido."},
        {err::CampoDestinazioneSconosciuto,
         "Il campo di destinazione '%s' dell'istruzione INSERT INTO è sconosciuto."},
        {err::IstruzioneNonValida,
         "Istruzione SQL non valida. Prevista 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' o 'UPDATE'."},
        {err::SintassiFrom, "Errore di sintassi nella clausola FROM."},
        {err::SintassiInsertInto, "Errore di sintassi nell'istruzione INSERT INTO."},
        {err::SintassiJoin, "Errore di sintassi nell'istruzione JOIN."},
        {err::SintassiOrderBy, "Errore di sintassi nella clausola ORDER BY."},
        {err::SintassiSelect,
         "L'istruzione SELECT include una parola riservata o un nome di argomento non digitato "
         "correttamente o mancante, oppure la punteggiatura non è corretta."},
        {err::CaratteriDopoIstruzione, "Trovati caratteri dopo la fine dell'istruzione SQL."},
        {err::SintassiUpdate, "Errore di sintassi nell'istruzione UPDATE."},
        {err::SegnalibroNonValido, "Segnalibro non valido."},
        {err::CampoTroppoPiccolo,
         "Il campo è troppo piccolo per accettare la quantità di dati che si è tentato di aggiungere."},
        {err::CampoNonAggiornabile, "Impossibile aggiornare il campo '%s'."},
        {err::RecordEliminato, "Il record è stato eliminato."},
        {err::CampoDefinitoPiuVolte, "Impossibile definire un campo più di una volta."},
        {err::ModificaConcorrente,
         "Il motore di database ha interrotto l'operazione perché un altro utente sta modificando "
         "gli stessi dati."},
        {err::DatabaseGiaEsistente, "Il database '%s' esiste già."},
        {err::TabellaBloccata,
         "Impossibile bloccare la tabella '%s'. È attualmente utilizzata da un altro utente."},
        {err::RecordBloccato, "Impossibile aggiornare. Attualmente bloccato."},
        {err::OperazioneNonValida, "Operazione non valida."},
        {err::BloccatoDaAltroComputer,
         "Impossibile aggiornare. Attualmente bloccato dall'utente su un altro computer."},
        {err::NessunCampoDefinito,
         "Nessun campo definito. Impossibile aggiungere l'oggetto TableDef o Index."},
        {err::ElementoNonTrovato, "Elemento non trovato nell'insieme."},
        {err::SintassiCreateTable, "Errore di sintassi nell'istruzione CREATE TABLE."},
        {err::SintassiDefinizioneCampo, "Errore di sintassi nella definizione del campo."},
        {err::SintassiAlterTable, "Errore di sintassi nell'istruzione ALTER TABLE."},
        {err::SintassiDrop, "Errore di sintassi nell'istruzione DROP TABLE o DROP INDEX."},
        {err::ColonneUnioneDiverse,
         "Il numero delle colonne nelle due tabelle o query selezionate della query di unione non "
         "corrisponde."},
        {err::ValoreRichiesto, "È necessario immettere un valore nel campo '%s'."},
        {err::StringaVuotaNonAmmessa, "Il campo '%s' non può essere una stringa di lunghezza zero."},
        {err::RegolaDiConvalida,
         "Uno o più valori non sono consentiti dalla regola di convalida impostata per '%s'."},
        {err::SintassiUnione, "Errore di sintassi nella query di unione."},
        {err::RecordsetNonAggiornabile, "Il recordset non è aggiornabile."},
        {err::NumeroValoriDiverso,
         "Il numero dei valori della query non corrisponde al numero dei campi di destinazione."},
        {err::QueryTroppoComplessa, "Query troppo complessa."},
        {err::OggettoNonValido, "Oggetto non valido o non più impostato."},
        {err::TipoNonCorrispondenteCriterio, "Tipo di dati non corrispondente nell'espressione criterio."},
    };
    return t;
}
}  // namespace

std::string errorText(int number) {
    auto it = texts().find(number);
    return it == texts().end() ? std::string() : std::string(it->second);
}

void raise(int number, const std::string& detail) {
    std::string t = errorText(number);
    if (t.empty()) t = "Errore " + std::to_string(number) + ".";
    auto pos = t.find("%s");
    if (pos != std::string::npos) {
        t.replace(pos, 2, detail);
    } else if (!detail.empty()) {
        t += " " + detail;
    }
    throw JetError(number, t);
}

}  // namespace store
