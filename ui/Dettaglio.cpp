#include "ui/Dettaglio.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/diritti.h"
#include "core/impostazioni.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"

namespace ui {

namespace {
QString Q(const std::string& s) { return QString::fromStdString(s); }
}  // namespace

Dettaglio::Dettaglio(Definizione definizione, Padre padre, std::function<void()> dopoCambio, QWidget* parent)
    : QWidget(parent),
      def_(std::move(definizione)),
      padre_(std::move(padre)),
      dopoCambio_(std::move(dopoCambio)),
      griglia_(new VetraGrid(this)),
      elenco_(griglia_, *this, parent) {
    setObjectName(QString(def_.nome).replace("Grid", "fm"));
    griglia_->setObjectName(def_.nome);
    elenco_.imposta(def_);
    auto* colonna = new QVBoxLayout(this);
    colonna->setContentsMargins(0, 0, 0, 0);
    colonna->setSpacing(Spaziatura);
    colonna->addWidget(griglia_, 1);
    if (!def_.editor) return;
    auto* comandi = new QHBoxLayout;
    comandi->setSpacing(Spaziatura);
    btnNuovo = comando(def_.nomeNuovo, Q(core::Testo("s109")), this);
    btnModifica = comando(def_.nomeModifica, Q(core::Testo("s110")), this);
    btnElimina = comando(def_.nomeElimina, Q(core::Testo("s111")), this);
    for (QPushButton* b : {btnNuovo, btnModifica, btnElimina}) comandi->addWidget(b);
    comandi->addStretch(1);
    colonna->addLayout(comandi);
    connect(btnNuovo, &QPushButton::clicked, this, [this] { elenco_.Nuovo(); });
    connect(btnModifica, &QPushButton::clicked, this, [this] { elenco_.Modifica(); });
    connect(btnElimina, &QPushButton::clicked, this, [this] { elenco_.Elimina(); });
    connect(griglia_, &VetraGrid::modificaRichiesta, this, [this] { elenco_.Modifica(); });
    connect(griglia_, &VetraGrid::eliminaRichiesta, this, [this] { elenco_.Elimina(); });
}

void Dettaglio::Carica(long idPadre) {
    idPadre_ = idPadre;
    daLeggere_ = true;
    if (isVisibleTo(window())) leggi();
}

void Dettaglio::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    if (daLeggere_) protetto([this] { leggi(); });
}

void Dettaglio::leggi() {
    daLeggere_ = false;
    const long idPadre = idPadre_;
    // Without the right the list shows nothing, silently: the refusal is for commands, not for looking.
    const bool visibile = idPadre != 0 && (def_.diritti.vedere == 0 || core::HaPrivilegio(def_.diritti.vedere));
    elenco_.Carica(visibile ? def_.righe(idPadre) : def_.vuota);
}

std::optional<Apertura> Dettaglio::aperturaPer(Elenco&, Modalita modalita) {
    std::optional<long> padre = padre_(modalita == Modalita::Nuovo);
    if (!padre || *padre == 0) return std::nullopt;
    if (def_.primaDelComando && !def_.primaDelComando(*padre)) return std::nullopt;
    return Apertura{modalita, 0, griglia_, def_.campoPadre, *padre};
}

bool Dettaglio::primaDiEliminare(Elenco&, long) {
    return !def_.primaDelComando || !def_.chiediAncheEliminando || def_.primaDelComando(idPadre_);
}

}  // namespace ui
