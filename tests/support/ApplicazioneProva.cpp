// The Qt half of the test support: the application object and how a script finds a screen by name.
#include <QApplication>
#include <QIcon>
#include <QWidget>

#include <cstdlib>

#include "support/DialoghiScript.h"
#include "ui/Dialoghi.h"

namespace prova {

namespace {

QWidget* schermoDiNome(const std::string& nome) {
    QWidget* corrente = ui::schermoInCorso();
    if (corrente && corrente->objectName().toStdString() == nome) return corrente;
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName().toStdString() == nome) return w;
    return nullptr;
}

}  // namespace

QApplication& applicazioneDiProva() {
    if (auto* app = qobject_cast<QApplication*>(QCoreApplication::instance())) return *app;
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static int argc = 1;
    static char nome[] = "brevano-test";
    static char* argv[] = {nome, nullptr};
    // Made once and never destroyed: a static QApplication would be torn down by the exit handlers
    // after Qt's own globals, and the process would crash on its way out.
    static auto* app = new QApplication(argc, argv);
    QIcon::setThemeName("Tango");
    installaRicercaSchermi(schermoDiNome);
    return *app;
}

}  // namespace prova
