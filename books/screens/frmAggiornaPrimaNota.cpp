#include "books/screens/frmAggiornaPrimaNota.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "books/prima_nota_ricostruzione.h"
#include "core/dialogs.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"

namespace {

QLabel* Testo(const char* nome, const char* testo, QWidget* parent) {
    auto* l = new QLabel(QString::fromUtf8(testo), parent);
    l->setObjectName(nome);
    l->setWordWrap(true);
    return l;
}

// The busy pointer for as long as the rebuild runs, also when it fails.
struct Occupato {
    Occupato() { core::dialogs().setBusy(true); }
    ~Occupato() { core::dialogs().setBusy(false); }
};

}  // namespace

frmAggiornaPrimaNota::frmAggiornaPrimaNota(QWidget* parent) : QDialog(parent) {
    setObjectName(Nome);
    setWindowTitle("Aggiornamento prima nota");
    setWindowIcon(ui::iconaComando("btnAggiorna"));
    resize(520, 200);
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);
    Label1 = Testo("Label1",
                   "L'ultimo aggiornamento ha rettificato la gestione della prima nota. Sarà necessario eseguire la "
                   "seguente procedura per aggiornare la prima nota con pagamenti/incassi registrati.",
                   this);
    Label2 = Testo("Label2", "Si consigna di chiudere il programma nelle postazioni client", this);
    Label2->setStyleSheet("font-weight: bold");
    Label3 = Testo("Label3",
                   "I movimenti di prima nota saranno generati tutti con Destinazione=Banca, da modificare "
                   "successivamente",
                   this);
    colonna->addWidget(Label1);
    colonna->addWidget(Label2);
    colonna->addWidget(Label3);
    colonna->addStretch(1);

    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName("ProgressBar1");
    ProgressBar1->setRange(0, 1);
    ProgressBar1->setValue(0);
    colonna->addWidget(ProgressBar1);

    auto* pulsanti = new QHBoxLayout;
    btnAggiorna = ui::comando("btnAggiorna", "Aggiorna", this);
    btnAggiorna->setDefault(true);
    Command1 = ui::comando("Command1", "Annulla", this);
    Command1->setIcon(ui::iconaComando("btnAnnulla"));
    pulsanti->addStretch(1);
    pulsanti->addWidget(btnAggiorna);
    pulsanti->addWidget(Command1);
    colonna->addLayout(pulsanti);

    connect(btnAggiorna, &QPushButton::clicked, this, [this] { Aggiorna(); });
    connect(Command1, &QPushButton::clicked, this, [this] { reject(); });
}

void frmAggiornaPrimaNota::Aggiorna() {
    btnAggiorna->setEnabled(false);
    Command1->setEnabled(false);
    bool riuscito = false;
    {
        Occupato occupato;
        riuscito = ui::protetto([this] {
            books::RicostruisciPrimaNota([this](long posizione, long totale) {
                // The bar runs to one past the count, so that it never looks finished before the end.
                ProgressBar1->setRange(0, static_cast<int>(totale) + 1);
                ProgressBar1->setValue(static_cast<int>(posizione));
                QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
            });
        });
    }
    Command1->setEnabled(true);
    // A rebuild cut half way has written rows; running it again would write them twice.
    if (riuscito) accept();
}
