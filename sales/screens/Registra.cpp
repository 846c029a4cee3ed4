#include "sales/screens/Registra.h"

#include "core/registro_schermi.h"
#include "sales/screens/frmDocumenti.h"
#include "sales/screens/frmDocumentiEdita.h"
#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

void RegistraSchermiVendite() {
    RegistraRegistro<frmDocumenti>();
    core::registraEditor(frmDocumentiEdita::Nome, NuovoRecord<frmDocumentiEdita>);
    core::registraEditor(frmDocumentiFornitoriEdita::Nome, NuovoRecord<frmDocumentiFornitoriEdita>);
}
