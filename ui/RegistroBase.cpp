#include "ui/RegistroBase.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <cctype>

#include "core/diritti.h"
#include "core/impostazioni.h"
#include "core/record.h"
#include "core/session.h"
#include "ui/EditorBase.h"
#include "core/varie.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VBars.h"

namespace {

bool chiaveLingua(const std::string& s) {
    if (s.size() < 2 || s[0] != 's') return false;
    for (size_t i = 1; i < s.size(); ++i)
        if (!std::isdigit(static_cast<unsigned char>(s[i]))) return false;
    return true;
}

QString Q(const std::string& s) { return QString::fromStdString(s); }

}  // namespace

std::string Didascalia(const std::string& chiaveOTesto) {
    return chiaveLingua(chiaveOTesto) ? core::Testo(chiaveOTesto) : chiaveOTesto;
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
      btnChiudi(ui::comando("btnChiudi", Q(core::Testo("s112")), this)) {
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
    connect(new QShortcut(Qt::Key_F3, this), &QShortcut::activated, this, [this] {
        txtCerca->setFocus();
        txtCerca->selectAll();
    });
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

ui::VBars* RegistroBase::aggiungiPannello() {
    if (!VisCampi) {
        VisCampi = new ui::VBars(this);
        VisCampi->setObjectName("VisCampi");
        centro_->addWidget(VisCampi);
        Grid->aggiungiSeguace(VisCampi);
        resize(width() + VisCampi->minimumWidth() + ui::Spaziatura, height());
    }
    return VisCampi;
}

QPushButton* RegistroBase::aggiungiComando(const char* nome, const QString& testo) {
    QPushButton* b = ui::comando(nome, testo, this);
    comandi_->insertWidget(comandi_->indexOf(btnChiudi) - 1, b);
    return b;
}

void RegistroBase::setDatabase(store::DatabasePtr db) {
    db_ = std::move(db);
    Grid->setDatabase(db_);
}

store::DatabasePtr RegistroBase::database() const { return db_ ? db_ : core::session().dbArchivio; }

void RegistroBase::carica(Definizione d) {
    def_ = std::move(d);
    setWindowTitle(Q(def_.titolo));
    Grid->setSorgente(def_.sorgente);
    Grid->setOrdinamento(def_.ordinamento, def_.direzione);
    Grid->pulisciColonne();
    for (const auto& c : def_.colonne) Grid->aggiungiColonna(c);
    cbCerca->clear();
    for (const auto& r : def_.ricerca) cbCerca->addItem(Q(Didascalia(r.chiave)));
    cbCerca->setCurrentIndex(cbCerca->count() > 0 ? 0 : -1);
    ui::protetto([this] { Grid->Aggiorna(); });
}

std::string RegistroBase::IstruzioneRicerca(const std::string& sorgente, const std::string& campo,
                                            const std::string& testo) {
    return sorgente + " where " + campo + " Like '*" + core::Apici(testo) + "*'";
}

void RegistroBase::Cerca() {
    ui::protetto([this] {
        const std::string scelta = cbCerca->currentText().toStdString();
        for (const auto& r : def_.ricerca) {
            if (Didascalia(r.chiave) != scelta) continue;
            Grid->setSorgente(IstruzioneRicerca(def_.sorgente, r.campo, txtCerca->text().toStdString()));
            Grid->Aggiorna();
            return;
        }
    });
}

bool RegistroBase::consentito() const {
    if (def_.dirittoModifica <= 0 || core::HaPrivilegio(def_.dirittoModifica)) return true;
    core::MsgBox(core::session().MsgNegato, core::vbExclamation);
    return false;
}

void RegistroBase::apriEditor(bool nuovo) {
    ui::protetto([this, nuovo] {
        std::unique_ptr<EditorBase> editor = creaEditor();
        editor->EditaGriglia(Grid, nuovo);
        editor->Mostra();
        if (!nuovo) Grid->Aggiorna();
    });
    Grid->setFocus();
}

void RegistroBase::Nuovo() {
    if (consentito()) apriEditor(true);
}

void RegistroBase::Modifica() {
    if (Grid->haRigaCorrente()) apriEditor(false);
}

bool RegistroBase::movimentato(long id) {
    if (!def_.guardia) return false;
    std::vector<core::VoceTabella> voci;
    for (const auto& t : def_.guardia->tabelle) voci.push_back({t.tabella, Didascalia(t.descrizione)});
    std::string messaggio;
    if (!core::RecordMovimentato(id, def_.guardia->campo, voci, messaggio)) return false;
    core::MsgBox(messaggio, core::vbExclamation);
    return true;
}

void RegistroBase::Elimina() {
    if (!Grid->haRigaCorrente() || !consentito()) return;
    ui::protetto([this] {
        if (movimentato(Grid->idCorrente())) return;
        std::string domanda = def_.domandaElimina ? def_.domandaElimina(*Grid->Recordset()) : std::string();
        if (core::MsgBox(domanda, core::vbYesNo | core::vbQuestion) == core::vbYes) Grid->EliminaRiga();
        if (def_.ricaricaDopoElimina) Grid->Aggiorna();
    });
    Grid->setFocus();
}
