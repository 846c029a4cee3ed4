#include "ui/Dialoghi.h"

#include <QApplication>
#include <QFileDialog>
#include <QGuiApplication>
#include <QIcon>
#include <QInputDialog>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <QAbstractButton>
#include <QMessageBox>
#include <QPointer>
#include <QWidget>

#include "store/errors.h"
#include "ui/Stile.h"

namespace ui {

namespace {

QPointer<QWidget>& inCorso() {
    static QPointer<QWidget> w;
    return w;
}

QMessageBox::Icon iconaDelloStile(int style) {
    switch (style & 0x70) {
        case core::vbCritical: return QMessageBox::Critical;
        case core::vbQuestion: return QMessageBox::Question;
        case core::vbExclamation: return QMessageBox::Warning;
        case core::vbInformation: return QMessageBox::Information;
        default: return QMessageBox::NoIcon;
    }
}

struct Pulsanti {
    QMessageBox::StandardButtons insieme;
    QMessageBox::StandardButton primo;
    QMessageBox::StandardButton secondo;
    QMessageBox::StandardButton terzo;
};

Pulsanti pulsantiDelloStile(int style) {
    using B = QMessageBox;
    switch (style & 7) {
        case core::vbOKCancel: return {B::Ok | B::Cancel, B::Ok, B::Cancel, B::NoButton};
        case core::vbYesNoCancel: return {B::Yes | B::No | B::Cancel, B::Yes, B::No, B::Cancel};
        case core::vbYesNo: return {B::Yes | B::No, B::Yes, B::No, B::NoButton};
        default: return {B::Ok, B::Ok, B::NoButton, B::NoButton};
    }
}

int risultato(int pulsante) {
    switch (pulsante) {
        case QMessageBox::Yes: return core::vbYes;
        case QMessageBox::No: return core::vbNo;
        case QMessageBox::Cancel: return core::vbCancel;
        default: return core::vbOK;
    }
}

QWidget* finestraAttiva() {
    if (QWidget* m = QApplication::activeModalWidget()) return m;
    return QApplication::activeWindow();
}

}  // namespace

int QtDialogs::msgBox(const std::string& text, int style, const std::string& title) {
    Pulsanti p = pulsantiDelloStile(style);
    QMessageBox box(iconaDelloStile(style), QString::fromStdString(title), QString::fromStdString(text),
                    p.insieme, finestraAttiva());
    // 256 and 512 make the second or third button the default, as the platform's flags do.
    // The program speaks Italian whatever the machine does.
    const std::pair<QMessageBox::StandardButton, const char*> testi[] = {
        {QMessageBox::Yes, "&Sì"}, {QMessageBox::No, "&No"}, {QMessageBox::Cancel, "Annulla"}, {QMessageBox::Ok, "OK"}};
    for (const auto& [pulsante, testo] : testi)
        if (QAbstractButton* b = box.button(pulsante)) b->setText(QString::fromUtf8(testo));
    QMessageBox::StandardButton predefinito = (style & 512) ? p.terzo : (style & 256) ? p.secondo : p.primo;
    if (predefinito != QMessageBox::NoButton) box.setDefaultButton(predefinito);
    if (occupato_ > 0) QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    int r = risultato(box.exec());
    if (occupato_ > 0) QGuiApplication::restoreOverrideCursor();
    return r;
}

bool QtDialogs::runModal(const std::string&, const std::function<bool()>& show) { return show ? show() : false; }

std::optional<std::string> QtDialogs::inputBox(const std::string& prompt, const std::string& title,
                                               const std::string& initial) {
    QInputDialog box(finestraAttiva());
    box.setWindowTitle(QString::fromStdString(title));
    box.setLabelText(QString::fromStdString(prompt));
    box.setTextValue(QString::fromStdString(initial));
    box.setOkButtonText("OK");
    box.setCancelButtonText("Annulla");
    if (box.exec() != QDialog::Accepted) return std::nullopt;
    return box.textValue().toStdString();
}

std::optional<std::string> QtDialogs::chooseFile(const std::string& title, const std::string& filter, bool save,
                                                 const std::string& initial) {
    // The platform's filters read "Descrizione|*.ext|..."; Qt wants "Descrizione (*.ext);;...".
    QStringList parti = QString::fromStdString(filter).split('|');
    QStringList filtri;
    for (int i = 0; i + 1 < parti.size(); i += 2) filtri << parti[i] + " (" + QString(parti[i + 1]).replace(';', ' ') + ")";
    QString f = filtri.isEmpty() ? QString::fromStdString(filter) : filtri.join(";;");
    QString scelto = save ? QFileDialog::getSaveFileName(finestraAttiva(), QString::fromStdString(title),
                                                         QString::fromStdString(initial), f)
                          : QFileDialog::getOpenFileName(finestraAttiva(), QString::fromStdString(title),
                                                         QString::fromStdString(initial), f);
    if (scelto.isEmpty()) return std::nullopt;
    return scelto.toStdString();
}

std::optional<std::string> QtDialogs::chooseFolder(const std::string& title, const std::string& initial) {
    QString scelta = QFileDialog::getExistingDirectory(finestraAttiva(), QString::fromStdString(title),
                                                       QString::fromStdString(initial));
    if (scelta.isEmpty()) return std::nullopt;
    return scelta.toStdString();
}

void QtDialogs::setBusy(bool busy) {
    if (busy) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        occupato_++;
    } else if (occupato_ > 0) {
        QGuiApplication::restoreOverrideCursor();
        occupato_--;
    }
}

bool eseguiModale(QWidget* schermo, const std::function<bool()>& mostra) {
    QPointer<QWidget> precedente = inCorso();
    inCorso() = schermo;
    bool esito = core::dialogs().runModal(schermo ? schermo->objectName().toStdString() : std::string(), mostra);
    inCorso() = precedente;
    return esito;
}

QWidget* schermoInCorso() { return inCorso().data(); }

namespace {
QPointer<QWidget>& principale() {
    static QPointer<QWidget> p;
    return p;
}
}  // namespace

QWidget* finestraPrincipale() { return principale().data(); }
void impostaFinestraPrincipale(QWidget* finestra) { principale() = finestra; }

bool protetto(const std::function<void()>& comando) {
    try {
        comando();
        return true;
    } catch (const store::JetError& e) {
        core::MsgBox("Errore " + std::to_string(e.number()) + ": " + e.what(), core::vbCritical);
    } catch (const std::exception& e) {
        core::MsgBox(e.what(), core::vbCritical);
    }
    return false;
}

void installaInterfaccia() {
    QIcon::setThemeName("Tango");
    // The platform's own dialogs (files, folders) in Italian, when the translations are installed.
    auto* traduzione = new QTranslator(QCoreApplication::instance());
    if (traduzione->load(QLocale(QLocale::Italian, QLocale::Italy), "qtbase", "_",
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(traduzione);
    core::installDialogs(std::make_shared<QtDialogs>());
}

}  // namespace ui
