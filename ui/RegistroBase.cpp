#include "ui/RegistroBase.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "core/archivio_sql.h"
#include "core/diritti.h"
#include "core/esporta_excel.h"
#include "core/impostazioni.h"
#include "core/registro_schermi.h"
#include "core/stampa.h"
#include "core/varie.h"
#include "ui/Acceleratori.h"
#include "ui/Dettaglio.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VBars.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

std::map<std::string, FabbricaRegistro>& registri() {
    static std::map<std::string, FabbricaRegistro> r;
    return r;
}

}  // namespace

const std::map<std::string, FabbricaRegistro>& RegistriNoti() { return registri(); }

void registraRegistro(const std::string& nome, FabbricaRegistro fabbrica) {
    registri()[nome] = fabbrica;
    core::registraSchermo(nome, [fabbrica] {
        std::unique_ptr<RegistroBase> r = fabbrica();
        if (!ui::consentito(r->definizione().diritti.vedere)) return false;
        r->setAttribute(Qt::WA_DeleteOnClose);
        r.release()->show();
        return true;
    });
}

RegistroBase::RegistroBase(const char* nome, QWidget* parent)
    : QWidget(parent, Qt::Window),
      Grid(new ui::VetraGrid(this)),
      cbCerca(new QComboBox(this)),
      txtCerca(new QLineEdit(this)),
      btnCerca(ui::comando("btnCerca", Q(core::Testo("s113")), this)),
      btnNuovo(ui::comando("btnNuovo", Q(core::Testo("s109")), this)),
      btnModifica(ui::comando("btnModifica", Q(core::Testo("s110")), this)),
      btnElimina(ui::comando("btnElimina", Q(core::Testo("s111")), this)),
      btnChiudi(ui::comando("btnChiudi", Q(core::Testo("s112")), this)),
      elenco_(Grid, *this, this) {
    setObjectName(nome);
    Grid->setObjectName("Grid");
    cbCerca->setObjectName("cbCerca");
    txtCerca->setObjectName("txtCerca");
    txtCerca->setClearButtonEnabled(true);
    costruisciVista();
    connect(btnCerca, &QPushButton::clicked, this, &RegistroBase::Cerca);
    connect(txtCerca, &QLineEdit::returnPressed, this, &RegistroBase::Cerca);
    connect(btnNuovo, &QPushButton::clicked, this, &RegistroBase::Nuovo);
    connect(btnModifica, &QPushButton::clicked, this, &RegistroBase::Modifica);
    connect(btnElimina, &QPushButton::clicked, this, &RegistroBase::Elimina);
    connect(btnChiudi, &QPushButton::clicked, this, &QWidget::close);
    connect(Grid, &ui::VetraGrid::modificaRichiesta, this, &RegistroBase::Modifica);
    connect(Grid, &ui::VetraGrid::eliminaRichiesta, this, &RegistroBase::Elimina);
    connect(Grid, &ui::VetraGrid::rigaCambiata, this, &RegistroBase::rigaCambiata);
    connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, this, [this] { ui::protetto([this] { Ricerca(); }); });
    Grid->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(Grid, &QWidget::customContextMenuRequested, this, &RegistroBase::menuComandi);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
}

void RegistroBase::costruisciVista() {
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);
    auto* ricerca = new QHBoxLayout;
    ricerca->setSpacing(ui::Spaziatura);
    auto* lblCerca = new QLabel(Q(core::Testo("s77")), this);
    lblCerca->setObjectName("lblCerca");
    lblCerca->setBuddy(txtCerca);
    ricerca->addWidget(lblCerca);
    ricerca->addWidget(cbCerca);
    ricerca->addWidget(txtCerca, 1);
    ricerca->addWidget(btnCerca);
    colonna->addLayout(ricerca);
    centro_ = new QHBoxLayout;
    centro_->setSpacing(ui::Spaziatura);
    centro_->addWidget(Grid, 1);
    colonna->addLayout(centro_, 1);
    comandi_ = new QHBoxLayout;
    comandi_->setSpacing(ui::Spaziatura);
    for (QPushButton* b : {btnNuovo, btnModifica, btnElimina}) comandi_->addWidget(b);
    comandi_->addStretch(1);
    comandi_->addWidget(btnChiudi);
    colonna->addLayout(comandi_);
    resize(720, 520);
}

ui::VBars* RegistroBase::aggiungiPannello(int diritto) {
    if (!VisCampi) {
        VisCampi = new ui::VBars(this);
        VisCampi->setObjectName("VisCampi");
        centro_->addWidget(VisCampi);
        dirittoPannello_ = diritto;
        Grid->aggiungiSeguace(VisCampi);
        resize(width() + VisCampi->minimumWidth() + ui::Spaziatura, height());
    }
    return VisCampi;
}

ui::Dettaglio* RegistroBase::aggiungiDettaglio(const ui::DefinizioneDettaglio& definizione) {
    auto padre = [this](bool) -> std::optional<long> { return Grid->haRigaCorrente() ? Grid->idCorrente() : 0; };
    auto* d = new ui::Dettaglio(definizione, padre, [this] { ui::protetto([this] { DopoRigheCambiate(); }); }, this);
    dettagli_.push_back(d);
    return d;
}

QPushButton* RegistroBase::aggiungiComando(const char* nome, const QString& testo, int diritto,
                                           std::function<void()> azione) {
    QPushButton* b = ui::comando(nome, testo, this);
    comandi_->insertWidget(comandi_->indexOf(btnChiudi) - 1, b);
    connect(b, &QPushButton::clicked, this, [diritto, azione = std::move(azione)] {
        if (ui::consentito(diritto)) ui::protetto(azione);
    });
    return b;
}

void RegistroBase::carica(Definizione d) {
    def_ = std::move(d);
    if (!def_.sezioneStampa.empty())
        aggiungiComando("btnStampa", "Stampa", def_.diritti.stampa, [this] { Stampa(); });
    aggiungiComando("btnEsportaExcel", "Esporta in Excel", def_.diritti.vedere, [this] { EsportaExcel(); })
        ->setIcon(ui::icona("x-office-spreadsheet"));
    setWindowTitle(Q(core::Didascalia(def_.titolo)));
    elenco_.imposta(def_);
    cbCerca->clear();
    for (const std::string& campo : def_.ricerca)
        cbCerca->addItem(Q(def_.campi ? core::Didascalia((*def_.campi)[campo].didascalia) : campo), Q(campo));
    cbCerca->setCurrentIndex(cbCerca->count() > 0 ? 0 : -1);
    if (VisCampi) VisCampi->setVisible(dirittoPannello_ == 0 || core::HaPrivilegio(dirittoPannello_));
    sorgenteCorrente_ = def_.sorgente;
    ui::protetto([this] { elenco_.Carica(sorgenteCorrente_); });
    rigaCambiata();
}

std::string RegistroBase::IstruzioneRicerca(const std::string& sorgente, const std::string& campo,
                                            const std::string& testo) {
    return core::AggiungiCondizione(sorgente, campo + " Like '*" + core::Apici(testo) + "*'");
}

void RegistroBase::Cerca() {
    if (cbCerca->currentIndex() < 0) return;
    const std::string campo = cbCerca->currentData().toString().toStdString();
    sorgenteCorrente_ = IstruzioneRicerca(def_.sorgente, campo, txtCerca->text().toStdString());
    ui::protetto([this] { elenco_.Carica(sorgenteCorrente_); });
}

void RegistroBase::Aggiorna() {
    ui::protetto([this] { elenco_.Carica(sorgenteCorrente_); });
}

void RegistroBase::rigaCambiata() {
    const long id = Grid->haRigaCorrente() ? Grid->idCorrente() : 0;
    for (ui::Dettaglio* d : dettagli_) ui::protetto([&] { d->Carica(id); });
    ui::protetto([this] { DopoCambioRiga(); });
}

void RegistroBase::Stampa() {
    core::RichiestaStampa r;
    r.sezione = def_.sezioneStampa;
    const std::string istruzione = Grid->istruzione();
    r.subReports.Add("Elenco", def_.elencoStampa ? def_.elencoStampa(istruzione) : istruzione);
    core::Stampa(r);
}

void RegistroBase::EsportaExcel() { core::EsportaExcel(Grid->istruzione(), {}, Grid->database()); }

void RegistroBase::Ricerca() {
    txtCerca->setFocus();
    txtCerca->selectAll();
}

void RegistroBase::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    if (acceleratori_) return;
    acceleratori_ = true;
    ui::assegnaAcceleratori(this);
}

void RegistroBase::menuComandi(const QPoint& dove) {
    QMenu menu(this);
    riempiMenuComandi(menu);
    menu.exec(Grid->viewport()->mapToGlobal(dove));
}

void RegistroBase::riempiMenuComandi(QMenu& menu) {
    for (int i = 0; i < comandi_->count(); ++i) {
        auto* b = qobject_cast<QPushButton*>(comandi_->itemAt(i)->widget());
        if (!b || b == btnChiudi || b->isHidden()) continue;
        auto voce = def_.vociMenu.find(b->objectName().toStdString());
        QString testo = voce != def_.vociMenu.end() ? Q(core::Didascalia(voce->second)) : b->text();
        QAction* a = menu.addAction(testo.remove('&'), b, &QPushButton::click);
        a->setEnabled(b->isEnabled());
    }
}

std::optional<Apertura> RegistroBase::aperturaPer(ui::Elenco&, Modalita modalita) {
    return Apertura{modalita, 0, Grid};
}
