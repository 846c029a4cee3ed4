#include "sales/controllo_documento.h"

#include "core/dialogs.h"
#include "core/services.h"
#include "sales/numerazione.h"
#include "store/convert.h"

namespace sales {

namespace {

EsitoControllo Avvisa(const char* chiave, EsitoControllo esito = EsitoControllo::Rifiutato) {
    core::MsgBox(core::Testo(chiave), core::vbExclamation);
    return esito;
}

// A duplicate is replaced by the next free number of the sequence, if the user wants it.
bool SostituisciDuplicato(TestataDaControllare& t) {
    if (!NumeroDuplicato(t.tipo, t.numero, t.prefisso, t.suffisso, t.numeroAttuale)) return true;
    if (core::MsgBox(core::Testo("s214"), core::vbYesNo + core::vbQuestion) != core::vbYes) return false;
    t.numero = ProssimoNumeroDocumento(t.tipo, t.prefisso, t.suffisso);
    return true;
}

}  // namespace

EsitoControllo ControllaTestataDocumento(TestataDaControllare& t) {
    if (core::Trim(t.data).empty()) return Avvisa("s212");
    const store::Value data = store::Value::Text(t.data);
    if (!store::IsDate(data)) return Avvisa("s81");
    if (t.controllaEsercizio && core::DataFuoriEsercizio(t.data)) return Avvisa("s288", EsitoControllo::DataNonValida);
    if (t.controparte == 0) return Avvisa("s213");
    if (!SostituisciDuplicato(t)) return EsitoControllo::Rifiutato;
    if (!SequenzaCronologicaValida(t.tipo, t.numero, store::DateValue(data), t.prefisso, t.suffisso))
        return Avvisa("s215");
    return EsitoControllo::Valido;
}

}  // namespace sales
