#include "tools/screens/Registra.h"

#include "core/registro_schermi.h"
#include "tools/screens/frmAggiorna.h"
#include "tools/screens/frmCalcolatrice.h"
#include "tools/screens/frmCodiciIva.h"
#include "tools/screens/frmComuni.h"
#include "tools/screens/frmNote.h"
#include "tools/screens/frmTipiSpesa.h"

void RegistraSchermiStrumenti() {
    RegistraRegistro<frmCodiciIva>();
    RegistraEditore<frmCodiciIvaEdita>();
    RegistraRegistro<frmTipiSpesa>();
    RegistraEditore<frmTipiSpesaEdita>();
    RegistraRegistro<frmClassificazioniSpese>();
    RegistraEditore<frmClassificazioniSpeseEdita>();
    RegistraRegistro<frmComuni>();
    RegistraRegistro<frmNote>();
    RegistraEditore<frmComuniEdita>();
    core::registraSchermo(frmAggiorna::Nome, MostraAggiorna);
    core::registraSchermo(frmCalcolatrice::Nome, MostraCalcolatrice);
}
