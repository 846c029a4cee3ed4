#include "tools/screens/Registra.h"

#include "core/registro_schermi.h"
#include "tools/screens/frmAggiorna.h"
#include "tools/screens/frmCodiciIva.h"
#include "tools/screens/frmTipiSpesa.h"

void RegistraSchermiStrumenti() {
    core::registraSchermo(frmCodiciIva::Nome, ApriRegistro<frmCodiciIva>);
    core::registraEditor(frmCodiciIvaEdita::Nome, NuovoRecord<frmCodiciIvaEdita>);
    core::registraSchermo(frmTipiSpesa::Nome, ApriRegistro<frmTipiSpesa>);
    core::registraEditor(frmTipiSpesaEdita::Nome, NuovoRecord<frmTipiSpesaEdita>);
    core::registraSchermo(frmClassificazioniSpese::Nome, ApriRegistro<frmClassificazioniSpese>);
    core::registraEditor(frmClassificazioniSpeseEdita::Nome, NuovoRecord<frmClassificazioniSpeseEdita>);
    core::registraSchermo(frmAggiorna::Nome, MostraAggiorna);
}
