#include "ui/report/EditorReport.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QFontComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImageReader>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

#include <cmath>
#include <filesystem>

#include "core/dialogs.h"
#include "ui/Stile.h"
#include "ui/report/Pittore.h"

namespace ui::report {
namespace {

namespace fs = std::filesystem;

constexpr double kGriglia = 0.5;   // a drag lands on half millimetres (Alt: anywhere)
constexpr int kManiglia = 6;       // the grips' side, in pixels

void mostraErrore(const ErroreReport& e) {
    core::MsgBox(std::to_string(e.number()) + "; " + e.what(), core::vbExclamation);
}

double aGriglia(double v, bool libero) { return libero ? v : std::round(v / kGriglia) * kGriglia; }

QString numero(double v) { return QString::number(v, 'f', 2); }

// The drawing as primitives the preview's painter draws: a field shows its name in brackets (without
// its sub-report, which the panel shows), a sum its field after a Σ, a picture missing from its folder
// a box with its name.
Documento disegno(const EditorModello& ed, const std::string& cartellaImmagini) {
    Documento d;
    d.pagina = ed.modello().pagina;
    d.pagina.altezza = ed.AltezzaDisegno();
    auto& primitive = d.pagine.emplace_back().primitive;
    const double sinistro = ed.modello().pagina.sinistro;
    for (int i = 0; i < ed.Bande(); ++i) {
        const double cima = ed.Cima(i);
        for (const auto& e : ed.banda(i).elementi) {
            Primitiva p = PrimitivaDi(e, e.x + sinistro, e.y + cima);
            if (e.tipo == TipoElemento::Testo) p.testo = e.testo;
            else if (e.tipo == TipoElemento::Campo)
                p.testo = e.somma.empty() ? "[" + e.campo.substr(e.campo.find('.') + 1) + "]" : "Σ [" + e.somma + "]";
            if (e.tipo == TipoElemento::Immagine) {
                const std::string percorso = (fs::path(cartellaImmagini) / e.file).string();
                if (QImageReader(QString::fromStdString(percorso)).canRead()) {
                    p.testo = percorso;
                } else {
                    p.tipo = TipoElemento::Riquadro;
                    p.spessore = 0.1;
                    Primitiva nome = p;
                    nome.tipo = TipoElemento::Testo;
                    nome.allinea = Allineamento::Centro;
                    nome.aCapo = true;
                    nome.carattere.punti = 7;
                    nome.testo = "Immagine " + e.file;
                    primitive.push_back(p);
                    p = nome;
                }
            }
            primitive.push_back(std::move(p));
        }
    }
    return d;
}

QPushButton* pulsante(const char* nome, const QString& testo, const char* icona, const QKeySequence& tasti,
                      QWidget* parent) {
    auto* b = comando(nome, testo, parent);
    if (b->icon().isNull() && icona) b->setIcon(ui::icona(icona));
    // A shortcut of the window runs the command at once, where the button's own would wait for its
    // pressed look to go.
    QObject::connect(new QShortcut(tasti, parent), &QShortcut::activated, b, &QPushButton::click);
    b->setToolTip(QString(testo).remove('&') + " (" + tasti.toString(QKeySequence::NativeText) + ")");
    return b;
}

}  // namespace

// ---------------------------------------------------------------------------------------------------
// The drawing

TelaReport::TelaReport(EditorModello& editor, std::string cartellaImmagini, QWidget* parent)
    : QWidget(parent), ed_(editor), cartellaImmagini_(std::move(cartellaImmagini)) {
    setObjectName("Tela");
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    Ricostruisci();
}

TelaReport::~TelaReport() = default;

void TelaReport::ImpostaZoom(double zoom) {
    zoom_ = std::clamp(zoom, 0.25, 4.0);
    Ricostruisci();
}

void TelaReport::Ricostruisci() {
    pittore_.reset();
    disegno_ = disegno(ed_, cartellaImmagini_);
    try {
        pittore_ = std::make_unique<Pittore>(disegno_, "");
    } catch (const ErroreReport&) {
        // A picture that reads badly: the drawing goes on without pictures.
        for (auto& p : disegno_.pagine[0].primitive)
            if (p.tipo == TipoElemento::Immagine) p.tipo = TipoElemento::Riquadro;
        pittore_ = std::make_unique<Pittore>(disegno_, "");
    }
    const double s = PixelPerMm();
    setFixedSize(static_cast<int>(disegno_.pagina.larghezza * s) + 1, static_cast<int>(ed_.AltezzaDisegno() * s) + 1);
    update();
}

void TelaReport::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const double s = PixelPerMm();
    const Pagina& pg = ed_.modello().pagina;
    p.fillRect(rect(), Qt::white);
    // The margins, dotted.
    p.setPen(QPen(QColor(170, 170, 170), 1, Qt::DotLine));
    p.drawLine(QPointF(pg.sinistro * s, 0), QPointF(pg.sinistro * s, height()));
    p.drawLine(QPointF((pg.larghezza - pg.destro) * s, 0), QPointF((pg.larghezza - pg.destro) * s, height()));
    QFont piccolo = font();
    piccolo.setPixelSize(std::max(9, static_cast<int>(Striscia * s * 0.6)));
    const Selezione sel = ed_.selezione();
    for (int i = 0; i < ed_.Bande(); ++i) {
        const double cima = ed_.Cima(i);
        const QRectF striscia(0, (cima - Striscia) * s, width(), Striscia * s);
        const bool scelta = sel.banda == i && sel.elemento < 0;
        p.fillRect(striscia, scelta ? QColor(190, 210, 240) : QColor(232, 232, 232));
        p.setPen(QColor(80, 80, 80));
        p.setFont(piccolo);
        p.drawText(striscia.adjusted(pg.sinistro * s, 0, -4, 0), Qt::AlignLeft | Qt::AlignVCenter,
                   QString::fromStdString(ed_.NomeBanda(i)) + "  (" + numero(ed_.banda(i).altezza) + " mm)");
        const double fondo = (cima + ed_.banda(i).altezza) * s;
        p.setPen(QPen(scelta ? QColor(40, 90, 200) : QColor(150, 150, 150), scelta ? 2 : 1, Qt::DashLine));
        p.drawLine(QPointF(0, fondo), QPointF(width(), fondo));
    }
    // The frames of texts and fields, faint, so that an empty one can be found.
    p.setPen(QPen(QColor(200, 200, 220), 1, Qt::DotLine));
    for (int i = 0; i < ed_.Bande(); ++i)
        for (const auto& e : ed_.banda(i).elementi)
            if (e.tipo == TipoElemento::Testo || e.tipo == TipoElemento::Campo)
                p.drawRect(QRectF((e.x + pg.sinistro) * s, (e.y + ed_.Cima(i)) * s, e.larghezza * s, e.altezza * s));
    if (pittore_) pittore_->disegna(p, 0, zoom_ * 96, zoom_ * 96);
    if (const Elemento* e = ed_.Selezionato()) {
        const double x0 = (std::min(e->x, e->x + e->larghezza) + pg.sinistro) * s;
        const double y0 = (std::min(e->y, e->y + e->altezza) + ed_.Cima(sel.banda)) * s;
        const QRectF r(x0, y0, std::abs(e->larghezza) * s, std::abs(e->altezza) * s);
        p.setPen(QPen(QColor(40, 90, 200), 1));
        p.setBrush(Qt::NoBrush);
        p.drawRect(r);
        p.setBrush(QColor(40, 90, 200));
        const double m = kManiglia / 2.0;
        for (double x : {r.left(), r.center().x(), r.right()})
            for (double y : {r.top(), r.center().y(), r.bottom()})
                if (x != r.center().x() || y != r.center().y()) p.drawRect(QRectF(x - m, y - m, kManiglia, kManiglia));
    }
}

void TelaReport::mousePressEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton) return;
    setFocus();
    const QPointF punto = mm(e->position());
    const double tolleranza = (kManiglia / 2.0 + 1) / PixelPerMm();
    presa_ = ed_.PresaIn(punto.x(), punto.y(), tolleranza);
    if (presa_ == Presa::FondoBanda) {
        // The band whose bottom edge is under the mouse.
        for (int i = 0; i < ed_.Bande(); ++i)
            if (std::abs(punto.y() - ed_.Cima(i) - ed_.banda(i).altezza) <= tolleranza) ed_.Seleziona({i, -1});
    } else if (presa_ == Presa::Corpo || presa_ == Presa::Nessuna) {
        ed_.Seleziona(ed_.Colpito(punto.x(), punto.y()));
        presa_ = ed_.Selezionato() ? Presa::Corpo : Presa::Nessuna;
    }
    inizio_ = punto;
    if (const Elemento* el = ed_.Selezionato()) prima_ = *el;
    if (ed_.selezione().banda >= 0) altezzaPrima_ = ed_.banda(ed_.selezione().banda).altezza;
    if (presa_ != Presa::Nessuna) ed_.ApriGesto();
    update();
    emit SelezioneCambiata();
}

void TelaReport::trascina(const QPointF& punto, bool libero) {
    const QPointF d = punto - inizio_;
    if (presa_ == Presa::FondoBanda) {
        const Banda& b = ed_.banda(ed_.selezione().banda);
        ed_.Ridimensiona(Presa::FondoBanda, 0, aGriglia(altezzaPrima_ + d.y(), libero) - b.altezza);
        return;
    }
    const Elemento* e = ed_.Selezionato();
    if (!e) return;
    if (presa_ == Presa::Corpo) {
        ed_.Sposta(aGriglia(prima_.x + d.x(), libero) - e->x, aGriglia(prima_.y + d.y(), libero) - e->y);
        return;
    }
    // The edges the grip holds go where the mouse is, on the grid.
    const bool ovest = presa_ == Presa::Ovest || presa_ == Presa::NordOvest || presa_ == Presa::SudOvest;
    const bool est = presa_ == Presa::Est || presa_ == Presa::NordEst || presa_ == Presa::SudEst;
    const bool nord = presa_ == Presa::Nord || presa_ == Presa::NordEst || presa_ == Presa::NordOvest;
    const bool sud = presa_ == Presa::Sud || presa_ == Presa::SudEst || presa_ == Presa::SudOvest;
    double dx = 0, dy = 0;
    if (ovest) dx = aGriglia(prima_.x + d.x(), libero) - e->x;
    if (est) dx = aGriglia(prima_.x + prima_.larghezza + d.x(), libero) - (e->x + e->larghezza);
    if (nord) dy = aGriglia(prima_.y + d.y(), libero) - e->y;
    if (sud) dy = aGriglia(prima_.y + prima_.altezza + d.y(), libero) - (e->y + e->altezza);
    ed_.Ridimensiona(presa_, dx, dy);
}

void TelaReport::mouseMoveEvent(QMouseEvent* e) {
    const QPointF punto = mm(e->position());
    if (ed_.InGesto() && (e->buttons() & Qt::LeftButton)) {
        trascina(punto, e->modifiers() & Qt::AltModifier);
        Ricostruisci();
        return;
    }
    switch (ed_.PresaIn(punto.x(), punto.y(), (kManiglia / 2.0 + 1) / PixelPerMm())) {
    case Presa::Nord:
    case Presa::Sud:
    case Presa::FondoBanda: setCursor(Qt::SizeVerCursor); break;
    case Presa::Est:
    case Presa::Ovest: setCursor(Qt::SizeHorCursor); break;
    case Presa::NordOvest:
    case Presa::SudEst: setCursor(Qt::SizeFDiagCursor); break;
    case Presa::NordEst:
    case Presa::SudOvest: setCursor(Qt::SizeBDiagCursor); break;
    case Presa::Corpo: setCursor(Qt::SizeAllCursor); break;
    case Presa::Nessuna: unsetCursor(); break;
    }
}

void TelaReport::mouseReleaseEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton || !ed_.InGesto()) return;
    const bool cambiato = ed_.PuoAnnullare();
    ed_.ChiudiGesto();
    presa_ = Presa::Nessuna;
    if (cambiato) emit Cambiato();
}

void TelaReport::mouseDoubleClickEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton) return;
    const Elemento* el = ed_.Selezionato();
    if (el && (el->tipo == TipoElemento::Testo || el->tipo == TipoElemento::Campo)) emit ModificaTesto();
}

// Tab goes through the bands and their elements, and past the last one on to the next control.
bool TelaReport::focusNextPrevChild(bool avanti) {
    const bool dentro = ed_.SelezionaAccanto(avanti);
    update();
    emit SelezioneCambiata();
    return dentro || QWidget::focusNextPrevChild(avanti);
}

// Arrows move the chosen element by a point (Shift: ten); with Ctrl they move its right or bottom
// edge instead; a chosen band grows or shrinks with Up and Down.
void TelaReport::keyPressEvent(QKeyEvent* e) {
    double dx = 0, dy = 0;
    switch (e->key()) {
    case Qt::Key_Left: dx = -1; break;
    case Qt::Key_Right: dx = 1; break;
    case Qt::Key_Up: dy = -1; break;
    case Qt::Key_Down: dy = 1; break;
    default: QWidget::keyPressEvent(e); return;
    }
    const double passo = UnPunto * (e->modifiers() & Qt::ShiftModifier ? 10 : 1);
    dx *= passo;
    dy *= passo;
    bool fatto = false;
    if (!ed_.Selezionato()) fatto = ed_.Ridimensiona(Presa::FondoBanda, 0, dy);
    else if (e->modifiers() & Qt::ControlModifier) fatto = ed_.Ridimensiona(dx != 0 ? Presa::Est : Presa::Sud, dx, dy);
    else fatto = ed_.Sposta(dx, dy);
    e->accept();
    if (fatto) emit Cambiato();
}

// ---------------------------------------------------------------------------------------------------
// The screen

frmEditorReport::frmEditorReport(const Motore& motore, QWidget* parent)
    : QDialog(parent), file_(motore.File), nomeFile_(motore.NomeFile()), cartellaImmagini_(motore.CartellaImmagini),
      ed_(report::Carica(motore.File)) {
    setObjectName(Nome);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    resize(std::min(1340, LarghezzaMassima), std::min(720, AltezzaMassima));

    // What the preview runs: the caller's statements and parameters when the engine has them.
    subReports_ = motore.Caricato() ? motore.modello().subReports : ed_.modello().subReports;
    parametri_ = motore.Caricato() ? motore.modello().parametri : ed_.modello().parametri;
    Modello perDati;
    perDati.subReports = subReports_;
    perDati.parametri = parametri_;
    try {
        const Motore::Archivi a = motore.Apri(perDati);
        colonne_ = ColonneSubReport(perDati, a.archivio.get(), a.temp.get(), motore.Azienda, a.aziende.get());
        perDati.sorgente = ed_.modello().sorgente;
        dati_ = CaricaDati(perDati, a.archivio.get(), a.temp.get(), nomeFile_, motore.Azienda, a.aziende.get());
    } catch (const store::JetError& e) {
        erroreDati_ = std::to_string(e.number()) + "; " + e.what();
    }
    campi_ = CampiScelti(ed_.modello(), colonne_);

    auto* colonna = new QVBoxLayout(this);
    impostaSpaziatura(colonna);
    auto* barra = new QHBoxLayout;
    btnSalva = pulsante("btnSalva", "&Salva", "document-save", QKeySequence::Save, this);
    btnAnnullaModifica = pulsante("btnAnnullaModifica", "A&nnulla", "edit-undo", QKeySequence(Qt::CTRL | Qt::Key_Z), this);
    btnRipeti = pulsante("btnRipeti", "&Ripeti", "edit-redo", QKeySequence(Qt::CTRL | Qt::Key_Y), this);
    btnTesto = pulsante("btnTesto", "&Testo", "insert-text", QKeySequence(Qt::CTRL | Qt::Key_1), this);
    btnCampo = pulsante("btnCampo", "Ca&mpo", "insert-object", QKeySequence(Qt::CTRL | Qt::Key_2), this);
    btnLinea = pulsante("btnLinea", "&Linea", "format-justify-fill", QKeySequence(Qt::CTRL | Qt::Key_3), this);
    btnRiquadro = pulsante("btnRiquadro", "Ri&quadro", "insert-object", QKeySequence(Qt::CTRL | Qt::Key_4), this);
    btnImmagine = pulsante("btnImmagine", "&Immagine...", "insert-image", QKeySequence(Qt::CTRL | Qt::Key_5), this);
    btnElimina = pulsante("btnElimina", "&Elimina", "edit-delete", QKeySequence::Delete, this);
    btnChiudi = pulsante("btnChiudi", "C&hiudi", "window-close", QKeySequence(Qt::Key_Escape), this);
    cbZoom = new QComboBox(this);
    cbZoom->setObjectName("cbZoom");
    for (int z : {50, 65, 80, 100, 125, 150, 200}) cbZoom->addItem(QString::number(z) + "%", z / 100.0);
    cbZoom->setCurrentIndex(2);
    cbZoom->setToolTip("Zoom del disegno (Ctrl++ / Ctrl+-)");
    for (QWidget* w : std::initializer_list<QWidget*>{btnSalva, btnAnnullaModifica, btnRipeti}) barra->addWidget(w);
    barra->addSpacing(12);
    for (QWidget* w : std::initializer_list<QWidget*>{btnTesto, btnCampo, btnLinea, btnRiquadro, btnImmagine, btnElimina})
        barra->addWidget(w);
    barra->addSpacing(12);
    barra->addWidget(cbZoom);
    barra->addStretch(1);
    barra->addWidget(btnChiudi);
    colonna->addLayout(barra);

    auto* divisore = new QSplitter(Qt::Horizontal, this);
    divisore->setObjectName("divisore");
    divisore->setChildrenCollapsible(false);
    divisore->addWidget(creaPannello());

    Tela = new TelaReport(ed_, cartellaImmagini_);
    Tela->ImpostaZoom(0.8);
    scrTela = new QScrollArea(divisore);
    scrTela->setObjectName("scrTela");
    scrTela->setBackgroundRole(QPalette::Dark);
    scrTela->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    scrTela->setWidget(Tela);
    divisore->addWidget(scrTela);

    auto* destra = new QWidget(divisore);
    auto* colonnaDestra = new QVBoxLayout(destra);
    colonnaDestra->setContentsMargins(0, 0, 0, 0);
    auto* titoloAnteprima = new QLabel("Anteprima della prima pagina", destra);
    scrAnteprima = new QScrollArea(destra);
    scrAnteprima->setObjectName("scrAnteprima");
    scrAnteprima->setBackgroundRole(QPalette::Dark);
    scrAnteprima->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    scrAnteprima->setFocusPolicy(Qt::NoFocus);
    imgAnteprima = new QLabel;
    imgAnteprima->setObjectName("imgAnteprima");
    scrAnteprima->setWidget(imgAnteprima);
    scrAnteprima->viewport()->installEventFilter(this);
    lblAvvisi = new QLabel(destra);
    lblAvvisi->setObjectName("lblAvvisi");
    lblAvvisi->setWordWrap(true);
    lblAvvisi->setStyleSheet("color: #a00000;");
    colonnaDestra->addWidget(titoloAnteprima);
    colonnaDestra->addWidget(scrAnteprima, 1);
    colonnaDestra->addWidget(lblAvvisi);
    divisore->addWidget(destra);
    divisore->setStretchFactor(1, 3);
    divisore->setStretchFactor(2, 2);
    divisore->setSizes({285, 680, 365});
    colonna->addWidget(divisore, 1);

    connect(btnSalva, &QPushButton::clicked, this, [this] { Salva(); });
    connect(btnAnnullaModifica, &QPushButton::clicked, this, [this] { comando(&EditorModello::Annulla); });
    connect(btnRipeti, &QPushButton::clicked, this, [this] { comando(&EditorModello::Ripeti); });
    connect(btnElimina, &QPushButton::clicked, this, [this] { comando(&EditorModello::Elimina); });
    connect(btnTesto, &QPushButton::clicked, this, [this] { aggiungi(TipoElemento::Testo); });
    connect(btnCampo, &QPushButton::clicked, this, [this] {
        // The field chosen in the list, or else its first.
        const QListWidgetItem* i = lstCampi->currentItem() ? lstCampi->currentItem() : lstCampi->item(0);
        aggiungi(TipoElemento::Campo, i ? i->text().toStdString() : "");
    });
    connect(btnLinea, &QPushButton::clicked, this, [this] { aggiungi(TipoElemento::Linea); });
    connect(btnRiquadro, &QPushButton::clicked, this, [this] { aggiungi(TipoElemento::Riquadro); });
    connect(btnImmagine, &QPushButton::clicked, this, &frmEditorReport::AggiungiImmagine);
    connect(btnChiudi, &QPushButton::clicked, this, &frmEditorReport::reject);
    connect(cbZoom, &QComboBox::activated, this, [this](int i) { Tela->ImpostaZoom(cbZoom->itemData(i).toDouble()); });
    auto scorciatoia = [this](QKeySequence tasti, auto azione) {
        connect(new QShortcut(tasti, this), &QShortcut::activated, this, azione);
    };
    scorciatoia(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), [this] { comando(&EditorModello::Ripeti); });
    auto zoom = [this](int passo) {
        cbZoom->setCurrentIndex(std::clamp(cbZoom->currentIndex() + passo, 0, cbZoom->count() - 1));
        Tela->ImpostaZoom(cbZoom->currentData().toDouble());
    };
    scorciatoia(QKeySequence::ZoomIn, [zoom] { zoom(1); });
    scorciatoia(QKeySequence::ZoomOut, [zoom] { zoom(-1); });
    connect(Tela, &TelaReport::Cambiato, this, &frmEditorReport::Aggiorna);
    connect(Tela, &TelaReport::SelezioneCambiata, this, [this] {
        mostraProprieta();
        btnElimina->setEnabled(ed_.Selezionato() != nullptr);
    });
    connect(Tela, &TelaReport::ModificaTesto, this, [this] {
        QWidget* w = ed_.Selezionato()->tipo == TipoElemento::Testo ? static_cast<QWidget*>(txtTesto) : cbCampo;
        w->setFocus(Qt::OtherFocusReason);
        if (auto* l = qobject_cast<QLineEdit*>(w)) l->selectAll();
    });

    if (ed_.Bande() > 0) ed_.Seleziona({0, -1});
    Aggiorna();
    Tela->setFocus();
}

frmEditorReport::~frmEditorReport() {
    // Hidden while the layout is still there: the focus leaving a control sets nothing any more.
    mostrando_ = true;
    hide();
}

QWidget* frmEditorReport::creaPannello() {
    auto* pannello = new QWidget;
    auto* colonna = new QVBoxLayout(pannello);
    colonna->setContentsMargins(0, 0, 0, 0);

    auto* etichettaCampi = new QLabel("Campi dei s&ub-report", pannello);
    lstCampi = new QListWidget(pannello);
    lstCampi->setObjectName("lstCampi");
    for (const auto& c : campi_) lstCampi->addItem(QString::fromStdString(c));
    lstCampi->setToolTip("Invio o doppio clic: il campo nella banda scelta");
    etichettaCampi->setBuddy(lstCampi);
    connect(lstCampi, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* i) { aggiungi(TipoElemento::Campo, i->text().toStdString()); });
    colonna->addWidget(etichettaCampi);
    colonna->addWidget(lstCampi, 1);

    auto* gruppo = new QGroupBox("Proprietà", pannello);
    auto* form = new QFormLayout(gruppo);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    lblSelezione = new QLabel(gruppo);
    lblSelezione->setObjectName("lblSelezione");
    form->addRow(lblSelezione);

    auto misura = [&](const char* nome, double minimo, double massimo, double passo, const char* suffisso) {
        auto* s = new QDoubleSpinBox(gruppo);
        s->setObjectName(nome);
        s->setRange(minimo, massimo);
        s->setDecimals(2);
        s->setSingleStep(passo);
        s->setSuffix(suffisso);
        s->setAlignment(Qt::AlignRight);
        s->setKeyboardTracking(false);
        return s;
    };
    auto scelta = [&](const char* nome, QStringList voci, bool modificabile) {
        auto* c = new QComboBox(gruppo);
        c->setObjectName(nome);
        c->setEditable(modificabile);
        c->addItems(voci);
        c->setInsertPolicy(QComboBox::NoInsert);
        return c;
    };
    txtTesto = new QLineEdit(gruppo);
    txtTesto->setObjectName("txtTesto");
    txtTesto->setToolTip("[Campo], [Sub.Campo|maschera], {Parametro}, {Pagina}, {Pagine}");
    QStringList campi{""};
    for (const auto& c : campi_) campi << QString::fromStdString(c);
    cbCampo = scelta("cbCampo", campi, true);
    QStringList sommabili{""};
    for (const auto& c : campi_)
        if (c.find('.') == std::string::npos) sommabili << QString::fromStdString(c);
    cbSomma = scelta("cbSomma", sommabili, true);
    cbAmbito = scelta("cbAmbito", {"Report", "Gruppo", "Pagina"}, false);
    cbMaschera = scelta("cbMaschera", {"", "#,0.00", "#,0", "0", "dd/mm/yyyy", "dd/mm/yy"}, true);
    txtFile = new QLineEdit(gruppo);
    txtFile->setObjectName("txtFile");
    cbCarattere = new QFontComboBox(gruppo);
    cbCarattere->setObjectName("cbCarattere");
    spnPunti = misura("spnPunti", 1, 200, 0.5, " pt");
    spnPunti->setDecimals(1);
    chkGrassetto = new QCheckBox("&Grassetto", gruppo);
    chkGrassetto->setObjectName("chkGrassetto");
    chkCorsivo = new QCheckBox("Corsi&vo", gruppo);
    chkCorsivo->setObjectName("chkCorsivo");
    cbAllinea = scelta("cbAllinea", {"Sinistra", "Centro", "Destra"}, false);
    spnSpessore = misura("spnSpessore", 0, 10, 0.1, " mm");
    chkCresce = new QCheckBox("A capo, la banda cresce", gruppo);
    chkCresce->setObjectName("chkCresce");
    spnX = misura("spnX", 0, 10000, UnPunto, " mm");
    spnY = misura("spnY", 0, 10000, UnPunto, " mm");
    spnLarghezza = misura("spnLarghezza", 0, 10000, UnPunto, " mm");
    spnAltezza = misura("spnAltezza", 0, 10000, UnPunto, " mm");

    auto* stile = new QHBoxLayout;
    stile->addWidget(chkGrassetto);
    stile->addWidget(chkCorsivo);
    // The labels' letters differ from one another and from the commands' above.
    auto riga = [&](const char* etichetta, QWidget* w) {
        auto* l = new QLabel(etichetta, gruppo);
        l->setBuddy(w);
        form->addRow(l, w);
    };
    riga("Test&o", txtTesto);
    riga("Es&pressione", cbCampo);
    riga("Somma &di", cbSomma);
    riga("Am&bito", cbAmbito);
    riga("M&aschera", cbMaschera);
    riga("&File", txtFile);
    riga("&Carattere", cbCarattere);
    riga("Dimensione", spnPunti);
    form->addRow("", stile);
    riga("Allineamento", cbAllinea);
    riga("Bordo", spnSpessore);
    form->addRow("", chkCresce);
    riga("&X", spnX);
    riga("&Y", spnY);
    riga("Larghe&zza", spnLarghezza);
    riga("Altezza", spnAltezza);
    colonna->addWidget(gruppo);

    collega(Proprieta::Testo, txtTesto);
    collega(Proprieta::Campo, cbCampo);
    collega(Proprieta::Somma, cbSomma);
    collega(Proprieta::Ambito, cbAmbito);
    collega(Proprieta::Maschera, cbMaschera);
    collega(Proprieta::File, txtFile);
    collega(Proprieta::Carattere, cbCarattere);
    collega(Proprieta::Punti, spnPunti);
    collega(Proprieta::Grassetto, chkGrassetto);
    collega(Proprieta::Corsivo, chkCorsivo);
    collega(Proprieta::Allinea, cbAllinea);
    collega(Proprieta::Spessore, spnSpessore);
    collega(Proprieta::Cresce, chkCresce);
    collega(Proprieta::X, spnX);
    collega(Proprieta::Y, spnY);
    collega(Proprieta::Larghezza, spnLarghezza);
    collega(Proprieta::Altezza, spnAltezza);
    pannello->setMinimumWidth(280);
    return pannello;
}

// Each control sets its property when the user is done with it; Enter then moves on to the next.
void frmEditorReport::collega(Proprieta p, QWidget* controllo) {
    controlli_[p] = controllo;
    auto avanti = [this] { focusNextChild(); };
    if (auto* t = qobject_cast<QLineEdit*>(controllo)) {
        connect(t, &QLineEdit::editingFinished, this, [this, p, t] { applica(p, t->text().toStdString()); });
        connect(t, &QLineEdit::returnPressed, this, avanti);
    } else if (auto* c = qobject_cast<QComboBox*>(controllo)) {
        if (c->isEditable()) {
            connect(c->lineEdit(), &QLineEdit::editingFinished, this,
                    [this, p, c] { applica(p, c->currentText().toStdString()); });
            connect(c->lineEdit(), &QLineEdit::returnPressed, this, avanti);
        }
        connect(c, &QComboBox::activated, this, [this, p, c] { applica(p, c->currentText().toStdString()); });
    } else if (auto* s = qobject_cast<QDoubleSpinBox*>(controllo)) {
        connect(s, &QDoubleSpinBox::valueChanged, this,
                [this, p](double v) { applica(p, QString::number(v, 'f', 2).toStdString()); });
        connect(s->findChild<QLineEdit*>(), &QLineEdit::returnPressed, this, avanti);
    } else if (auto* k = qobject_cast<QCheckBox*>(controllo)) {
        connect(k, &QCheckBox::toggled, this, [this, p](bool v) { applica(p, v ? "Sì" : "No"); });
    }
}

void frmEditorReport::applica(Proprieta p, const std::string& valore) {
    if (mostrando_) return;
    const Modello prima = ed_.modello();
    const std::string errore = ed_.Imposta(p, valore);
    if (!errore.empty()) {
        core::MsgBox(errore, core::vbExclamation);
        mostraProprieta();
        return;
    }
    if (!(ed_.modello() == prima)) Aggiorna();
}

void frmEditorReport::mostraProprieta() {
    mostrando_ = true;
    const Elemento* e = ed_.Selezionato();
    const Selezione s = ed_.selezione();
    static const char* tipi[] = {"Testo", "Campo", "Linea", "Riquadro", "Immagine"};
    lblSelezione->setText(s.banda < 0 ? QString("Nessuna scelta")
                          : e       ? QString("%1 in %2").arg(tipi[static_cast<int>(e->tipo)],
                                                         QString::fromStdString(ed_.NomeBanda(s.banda)))
                                    : QString("Banda %1").arg(QString::fromStdString(ed_.NomeBanda(s.banda))));
    for (const auto& [p, w] : controlli_) {
        bool attivo = false;
        if (e) {
            const auto& ammesse = ProprietaDi(e->tipo);
            attivo = std::find(ammesse.begin(), ammesse.end(), p) != ammesse.end();
            if (p == Proprieta::Ambito && e->somma.empty()) attivo = false;
        } else {
            attivo = s.banda >= 0 && p == Proprieta::Altezza;
        }
        w->setEnabled(attivo);
        const QString v = QString::fromStdString(attivo ? ed_.Valore(p) : std::string());
        if (auto* t = qobject_cast<QLineEdit*>(w)) t->setText(v);
        else if (auto* c = qobject_cast<QComboBox*>(w)) {
            if (c->isEditable()) c->setEditText(v);
            else c->setCurrentIndex(std::max(0, c->findText(v)));
        } else if (auto* sp = qobject_cast<QDoubleSpinBox*>(w)) {
            sp->setValue(QString(v).replace(',', '.').toDouble());
        } else if (auto* k = qobject_cast<QCheckBox*>(w)) {
            k->setChecked(v == "Sì");
        }
    }
    mostrando_ = false;
}

void frmEditorReport::Aggiorna() {
    Tela->Ricostruisci();
    // The chosen element stays in sight as the keys move it or as it is added.
    if (const Elemento* e = ed_.Selezionato()) {
        const double s = Tela->PixelPerMm();
        const double x = ed_.modello().pagina.sinistro + e->x + e->larghezza / 2;
        const double y = ed_.Cima(ed_.selezione().banda) + e->y;
        scrTela->ensureVisible(static_cast<int>(x * s), static_cast<int>(y * s),
                               static_cast<int>(e->larghezza * s / 2) + 20, 40);
    }
    mostraProprieta();
    btnAnnullaModifica->setEnabled(ed_.PuoAnnullare());
    btnRipeti->setEnabled(ed_.PuoRipetere());
    btnElimina->setEnabled(ed_.Selezionato() != nullptr);
    for (QPushButton* b : {btnTesto, btnCampo, btnLinea, btnRiquadro, btnImmagine}) b->setEnabled(ed_.Bande() > 0);
    setWindowTitle(QString::fromStdString("Editor del report - " + nomeFile_ + (ed_.Modificato() ? " *" : "")));
    aggiornaAnteprima();
}

void frmEditorReport::aggiornaAnteprima() {
    std::vector<std::string> avvisi;
    if (!erroreDati_.empty()) avvisi.push_back(erroreDati_);
    Modello m = ed_.modello();
    m.subReports = subReports_;
    m.parametri = parametri_;
    for (auto& a : CampiSconosciuti(m, colonne_)) avvisi.push_back(std::move(a));
    pittoreAnteprima_.reset();
    try {
        anteprima_ = PrimaPagina(m, dati_, MisuratoreQt(), cartellaImmagini_, nomeFile_);
        pittoreAnteprima_ = std::make_unique<Pittore>(anteprima_, nomeFile_);
    } catch (const ErroreReport& e) {
        anteprima_ = Documento{};
        avvisi.push_back(std::to_string(e.number()) + "; " + e.what());
    }
    std::string testo;
    for (const auto& a : avvisi) testo += (testo.empty() ? "" : "\n") + a;
    lblAvvisi->setText(QString::fromStdString(testo));
    lblAvvisi->setVisible(!testo.empty());
    mostraAnteprima();
}

void frmEditorReport::mostraAnteprima() {
    if (!pittoreAnteprima_ || pittoreAnteprima_->pagine() == 0) {
        imgAnteprima->clear();
        imgAnteprima->resize(0, 0);
        return;
    }
    // The page as wide as the room beside the drawing.
    const int spazio = scrAnteprima->viewport()->width() - 8 - scrAnteprima->verticalScrollBar()->sizeHint().width();
    const double zoom = std::clamp(spazio / (anteprima_.pagina.larghezza / 25.4 * 96), 0.2, 2.0);
    const double dpr = devicePixelRatioF();
    QPixmap pixmap = QPixmap::fromImage(pittoreAnteprima_->immagine(0, zoom * dpr));
    pixmap.setDevicePixelRatio(dpr);
    imgAnteprima->setPixmap(pixmap);
    imgAnteprima->resize(pixmap.deviceIndependentSize().toSize());
}

void frmEditorReport::showEvent(QShowEvent* evento) {
    QDialog::showEvent(evento);
    if (zoomScelto_) return;
    // The largest zoom at which the page's width fits beside the panel.
    zoomScelto_ = true;
    const double spazio = scrTela->viewport()->width() - 4 - scrTela->verticalScrollBar()->sizeHint().width();
    const double pagina = ed_.modello().pagina.larghezza / 25.4 * 96;
    int scelto = 0;
    for (int i = 0; i < cbZoom->count(); ++i)
        if (cbZoom->itemData(i).toDouble() * pagina <= spazio) scelto = i;
    cbZoom->setCurrentIndex(scelto);
    Tela->ImpostaZoom(cbZoom->itemData(scelto).toDouble());
}

bool frmEditorReport::eventFilter(QObject* oggetto, QEvent* evento) {
    if (oggetto == scrAnteprima->viewport() && evento->type() == QEvent::Resize) mostraAnteprima();
    return QDialog::eventFilter(oggetto, evento);
}

void frmEditorReport::aggiungi(TipoElemento tipo, const std::string& campo) {
    if (!ed_.Aggiungi(tipo, campo)) return;
    Aggiorna();
    Tela->setFocus();
}

// A picture is one of the layouts' pictures folder, which the file names by its name alone.
void frmEditorReport::AggiungiImmagine() {
    const auto scelto = core::dialogs().chooseFile("Immagine", "Immagini (*.png *.jpg *.jpeg *.bmp *.gif)", false,
                                                   cartellaImmagini_ + "/");
    if (!scelto || scelto->empty()) return;
    const fs::path file(*scelto);
    std::error_code ec;
    if (!fs::equivalent(file.parent_path(), cartellaImmagini_, ec)) {
        core::MsgBox("L'immagine deve stare nella cartella delle immagini dei report (" + cartellaImmagini_ + ").",
                     core::vbExclamation);
        return;
    }
    aggiungi(TipoElemento::Immagine, file.filename().string());
}

void frmEditorReport::comando(bool (EditorModello::*azione)()) {
    if ((ed_.*azione)()) Aggiorna();
}

bool frmEditorReport::Salva() {
    try {
        report::Salva(ed_.modello(), file_);
    } catch (const ErroreReport& e) {
        mostraErrore(e);
        return false;
    }
    ed_.Salvato();
    Aggiorna();
    return true;
}

bool frmEditorReport::PuoChiudere() {
    if (!ed_.Modificato()) return true;
    const int risposta = core::MsgBox("Il report " + nomeFile_ + " è stato modificato. Salvare le modifiche?",
                                      core::vbYesNoCancel + core::vbQuestion);
    if (risposta == core::vbYes) return Salva();
    return risposta == core::vbNo;
}

void frmEditorReport::reject() {
    // What is being typed in the panel counts as set.
    if (QWidget* w = focusWidget()) w->clearFocus();
    if (PuoChiudere()) QDialog::reject();
}

}  // namespace ui::report
