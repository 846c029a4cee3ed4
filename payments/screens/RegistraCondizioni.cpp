#include "payments/screens/RegistraCondizioni.h"

#include "core/registro_schermi.h"
#include "payments/screens/frmCondizioniPagamento.h"

void RegistraSchermiCondizioni() {
    core::registraSchermo("frmCondizioniPagamento", ApriRegistro<frmCondizioniPagamento>);
    core::registraSchermo("frmCondizioniPagamentoEdita", NuovoRecord<frmCondizioniPagamentoEdita>);
}
