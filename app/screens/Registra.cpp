#include "app/screens/Registra.h"

#include <QApplication>

#include "app/screens/frmAziende.h"
#include "app/screens/frmAziendeEdita.h"
#include "app/screens/frmBackup.h"
#include "app/screens/frmConfigurazione.h"
#include "app/screens/frmLogin.h"
#include "app/screens/frmMain.h"
#include "app/screens/frmSelPeriodo.h"
#include "app/screens/frmUtenti.h"
#include "app/screens/frmUtentiEdita.h"
#include "books/screens/Registra.h"
#include "core/dialogs.h"
#include "core/registro_schermi.h"
#include "expenses/screens/Registra.h"
#include "output/screens/Registra.h"
#include "payments/screens/Registra.h"
#include "sales/screens/Registra.h"
#include "tools/screens/Registra.h"
#include "ui/Dialoghi.h"

namespace {

bool ChiudiSchermoAperto(const std::string& nome) {
    const QString cercato = QString::fromStdString(nome);
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (!w->isVisible() || w->objectName().compare(cercato, Qt::CaseInsensitive) != 0) continue;
        w->close();
        return true;
    }
    return false;
}

}  // namespace

void RegistraSchermiProgramma() {
    core::registraSchermo(frmLogin::Nome, ui::MostraSchermo<frmLogin>);
    core::registraSchermo(frmConfigurazione::Nome, ui::MostraSchermo<frmConfigurazione>);
    core::registraSchermo(frmSelPeriodo::Nome, ui::MostraSchermo<frmSelPeriodo>);
    core::registraSchermo(frmBackup::Nome, ui::MostraSchermo<frmBackup>);
    core::registraSchermo("frmNuovoEsercizio", [] {
        return core::dialogs().runModal("frmNuovoEsercizio", [] {
            frmMain* pannello = frmMain::istanza();
            return pannello && pannello->NuovoEsercizio();
        });
    });
    core::registraSchermo(frmBackup::NomeImporta,
                          [] { return core::dialogs().runModal(frmBackup::NomeImporta, frmBackup::ImportaBackup); });
    core::registraSchermo(frmMain::Nome, [] {
        frmMain::Apri();
        return true;
    });
    RegistraRegistro<frmAziende>();
    RegistraEditore<frmAziendeEdita>();
    RegistraRegistro<frmUtenti>();
    RegistraEditore<frmUtentiEdita>();
    core::installaChiusuraSchermo(ChiudiSchermoAperto);
    core::installaFineCaricamento([] {
        if (frmMain* p = frmMain::istanza()) p->FineCaricamento();
    });
    core::installaAscoltoNovita([](core::Novita novita) {
        if (frmMain* p = frmMain::istanza()) ui::protetto([&] { p->Novita(novita); });
    });
}


void RegistraSchermi() {
    RegistraSchermiProgramma();
    RegistraSchermiVendite();
    RegistraSchermiSpese();
    RegistraSchermiStrumenti();
    RegistraSchermiPagamenti();
    RegistraSchermiLibri();
    RegistraSchermiOutput();
}
