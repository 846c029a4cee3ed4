#include "ui/Acceleratori.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QTabBar>

namespace ui {

namespace {

// The letter after a single '&' ("&&" is a literal ampersand); a null QChar when there is none.
QChar acceleratore(const QString& testo) {
    for (qsizetype i = 0; i + 1 < testo.size(); ++i) {
        if (testo[i] != '&') continue;
        if (testo[i + 1] == '&') {
            ++i;
            continue;
        }
        return testo[i + 1].toLower();
    }
    return {};
}

QSet<QChar> lettereUsate(QWidget* finestra) {
    QSet<QChar> usate;
    auto usa = [&usate](const QString& t) {
        if (QChar c = acceleratore(t); !c.isNull()) usate.insert(c);
    };
    for (auto* b : finestra->findChildren<QAbstractButton*>()) usa(b->text());
    for (auto* l : finestra->findChildren<QLabel*>())
        if (l->buddy()) usa(l->text());
    for (auto* g : finestra->findChildren<QGroupBox*>()) usa(g->title());
    for (auto* t : finestra->findChildren<QTabBar*>())
        for (int i = 0; i < t->count(); ++i) usa(t->tabText(i));
    return usate;
}

}  // namespace

void assegnaAcceleratori(QWidget* finestra) {
    QSet<QChar> usate = lettereUsate(finestra);
    for (auto* b : finestra->findChildren<QPushButton*>()) {
        QString testo = b->text();
        if (testo.isEmpty() || !acceleratore(testo).isNull()) continue;
        for (qsizetype i = 0; i < testo.size(); ++i) {
            if (testo[i] == '&') {   // "&&", a literal ampersand
                ++i;
                continue;
            }
            const QChar c = testo[i].toLower();
            if (!c.isLetterOrNumber() || usate.contains(c)) continue;
            usate.insert(c);
            testo.insert(i, '&');
            b->setText(testo);
            break;
        }
    }
}

}  // namespace ui
