#include "ui/report/Anteprima.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>

#include <cmath>
#include <filesystem>

#include "core/dialogs.h"
#include "ui/Stile.h"
#include "ui/report/Pittore.h"

namespace ui::report {
namespace {

QPushButton* pulsante(const char* nome, const QString& testo, const char* icona, QWidget* parent) {
    auto* b = comando(nome, testo, parent);
    if (b->icon().isNull()) b->setIcon(ui::icona(icona));
    return b;
}

void mostraErrore(const ErroreReport& e) {
    core::MsgBox(std::to_string(e.number()) + "; " + e.what(), core::vbExclamation);
}

}  // namespace

frmAnteprima::frmAnteprima(Documento documento, std::string nomeFile, QWidget* parent)
    : QDialog(parent), doc_(std::move(documento)), nomeFile_(std::move(nomeFile)) {
    pittore_ = std::make_unique<Pittore>(doc_, nomeFile_);
    setObjectName(Nome);
    setWindowTitle(QString::fromStdString("Anteprima di stampa - " + (doc_.titolo.empty() ? nomeFile_ : doc_.titolo)));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    resize(900, 700);

    auto* colonna = new QVBoxLayout(this);
    impostaSpaziatura(colonna);
    auto* barra = new QHBoxLayout;
    btnPrima = pulsante("btnPrima", "&Prima", "go-first", this);
    btnPrecedente = pulsante("btnPrecedente", "Pre&cedente", "go-previous", this);
    lblPagina = new QLabel(this);
    lblPagina->setObjectName("lblPagina");
    lblPagina->setAlignment(Qt::AlignCenter);
    lblPagina->setMinimumWidth(120);
    btnSuccessiva = pulsante("btnSuccessiva", "S&uccessiva", "go-next", this);
    btnUltima = pulsante("btnUltima", "U&ltima", "go-last", this);
    cbZoom = new QComboBox(this);
    cbZoom->setObjectName("cbZoom");
    cbZoom->addItem("Larghezza pagina", -1.0);
    cbZoom->addItem("Pagina intera", 0.0);
    for (int z : {50, 75, 100, 125, 150, 200}) cbZoom->addItem(QString::number(z) + "%", z / 100.0);
    btnStampa = pulsante("btnStampa", "&Stampa...", "document-print", this);
    btnSalvaPdf = pulsante("btnSalvaPdf", "Salva P&DF...", "document-save-as", this);
    btnChiudi = pulsante("btnChiudi", "C&hiudi", "window-close", this);
    for (QWidget* w : std::initializer_list<QWidget*>{btnPrima, btnPrecedente, lblPagina, btnSuccessiva, btnUltima, cbZoom})
        barra->addWidget(w);
    barra->addStretch(1);
    for (QWidget* w : std::initializer_list<QWidget*>{btnStampa, btnSalvaPdf, btnChiudi}) barra->addWidget(w);
    colonna->addLayout(barra);

    scrPagina = new QScrollArea(this);
    scrPagina->setObjectName("scrPagina");
    scrPagina->setAlignment(Qt::AlignCenter);
    scrPagina->setBackgroundRole(QPalette::Dark);
    imgPagina = new QLabel;
    imgPagina->setObjectName("imgPagina");
    scrPagina->setWidget(imgPagina);
    colonna->addWidget(scrPagina, 1);
    scrPagina->viewport()->installEventFilter(this);

    connect(btnPrima, &QPushButton::clicked, this, [this] { VaiA(0); });
    connect(btnPrecedente, &QPushButton::clicked, this, [this] { VaiA(pagina_ - 1); });
    connect(btnSuccessiva, &QPushButton::clicked, this, [this] { VaiA(pagina_ + 1); });
    connect(btnUltima, &QPushButton::clicked, this, [this] { VaiA(Pagine() - 1); });
    connect(btnStampa, &QPushButton::clicked, this, &frmAnteprima::Stampa);
    connect(btnSalvaPdf, &QPushButton::clicked, this, &frmAnteprima::SalvaPdf);
    connect(btnChiudi, &QPushButton::clicked, this, &QDialog::reject);
    connect(cbZoom, &QComboBox::activated, this, [this](int i) {
        const double z = cbZoom->itemData(i).toDouble();
        adatta_ = z <= 0 ? (z < 0 ? Adatta::Larghezza : Adatta::Pagina) : Adatta::No;
        ImpostaZoom(adatta_ != Adatta::No ? ZoomAdatto() : z);
    });
    auto scorciatoia = [this](QKeySequence tasti, auto azione) {
        connect(new QShortcut(tasti, this), &QShortcut::activated, this, azione);
    };
    scorciatoia(QKeySequence(Qt::Key_PageDown), [this] { VaiA(pagina_ + 1); });
    scorciatoia(QKeySequence(Qt::Key_PageUp), [this] { VaiA(pagina_ - 1); });
    scorciatoia(QKeySequence(Qt::CTRL | Qt::Key_Home), [this] { VaiA(0); });
    scorciatoia(QKeySequence(Qt::CTRL | Qt::Key_End), [this] { VaiA(Pagine() - 1); });
    scorciatoia(QKeySequence::ZoomIn, [this] { adatta_ = Adatta::No; ImpostaZoom(zoom_ * 1.25); });
    scorciatoia(QKeySequence::ZoomOut, [this] { adatta_ = Adatta::No; ImpostaZoom(zoom_ / 1.25); });
    scorciatoia(QKeySequence::Print, [this] { Stampa(); });
    scorciatoia(QKeySequence::Save, [this] { SalvaPdf(); });
    zoom_ = ZoomAdatto();
    Mostra();
}

frmAnteprima::~frmAnteprima() = default;

int frmAnteprima::Pagine() const { return pittore_->pagine(); }

void frmAnteprima::VaiA(int pagina) {
    pagina = std::clamp(pagina, 0, std::max(0, Pagine() - 1));
    if (pagina == pagina_) return;
    pagina_ = pagina;
    Mostra();
    scrPagina->verticalScrollBar()->setValue(0);
}

void frmAnteprima::ImpostaZoom(double zoom) {
    zoom_ = std::clamp(zoom, 0.1, 4.0);
    Mostra();
}

double frmAnteprima::ZoomAdatto() const {
    // The room inside the scroll area, less a margin and the vertical bar that a long page needs.
    const QSize spazio = scrPagina->viewport()->size() - QSize(12 + scrPagina->verticalScrollBar()->sizeHint().width(), 12);
    const double larghezza = doc_.pagina.larghezza / 25.4 * 96, altezza = doc_.pagina.altezza / 25.4 * 96;
    const double perLarghezza = spazio.width() / larghezza;
    return std::max(0.1, adatta_ == Adatta::Pagina ? std::min(perLarghezza, spazio.height() / altezza) : perLarghezza);
}

bool frmAnteprima::eventFilter(QObject* oggetto, QEvent* evento) {
    if (oggetto == scrPagina->viewport() && evento->type() == QEvent::Resize && adatta_ != Adatta::No) {
        const double z = ZoomAdatto();
        if (std::abs(z - zoom_) > 0.01) ImpostaZoom(z);
    }
    return QDialog::eventFilter(oggetto, evento);
}

void frmAnteprima::Mostra() {
    lblPagina->setText(QString("Pagina %1 di %2").arg(pagina_ + 1).arg(Pagine()));
    btnPrima->setEnabled(pagina_ > 0);
    btnPrecedente->setEnabled(pagina_ > 0);
    btnSuccessiva->setEnabled(pagina_ + 1 < Pagine());
    btnUltima->setEnabled(pagina_ + 1 < Pagine());
    const QImage img = pittore_->immagine(pagina_, zoom_ * devicePixelRatioF());
    QPixmap pixmap = QPixmap::fromImage(img);
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    imgPagina->setPixmap(pixmap);
    imgPagina->resize(pixmap.deviceIndependentSize().toSize());
}

void frmAnteprima::Stampa() {
    QPrinter stampante(QPrinter::HighResolution);
    stampante.setDocName(QString::fromStdString(doc_.titolo.empty() ? nomeFile_ : doc_.titolo));
    QPrintDialog dialogo(&stampante, this);
    dialogo.setMinMax(1, Pagine());
    dialogo.setOption(QAbstractPrintDialog::PrintCurrentPage);
    if (dialogo.exec() != QDialog::Accepted) return;
    try {
        if (stampante.printRange() == QPrinter::PageRange)
            pittore_->stampa(stampante, stampante.fromPage() - 1, stampante.toPage() - 1);
        else if (stampante.printRange() == QPrinter::CurrentPage)
            pittore_->stampa(stampante, pagina_, pagina_);
        else
            pittore_->stampa(stampante);
    } catch (const ErroreReport& e) {
        mostraErrore(e);
    }
}

void frmAnteprima::SalvaPdf() {
    const std::string proposto = std::filesystem::path(nomeFile_).replace_extension(".pdf").string();
    auto percorso = core::dialogs().chooseFile("Salva PDF", "Documenti PDF (*.pdf)", true, proposto);
    if (!percorso || percorso->empty()) return;
    std::string file = *percorso;
    if (std::filesystem::path(file).extension().empty()) file += ".pdf";
    try {
        pittore_->esportaPdf(file);
    } catch (const ErroreReport& e) {
        mostraErrore(e);
    }
}

}  // namespace ui::report
