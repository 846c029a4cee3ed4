#include "expenses/screens/Registra.h"

#include "core/registro_schermi.h"
#include "expenses/screens/frmCertificazioniAcconto.h"
#include "expenses/screens/frmFornitori.h"
#include "expenses/screens/frmSpese.h"
#include "expenses/screens/frmSpeseEdita.h"
#include "ui/EditorBase.h"
#include "ui/RegistroBase.h"

void RegistraSchermiSpese() {
    RegistraRegistro<frmFornitori>();
    RegistraEditore<frmFornitoriEdita>();
    RegistraRegistro<frmSpese>();
    RegistraEditore<frmSpeseEdita>();
    core::registraEditor(frmSpeseMovEdita::Nome, NuovaRigaSpesa);
    RegistraRegistro<frmCertificazioniAcconto>();
}
