// The program: fixes its folder, installs the real dialogs, registers every area's screens, runs the
// start-up and then the event loop while the main panel is open.
#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include <unistd.h>

#include <clocale>

#include "app/screens/Registra.h"
#include "app/screens/frmMain.h"
#include "core/avvio.h"
#include "core/installazione.h"
#include "core/session.h"
#include "ui/Dialoghi.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    // The application object sets the C library's locale from the environment; on an Italian
    // machine printf and strtod would then write and read "12,5". Numbers keep the point.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName("Brevano");
    ui::installaInterfaccia();
    RegistraSchermi();

    core::EsitoAvvio esito = core::EsitoAvvio::Termina;
    // An installed copy whose folder the user cannot write works in a folder of the user's.
    // A failure in that, or in opening or compacting a file, ends start-up with the error box.
    const bool avviato = ui::protetto([&esito] {
        const std::string installata = QApplication::applicationDirPath().toStdString();
        core::session().CartellaProgramma = core::CartellaDiLavoro(
            installata, ::access(installata.c_str(), W_OK) == 0,
            QStandardPaths::writableLocation(QStandardPaths::AppDataLocation).toStdString());
        esito = core::Main();
    });
    if (!avviato || esito == core::EsitoAvvio::Termina) return 0;
    if (!frmMain::istanza()) return 0;
    return QApplication::exec();
}
