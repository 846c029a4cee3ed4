#include "sales/screens/Registra.h"

#include "core/registro_schermi.h"
#include "sales/screens/frmClienti.h"
#include "sales/screens/frmDocumenti.h"
#include "sales/screens/frmDocumentiEdita.h"
#include "sales/screens/frmMovimentiEdita.h"
#include "sales/screens/frmServizi.h"
#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

void RegistraSchermiVendite() {
    RegistraRegistro<frmClienti>();
    core::registraEditor(frmClientiEdita::Nome, NuovoRecord<frmClientiEdita>);
    registraFabbricaEditor(frmClientiEdita::Nome, [](QWidget* p) { return std::make_unique<frmClientiEdita>(p); });
    RegistraRegistro<frmServizi>();
    core::registraEditor(frmServiziEdita::Nome, NuovoRecord<frmServiziEdita>);
    registraFabbricaEditor(frmServiziEdita::Nome, [](QWidget* p) { return std::make_unique<frmServiziEdita>(p); });
    RegistraRegistro<frmDocumenti>();
    core::registraEditor(frmDocumentiEdita::Nome, NuovoRecord<frmDocumentiEdita>);
    core::registraEditor(frmDocumentiFornitoriEdita::Nome, NuovoRecord<frmDocumentiFornitoriEdita>);
    core::registraEditor(frmMovimentiEdita::Nome, NuovaRigaDocumento);
    core::registraEditor(frmSpeseDocumentiEdita::Nome, NuovaSpesaDocumento);
}
