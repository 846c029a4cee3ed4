#include "tools/screens/RegistraCodici.h"

#include "core/registro_schermi.h"
#include "tools/screens/frmCodiciIva.h"
#include "tools/screens/frmTipiSpesa.h"

void RegistraSchermiCodici() {
    core::registraSchermo("frmCodiciIva", ApriRegistro<frmCodiciIva>);
    core::registraSchermo("frmCodiciIvaEdita", NuovoRecord<frmCodiciIvaEdita>);
    core::registraSchermo("frmTipiSpesa", ApriRegistro<frmTipiSpesa>);
    core::registraSchermo("frmTipiSpesaEdita", NuovoRecord<frmTipiSpesaEdita>);
    core::registraSchermo("frmClassificazioniSpese", ApriRegistro<frmClassificazioniSpese>);
    core::registraSchermo("frmClassificazioniSpeseEdita", NuovoRecord<frmClassificazioniSpeseEdita>);
}
