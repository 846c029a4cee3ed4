#include "payments/screens/Registra.h"

#include "core/registro_schermi.h"
#include "payments/screens/frmCondizioniPagamento.h"
#include "payments/screens/frmGeneraScadenze.h"
#include "payments/screens/frmScadenzeEdita.h"

void RegistraSchermiPagamenti() {
    RegistraRegistro<frmCondizioniPagamento>();
    RegistraEditore<frmCondizioniPagamentoEdita>();
    RegistraEditore<frmScadenzeEdita>();
    RegistraEditore<frmScadenzeSpeseEdita>();
    core::registraSchermo(frmGeneraScadenze::Nome, frmGeneraScadenze::Mostra);
}
