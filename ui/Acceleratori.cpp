#include "ui/Acceleratori.h"

#include <QAbstractButton>

#include <algorithm>
#include <QGroupBox>
#include <QLabel>
#include <QMap>
#include <QPushButton>
#include <QSet>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>

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

// The page of a tab widget the control lies on, null when it lies on none: controls of two pages
// are never on screen together, so they may share a letter.
const QWidget* pagina(const QWidget* w) {
    for (; w && w->parentWidget(); w = w->parentWidget())
        if (qobject_cast<const QStackedWidget*>(w->parentWidget()) &&
            qobject_cast<const QTabWidget*>(w->parentWidget()->parentWidget()))
            return w;
    return nullptr;
}

}  // namespace

void assegnaAcceleratori(QWidget* finestra) {
    QMap<const QWidget*, QSet<QChar>> usate;   // by page; the null page is the window's own
    auto usa = [&usate](const QWidget* w, const QString& t) {
        if (QChar c = acceleratore(t); !c.isNull()) usate[pagina(w)].insert(c);
    };
    for (auto* b : finestra->findChildren<QAbstractButton*>()) usa(b, b->text());
    for (auto* l : finestra->findChildren<QLabel*>())
        if (l->buddy()) usa(l, l->text());
    for (auto* g : finestra->findChildren<QGroupBox*>()) usa(g, g->title());
    for (auto* t : finestra->findChildren<QTabBar*>())
        for (int i = 0; i < t->count(); ++i) usa(t, t->tabText(i));

    // A letter is free for a control of the window when no page uses it, for one on a page when
    // neither the window nor that page does. The window's commands choose first.
    auto libera = [&usate](const QWidget* p, QChar c) {
        if (p) return !usate[nullptr].contains(c) && !usate[p].contains(c);
        for (const auto& lettere : usate)
            if (lettere.contains(c)) return false;
        return true;
    };
    QList<QPushButton*> pulsanti = finestra->findChildren<QPushButton*>();
    std::stable_partition(pulsanti.begin(), pulsanti.end(), [](QPushButton* b) { return !pagina(b); });
    for (auto* b : pulsanti) {
        QString testo = b->text();
        if (testo.isEmpty() || !acceleratore(testo).isNull()) continue;
        const QWidget* p = pagina(b);
        for (qsizetype i = 0; i < testo.size(); ++i) {
            if (testo[i] == '&') {   // "&&", a literal ampersand
                ++i;
                continue;
            }
            const QChar c = testo[i].toLower();
            if (!c.isLetterOrNumber() || !libera(p, c)) continue;
            usate[p].insert(c);
            testo.insert(i, '&');
            b->setText(testo);
            break;
        }
    }
}

}  // namespace ui
