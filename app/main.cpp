// The program: fixes its folder, installs the real dialogs, registers every area's screens, runs the
// start-up and then the event loop while the main panel is open.
#include <QApplication>
#include <QDir>

#include <clocale>

#include "app/screens/Registra.h"
#include "app/screens/frmMain.h"
#include "core/avvio.h"
#include "core/session.h"
#include "ui/Dialoghi.h"

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    // The application object sets the C library's locale from the environment; on an Italian
    // machine printf and strtod would then write and read "12,5". Numbers keep the point.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName("Brevano");
    core::session().CartellaProgramma = QDir::toNativeSeparators(QApplication::applicationDirPath()).toStdString();
    ui::installaInterfaccia();
    RegistraSchermi();

    core::EsitoAvvio esito = core::EsitoAvvio::Termina;
    // A failure in opening or compacting a file ends start-up with the error box.
    if (!ui::protetto([&esito] { esito = core::Main(); }) || esito == core::EsitoAvvio::Termina) return 0;
    if (!frmMain::istanza()) return 0;
    return QApplication::exec();
}
