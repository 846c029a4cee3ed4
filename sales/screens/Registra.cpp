#include "sales/screens/Registra.h"

#include "core/registro_schermi.h"
#include "sales/screens/frmAssistenzeEdita.h"
#include "sales/screens/frmClienti.h"
#include "sales/screens/frmDocAssistenzeEdita.h"
#include "sales/screens/frmDocumenti.h"
#include "sales/screens/frmDocumentiEdita.h"
#include "sales/screens/frmMovimentiEdita.h"
#include "sales/screens/frmServizi.h"
#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

void RegistraSchermiVendite() {
    RegistraRegistro<frmClienti>();
    RegistraEditore<frmClientiEdita>();
    RegistraEditore<frmAssistenzeEdita>();
    RegistraEditore<frmDocAssistenzeEdita>();
    RegistraRegistro<frmServizi>();
    RegistraEditore<frmServiziEdita>();
    RegistraRegistro<frmDocumenti>();
    RegistraEditore<frmDocumentiEdita>();
    RegistraEditore<frmDocumentiFornitoriEdita>();
    core::registraEditor(frmMovimentiEdita::Nome, NuovaRigaDocumento);
    core::registraEditor(frmSpeseDocumentiEdita::Nome, NuovaSpesaDocumento);
}
