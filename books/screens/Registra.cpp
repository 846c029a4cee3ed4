#include "books/screens/Registra.h"

#include "books/screens/frmAggiornaPrimaNota.h"
#include "books/screens/frmBilancio.h"
#include "books/screens/frmEstrattoContoGenerale.h"
#include "books/screens/frmPrimaNota.h"
#include "core/estratto_conto.h"
#include "core/registro_schermi.h"
#include "ui/Dialoghi.h"

void RegistraSchermiLibri() {
    core::registraSchermo(frmAggiornaPrimaNota::Nome, ui::MostraSchermo<frmAggiornaPrimaNota>);
    core::registraSchermo(frmBilancio::Nome, ui::MostraSchermo<frmBilancio>);
    core::registraSchermo(frmEstrattoContoGenerale::Nome, ui::MostraSchermo<frmEstrattoContoGenerale>);
    // The registers of customers and suppliers make their statements through this.
    core::installaGeneraEstratto(GeneraEstrattoConProgresso);
    RegistraRegistro<frmPrimaNota>();
    // The panel opens the journal and its two overviews under the one name, by mode.
    core::registraSchermo(frmPrimaNota::Nome, frmPrimaNota::ApriDalMenu);
    core::registraSchermo("frmPrimaNota2", frmPrimaNota::PartitaDoppia);
}
