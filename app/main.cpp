#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("Brevano");
    QMainWindow w;
    w.setWindowTitle("Brevano");
    w.resize(1024, 700);
    w.show();
    return QApplication::exec();
}
