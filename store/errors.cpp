#include "store/errors.h"

#include <map>

namespace store {

namespace {
// "%s" marks where the detail goes; a text without it gets the detail appended.
const std::map<int, const char*>& texts() {
    static const std::map<int, const char*> t = {
        {5, "Chiamata di routine o argomento non validi."},
        {6, "Overflow."},
        {7, "Memoria esaurita."},
        {11, "Divisione per zero."},
        {13, "Tipo non corrispondente."},
        {53, "File non trovato:"},
        {58, "File già esistente:"},
        {75, "Errore di accesso al percorso/file:"},
        {91, "Variabile oggetto o variabile del blocco With non impostata."},
        {93, "Stringa criterio non valida."},
        {94, "Utilizzo non valido di Null."},
        {3000, "Errore riservato (%s); non esiste un messaggio per questo errore."},
        {3001, "Argomento non valido."},
        {3010, "La tabella '%s' esiste già."},
        {3012, "L'oggetto '%s' esiste già."},
        {3020, "Update o CancelUpdate senza AddNew o Edit."},
        {3021, "Nessun record corrente."},
        {3022, "Le modifiche richieste alla tabella non sono state apportate perché creerebbero valori duplicati "
               "nell'indice, nella chiave primaria o nella relazione."},
        {3024, "Impossibile trovare il file '%s'."},
        {3043, "Errore del disco o della rete."},
        {3065, "Impossibile eseguire una query di selezione."},
        {3027, "Impossibile aggiornare. Il database o l'oggetto è di sola lettura."},
        {3044, "'%s' non è un percorso valido."},
        {3045, "Impossibile utilizzare '%s'. File già in uso."},
        {3049, "Impossibile aprire il database '%s'. Potrebbe non essere un database riconosciuto "
               "dall'applicazione o il file potrebbe essere danneggiato."},
        {3051, "Impossibile aprire il file '%s'. È già aperto in modo esclusivo da un altro utente."},
        {3058, "L'indice o la chiave primaria non può contenere un valore Null."},
        {3061, "Parametri insufficienti. Previsto %s."},
        {3075, "Errore di sintassi nell'espressione della query '%s'."},
        {3078, "Il motore di database non trova la tabella o la query di input '%s'."},
        {3079, "Il campo specificato '%s' potrebbe fare riferimento a più di una tabella elencata nella "
               "clausola FROM dell'istruzione SQL."},
        {3085, "Funzione '%s' non definita nell'espressione."},
        {3086, "Impossibile eliminare dalle tabelle specificate."},
        {3096, "Impossibile utilizzare la funzione di aggregazione nella clausola WHERE: %s."},
        {3125, "'%s' non è un nome valido."},
        {3127, "Il campo di destinazione '%s' dell'istruzione INSERT INTO è sconosciuto."},
        {3129, "Istruzione SQL non valida. Prevista 'DELETE', 'INSERT', 'PROCEDURE', 'SELECT' o 'UPDATE'."},
        {3131, "Errore di sintassi nella clausola FROM."},
        {3134, "Errore di sintassi nell'istruzione INSERT INTO."},
        {3135, "Errore di sintassi nell'istruzione JOIN."},
        {3138, "Errore di sintassi nella clausola ORDER BY."},
        {3141, "L'istruzione SELECT include una parola riservata o un nome di argomento non digitato "
               "correttamente o mancante, oppure la punteggiatura non è corretta."},
        {3142, "Trovati caratteri dopo la fine dell'istruzione SQL."},
        {3144, "Errore di sintassi nell'istruzione UPDATE."},
        {3159, "Segnalibro non valido."},
        {3163, "Il campo è troppo piccolo per accettare la quantità di dati che si è tentato di aggiungere."},
        {3164, "Impossibile aggiornare il campo '%s'."},
        {3167, "Il record è stato eliminato."},
        {3191, "Impossibile definire un campo più di una volta."},
        {3197, "Il motore di database ha interrotto l'operazione perché un altro utente sta modificando "
               "gli stessi dati."},
        {3204, "Il database '%s' esiste già."},
        {3211, "Impossibile bloccare la tabella '%s'. È attualmente utilizzata da un altro utente."},
        {3218, "Impossibile aggiornare. Attualmente bloccato."},
        {3219, "Operazione non valida."},
        {3260, "Impossibile aggiornare. Attualmente bloccato dall'utente su un altro computer."},
        {3264, "Nessun campo definito. Impossibile aggiungere l'oggetto TableDef o Index."},
        {3265, "Elemento non trovato nell'insieme."},
        {3290, "Errore di sintassi nell'istruzione CREATE TABLE."},
        {3292, "Errore di sintassi nella definizione del campo."},
        {3293, "Errore di sintassi nell'istruzione ALTER TABLE."},
        {3295, "Errore di sintassi nell'istruzione DROP TABLE o DROP INDEX."},
        {3307, "Il numero delle colonne nelle due tabelle o query selezionate della query di unione non "
               "corrisponde."},
        {3314, "È necessario immettere un valore nel campo '%s'."},
        {3315, "Il campo '%s' non può essere una stringa di lunghezza zero."},
        {3317, "Uno o più valori non sono consentiti dalla regola di convalida impostata per '%s'."},
        {3319, "Errore di sintassi nella query di unione."},
        {3326, "Il recordset non è aggiornabile."},
        {3346, "Il numero dei valori della query non corrisponde al numero dei campi di destinazione."},
        {3360, "Query troppo complessa."},
        {3420, "Oggetto non valido o non più impostato."},
        {3464, "Tipo di dati non corrispondente nell'espressione criterio."},
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
