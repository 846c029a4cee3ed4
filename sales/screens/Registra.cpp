#include "sales/screens/Registra.h"

#include "core/registro_schermi.h"
#include "sales/screens/frmDocumenti.h"
#include "sales/screens/frmDocumentiEdita.h"
#include "sales/screens/frmMovimentiEdita.h"
#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

void RegistraSchermiVendite() {
    RegistraRegistro<frmDocumenti>();
    core::registraEditor(frmDocumentiEdita::Nome, NuovoRecord<frmDocumentiEdita>);
    core::registraEditor(frmDocumentiFornitoriEdita::Nome, NuovoRecord<frmDocumentiFornitoriEdita>);
    core::registraEditor(frmMovimentiEdita::Nome, NuovaRigaDocumento);
    core::registraEditor(frmSpeseDocumentiEdita::Nome, NuovaSpesaDocumento);
}
