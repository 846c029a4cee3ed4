#include "tools/screens/Registra.h"

#include "core/registro_schermi.h"
#include "tools/screens/frmAggiorna.h"
#include "tools/screens/frmCodiciIva.h"
#include "tools/screens/frmTipiSpesa.h"

void RegistraSchermiStrumenti() {
    RegistraRegistro<frmCodiciIva>();
    core::registraEditor(frmCodiciIvaEdita::Nome, NuovoRecord<frmCodiciIvaEdita>);
    RegistraRegistro<frmTipiSpesa>();
    core::registraEditor(frmTipiSpesaEdita::Nome, NuovoRecord<frmTipiSpesaEdita>);
    RegistraRegistro<frmClassificazioniSpese>();
    core::registraEditor(frmClassificazioniSpeseEdita::Nome, NuovoRecord<frmClassificazioniSpeseEdita>);
    core::registraSchermo(frmAggiorna::Nome, MostraAggiorna);
}
