#include "books/screens/Registra.h"

#include "books/screens/frmAggiornaPrimaNota.h"
#include "core/registro_schermi.h"
#include "ui/Dialoghi.h"

void RegistraSchermiLibri() {
    core::registraSchermo(frmAggiornaPrimaNota::Nome, ui::MostraSchermo<frmAggiornaPrimaNota>);
}
