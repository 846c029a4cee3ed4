// The editors the payments registers open belong to other screens of the program (the payment
// editors, the expense's instalment editor): they are opened by their registered name.
#pragma once

#include <optional>
#include <string>

#include "core/pannello.h"
#include "core/registro_schermi.h"
#include "core/session.h"
#include "ui/EditorBase.h"

namespace pagamenti_schermi {

// Sets the editor's mode, then shows it on that opening; the id it saved, nothing when cancelled.
// An editor nobody registered goes through the registry all the same, which raises its "not
// registered" error; what answers for it there leaves the id in IDRecordEdit.
inline std::optional<long> ApriEditorePerNome(const std::string& nome, int modo, const Apertura& apertura,
                                              QWidget* parent) {
    core::ImpostaModoSchermo(nome, modo);
    if (core::schermoRegistrato(nome)) return FabbricaEditorDi(nome)(parent)->Edita(apertura);
    core::session().IDRecordEdit = 0;
    if (!core::MostraModale(nome) || core::session().IDRecordEdit == 0) return std::nullopt;
    return core::session().IDRecordEdit;
}

}  // namespace pagamenti_schermi
