#include "ui/Stile.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

#include <map>

#include "ui/Cifra.h"

namespace ui {

namespace {

struct IconaComando {
    const char* tema;
    QStyle::StandardPixmap riserva;
};

const std::map<QString, IconaComando>& iconeComandi() {
    static const std::map<QString, IconaComando> m = {
        {"btnNuovo", {"document-new", QStyle::SP_FileIcon}},
        {"btnModifica", {"document-properties", QStyle::SP_FileDialogDetailedView}},
        {"btnElimina", {"edit-delete", QStyle::SP_TrashIcon}},
        {"btnCerca", {"edit-find", QStyle::SP_FileDialogContentsView}},
        {"btnChiudi", {"system-log-out", QStyle::SP_DialogCloseButton}},
        {"btnStampa", {"document-print", QStyle::SP_FileIcon}},
        {"btnConferma", {"", QStyle::SP_DialogOkButton}},
        {"btnAnnulla", {"", QStyle::SP_DialogCancelButton}},
        {"btnAggiorna", {"view-refresh", QStyle::SP_BrowserReload}},
        {"imgNew", {"document-new", QStyle::SP_FileIcon}},
        {"imgEdit", {"document-properties", QStyle::SP_FileDialogDetailedView}},
    };
    return m;
}

QString nomeBase(const QString& nome) {
    // imgNew2 is drawn as imgNew: the number only tells copies apart.
    QString base = nome;
    while (!base.isEmpty() && base.back().isDigit()) base.chop(1);
    return base;
}

}  // namespace

QIcon icona(const char* nome) { return QIcon::fromTheme(QString::fromLatin1(nome)); }

QIcon iconaComando(const QString& nomeComando) {
    auto it = iconeComandi().find(nomeBase(nomeComando));
    if (it == iconeComandi().end()) return {};
    QIcon i = *it->second.tema ? icona(it->second.tema) : QIcon();
    if (i.isNull()) i = QApplication::style()->standardIcon(it->second.riserva);
    return i;
}

void impostaSpaziatura(QLayout* l) {
    l->setSpacing(Spaziatura);
    l->setContentsMargins(Margine, Margine, Margine, Margine);
}

QPushButton* comando(const char* nome, const QString& testo, QWidget* parent) {
    auto* b = new QPushButton(testo, parent);
    b->setObjectName(QString::fromLatin1(nome));
    b->setIcon(iconaComando(b->objectName()));
    b->setAutoDefault(false);
    return b;
}

QToolButton* immagine(const char* nome, const QString& suggerimento, QWidget* parent) {
    auto* b = new QToolButton(parent);
    b->setObjectName(QString::fromLatin1(nome));
    b->setIcon(iconaComando(b->objectName()));
    b->setToolTip(suggerimento);
    b->setAutoRaise(true);
    b->setFocusPolicy(Qt::NoFocus);
    return b;
}

QDialogButtonBox* confermaAnnulla(QWidget* parent, QPushButton*& conferma, QPushButton*& annulla) {
    auto* riga = new QDialogButtonBox(parent);
    conferma = comando("btnConferma", QStringLiteral("Conferma"), parent);
    annulla = comando("btnAnnulla", QStringLiteral("Annulla"), parent);
    conferma->setDefault(true);
    riga->addButton(conferma, QDialogButtonBox::AcceptRole);
    riga->addButton(annulla, QDialogButtonBox::RejectRole);
    return riga;
}

QLabel* cifra(const char* nome, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(nome);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    l->setMinimumWidth(110);
    l->setFrameShape(QFrame::StyledPanel);
    return l;
}

QLabel* didascalia(const QString& testo, QWidget* parent) {
    auto* l = new QLabel(testo, parent);
    l->setStyleSheet("color: palette(mid)");
    return l;
}

}  // namespace ui
