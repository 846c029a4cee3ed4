#include "ui/CompletaComune.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>
#include <QHeaderView>
#include <QStandardItemModel>
#include <QTreeView>

#include "core/comuni.h"
#include "ui/Dialoghi.h"

namespace ui {

namespace {

constexpr int RuoloComune = Qt::UserRole;
constexpr int RuoloCap = Qt::UserRole + 1;
constexpr int RuoloProvincia = Qt::UserRole + 2;

QString Q(const std::string& s) { return QString::fromStdString(s); }

void scrivi(QLineEdit* casella, const QString& testo) {
    if (!casella) return;
    casella->setText(testo);
    casella->setModified(true);
}

}  // namespace

void CollegaComuni(QLineEdit* citta, QLineEdit* cap, QLineEdit* provincia) {
    auto* modello = new QStandardItemModel(citta);
    auto* completer = new QCompleter(modello, citta);
    completer->setObjectName("ComuniSuggeriti");
    completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    completer->setCompletionRole(RuoloComune);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setMaxVisibleItems(12);
    completer->setWidget(citta);
    // Town, CAP and province in columns of their own.
    auto* elenco = new QTreeView;
    elenco->setRootIsDecorated(false);
    elenco->setHeaderHidden(true);
    elenco->setUniformRowHeights(true);
    elenco->setAlternatingRowColors(true);
    elenco->setEditTriggers(QAbstractItemView::NoEditTriggers);
    elenco->setSelectionBehavior(QAbstractItemView::SelectRows);
    completer->setPopup(elenco);

    QObject::connect(citta, &QLineEdit::textEdited, completer, [=](const QString& testo) {
        modello->clear();
        protetto([&] {
            for (const core::Comune& c : core::ComuniCheIniziano(testo.trimmed().toStdString())) {
                auto* voce = new QStandardItem(Q(c.comune));
                voce->setData(Q(c.comune), RuoloComune);
                voce->setData(Q(c.cap), RuoloCap);
                voce->setData(Q(c.provincia), RuoloProvincia);
                modello->appendRow({voce, new QStandardItem(Q(c.cap)), new QStandardItem(Q(c.provincia))});
            }
        });
        if (modello->rowCount() == 0) {
            completer->popup()->hide();
            return;
        }
        completer->setCompletionPrefix(QString());
        completer->complete();
        elenco->header()->setStretchLastSection(false);
        elenco->header()->setSectionResizeMode(0, QHeaderView::Stretch);
        elenco->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
        elenco->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    });
    QObject::connect(completer, qOverload<const QModelIndex&>(&QCompleter::activated), citta,
                     [=](const QModelIndex& i) {
                         scrivi(citta, i.data(RuoloComune).toString());
                         scrivi(cap, i.data(RuoloCap).toString());
                         scrivi(provincia, i.data(RuoloProvincia).toString());
                     });
    // A town typed whole, with one CAP in the table, needs no choice: an empty CAP and province take it.
    QObject::connect(citta, &QLineEdit::editingFinished, citta, [=] {
        if (!cap || !cap->text().trimmed().isEmpty()) return;
        protetto([&] {
            const std::string nome = citta->text().trimmed().toStdString();
            std::vector<core::Comune> trovati;
            for (core::Comune& c : core::ComuniCheIniziano(nome))
                if (QString::compare(Q(c.comune), Q(nome), Qt::CaseInsensitive) == 0) trovati.push_back(std::move(c));
            if (trovati.size() != 1) return;
            scrivi(citta, Q(trovati[0].comune));
            scrivi(cap, Q(trovati[0].cap));
            if (provincia && provincia->text().trimmed().isEmpty()) scrivi(provincia, Q(trovati[0].provincia));
        });
    });
}

}  // namespace ui
