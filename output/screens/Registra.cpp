#include "output/screens/Registra.h"

#include "core/registro_schermi.h"
#include "core/stampa.h"
#include "output/screens/frmStampa.h"

void RegistraSchermiOutput() { core::installaStampa(MostraStampa); }
