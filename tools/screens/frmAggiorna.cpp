#include "tools/screens/frmAggiorna.h"

#include <QApplication>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include "core/avvio.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/pannello.h"
#include "core/registro_schermi.h"
#include "tools/aggiornamento.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }


constexpr int kLarghezzaPista = 220;
constexpr int kPassiFreccia = 20;

// The log box and the list of reports follow the run as it goes, and the screen stays alive.
class SuSchermo : public tools::OsservatoreAggiornamento {
public:
    explicit SuSchermo(frmAggiorna& f) : f_(f) {}
    void Scrivi(const std::string& riga) override { f_.Text2->appendPlainText(Q(riga)); }
    void ReportAggiornato(const std::string& voce) override { f_.List1->addItem(Q(voce)); }
    void Respira() override { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); }

private:
    frmAggiorna& f_;
};

}  // namespace

bool MostraAggiorna() {
    frmAggiorna f(ui::finestraPrincipale());
    const bool fatto = f.exec() == QDialog::Accepted;
    if (!f.ProgrammaDaChiudere()) return fatto;
    if (ui::finestraPrincipale()) {
        // The panel's event loop is running (a change of Esercizio): leaving it ends the program.
        for (QWidget* w : QApplication::topLevelWidgets()) w->hide();
        QCoreApplication::exit(0);
        return false;
    }
    throw core::TerminaProgramma();
}

frmAggiorna::frmAggiorna(QWidget* parent) : QDialog(parent) {
    setObjectName(Nome);
    setWindowTitle("Aggiornamento automatico");
    setWindowIcon(ui::iconaComando("btnAggiorna"));
    resize(640, 520);
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);

    Frame1 = new QFrame(this);
    Frame1->setObjectName("Frame1");
    Frame1->setFrameShape(QFrame::StyledPanel);
    auto* avviso = new QHBoxLayout(Frame1);
    auto* icona = new QLabel(Frame1);
    icona->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(32, 32));
    lblAvviso = new QLabel(Frame1);
    lblAvviso->setObjectName("lblAvviso");
    lblAvviso->setWordWrap(true);
    avviso->addWidget(icona, 0, Qt::AlignTop);
    avviso->addWidget(lblAvviso, 1);
    colonna->addWidget(Frame1);

    lblReport = new QLabel(this);
    lblReport->setObjectName("lblReport");
    List1 = new QListWidget(this);
    List1->setObjectName("List1");
    List1->setMaximumHeight(110);
    colonna->addWidget(lblReport);
    colonna->addWidget(List1);

    auto* riga = new QHBoxLayout;
    lblOperazioni = new QLabel(this);
    lblOperazioni->setObjectName("lblOperazioni");
    auto* pista = new QWidget(this);
    pista->setFixedSize(kLarghezzaPista, 24);
    imgFreccia = new QLabel(pista);
    imgFreccia->setObjectName("imgFreccia");
    imgFreccia->setPixmap(style()->standardIcon(QStyle::SP_ArrowRight).pixmap(22, 22));
    imgFreccia->setGeometry(0, 1, 22, 22);
    imgFreccia->hide();
    riga->addWidget(lblOperazioni);
    riga->addStretch(1);
    riga->addWidget(pista);
    colonna->addLayout(riga);

    Text2 = new QPlainTextEdit(this);
    Text2->setObjectName("Text2");
    Text2->setReadOnly(true);
    Text2->setLineWrapMode(QPlainTextEdit::NoWrap);
    colonna->addWidget(Text2, 1);

    auto* pulsanti = new QHBoxLayout;
    btnAggiorna = ui::comando("btnAggiorna", QString(), this);
    btnAggiorna->setDefault(true);
    btnAnnulla = ui::comando("btnAnnulla", QString(), this);
    pulsanti->addStretch(1);
    pulsanti->addWidget(btnAggiorna);
    pulsanti->addWidget(btnAnnulla);
    colonna->addLayout(pulsanti);

    Timer1 = new QTimer(this);
    Timer1->setObjectName("Timer1");
    Timer1->setInterval(80);
    connect(Timer1, &QTimer::timeout, this, [this] { MuoviFreccia(); });
    connect(btnAggiorna, &QPushButton::clicked, this, [this] { Aggiorna(); });
    connect(btnAnnulla, &QPushButton::clicked, this, [this] { Annulla(); });

    // Load: every archive of every company, and the model made afresh.
    ui::protetto([this] {
        file_ = tools::FileDaAggiornare();
        modello_ = tools::PreparaModello();
    });
    lblAvviso->setText(Q(core::Didascalia("s68")));
    btnAggiorna->setText(Q(core::Didascalia("s69")));
    btnAnnulla->setText(Q(core::Didascalia("s66")));
    lblReport->setText(Q(core::Didascalia("s74")));
    lblOperazioni->setText(Q(core::Didascalia("s75")));
}

void frmAggiorna::Aggiorna() {
    if (inCorso_) return;
    inCorso_ = true;
    btnAggiorna->setEnabled(false);
    btnAnnulla->setEnabled(false);
    Frame1->hide();
    imgFreccia->show();
    Timer1->start();
    SuSchermo schermo(*this);
    tools::EsitoAggiornamento esito;
    const bool eseguito = ui::protetto(
        [&] { esito = tools::EseguiAggiornamento(file_, modello_, core::DataEseguibile(), schermo); });
    Timer1->stop();
    imgFreccia->hide();
    inCorso_ = false;
    if (!eseguito || !esito.riuscito()) {
        if (eseguito) core::MsgBox(tools::MessaggioFallimento(esito), core::vbExclamation);
        chiudiProgramma_ = true;
        done(QDialog::Rejected);
        return;
    }
    accept();
}

void frmAggiorna::Annulla() {
    if (inCorso_) return;
    chiudiProgramma_ = true;
    done(QDialog::Rejected);
}

// Escape and the window's close button cancel like btnAnnulla; during the run nothing closes it.
void frmAggiorna::reject() { Annulla(); }

void frmAggiorna::MuoviFreccia() {
    passoFreccia_ = (passoFreccia_ + 1) % kPassiFreccia;
    const int x = (kLarghezzaPista - imgFreccia->width()) * passoFreccia_ / (kPassiFreccia - 1);
    imgFreccia->move(x, imgFreccia->y());
}
