#include "sales/screens/Registra.h"

#include "core/registro_schermi.h"
#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

void RegistraSchermiVendite() {
}
