#include "tools/screens/CompletaTestoCasella.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>

#include "core/session.h"
#include "tools/completa.h"
#include "ui/Dialoghi.h"

namespace {

// Remembers whether the last key pressed in the box was one that deletes.
class TastoCancellazione : public QObject {
public:
    using QObject::QObject;
    bool attivo = false;

protected:
    bool eventFilter(QObject* o, QEvent* e) override {
        if (e->type() == QEvent::KeyPress) {
            auto* k = static_cast<QKeyEvent*>(e);
            bool copia = k->key() == Qt::Key_C && (k->modifiers() & Qt::ControlModifier);
            attivo = k->key() == Qt::Key_Backspace || k->key() == Qt::Key_Delete || k->key() == Qt::Key_Clear || copia;
        }
        return QObject::eventFilter(o, e);
    }
};

}  // namespace

void CollegaCompletaTesto(QLineEdit* casella, const std::string& tabella, const std::string& campo, bool uguale,
                          store::DatabasePtr db) {
    auto* tasto = new TastoCancellazione(casella);
    casella->installEventFilter(tasto);
    QObject::connect(casella, &QLineEdit::textEdited, casella, [=](const QString& testo) {
        ui::protetto([&] {
            store::DatabasePtr database = db ? db : core::session().dbArchivio;
            if (!database) return;
            auto c = tools::CompletaTesto(testo.toStdString(), *database, tabella, campo, uguale, tasto->attivo);
            if (!c) return;
            casella->setText(QString::fromStdString(c->testo));
            casella->setSelection(c->selStart, c->selLength);
        });
    });
}
