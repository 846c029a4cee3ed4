#include "sales/screens/collegati.h"

#include "core/pannello.h"
#include "core/registro_schermi.h"
#include "core/session.h"

EditorBase::ApriCollegato perNome(std::string schermo) {
    return [schermo](Modalita modalita, long id) -> std::optional<long> {
        core::Session& s = core::session();
        s.IDRecordEdit = 0;
        core::ImpostaModoSchermo(schermo, modalita == Modalita::Nuovo ? 0 : static_cast<int>(id));
        core::MostraModale(schermo);
        core::ImpostaModoSchermo(schermo, 0);
        const long salvato = s.IDRecordEdit;
        s.IDRecordEdit = 0;
        if (salvato > 0) return salvato;
        return std::nullopt;
    };
}
