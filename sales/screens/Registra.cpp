#include "sales/screens/Registra.h"

#include "core/registro_schermi.h"
#include "sales/screens/frmClienti.h"
#include "sales/screens/frmServizi.h"
#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

void RegistraSchermiVendite() {
    RegistraRegistro<frmClienti>();
    core::registraEditor(frmClientiEdita::Nome, NuovoRecord<frmClientiEdita>);
    RegistraRegistro<frmServizi>();
    core::registraEditor(frmServiziEdita::Nome, NuovoRecord<frmServiziEdita>);
}
