#include "core/documenti.h"

#include <string>

#include "core/archivio_sql.h"
#include "core/impostazioni.h"
#include "store/convert.h"

namespace core {

std::string TitoloTipoDocumento(long tipo) {
    switch (tipo) {
        case TipoFatturaEmessa: return core::Testo("s14");
        case TipoNotaCreditoEmessa: return "Note di Credito Emesse";
        case TipoPreventivo: return core::Testo("s320");
        case TipoNotaCreditoRicevuta: return "Note di Credito Ricevute";
        default: return {};
    }
}

std::string TitoloStampaDocumento(long tipo) {
    switch (tipo) {
        case TipoFatturaEmessa: return core::Testo("s321");
        case TipoNotaCreditoEmessa:
        case TipoNotaCreditoRicevuta: return "Nota di Credito";
        case TipoPreventivo: return "PREVENTIVO";
        default: return {};
    }
}

bool TipoAttivo(long tipo) { return tipo == TipoFatturaEmessa || tipo == TipoNotaCreditoRicevuta; }

bool TipoVersoCliente(long tipo) {
    return tipo == TipoFatturaEmessa || tipo == TipoNotaCreditoEmessa || tipo == TipoPreventivo;
}

long TipoDocumento(long id) {
    auto rs = Apri("Select Tipo from Documenti where ID=" + std::to_string(id));
    if (rs->Eof()) return 0;
    return store::CLng(rs->get("Tipo"));
}

}  // namespace core
