#include "ui/EditorBase.h"

#include <map>

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/archivio_sql.h"
#include "core/impostazioni.h"
#include "core/record.h"
#include "core/varie.h"
#include "store/errors.h"
#include "store/convert.h"
#include "ui/Acceleratori.h"
#include "ui/Dettaglio.h"
#include "ui/Dialoghi.h"
#include "ui/Legami.h"
#include "ui/Stile.h"
#include "ui/VetraCombo.h"
#include "ui/VetraGrid.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

// imgNew, then imgNew1, imgNew2... for the images of a second and third combo.
QString nomeLibero(const QWidget* radice, const QString& base) {
    QString nome = base;
    for (int i = 1; radice->findChild<QWidget*>(nome); ++i) nome = base + QString::number(i);
    return nome;
}

std::map<std::string, FabbricaEditor>& fabbricheEditor() {
    static std::map<std::string, FabbricaEditor> f;
    return f;
}

}  // namespace

void registraFabbricaEditor(const std::string& nome, FabbricaEditor fabbrica) {
    fabbricheEditor()[nome] = std::move(fabbrica);
}

FabbricaEditor FabbricaEditorDi(const std::string& nome) {
    return [nome](QWidget* parent) -> std::unique_ptr<EditorBase> {
        auto it = fabbricheEditor().find(nome);
        if (it == fabbricheEditor().end()) store::raise(3265, "Schermata '" + nome + "' non registrata.");
        return it->second(parent);
    };
}

EditorBase::EditorBase(const char* nome, std::string tabella, std::string titolo, QWidget* parent)
    : QDialog(parent),
      btnConferma(ui::comando("btnConferma", "&Conferma", this)),
      btnAnnulla(ui::comando("btnAnnulla", "&Annulla", this)),
      tabella_(std::move(tabella)),
      titolo_(std::move(titolo)),
      campi_(new QFormLayout) {
    setObjectName(nome);
    setModal(true);
    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);
    campi_->setSpacing(ui::Spaziatura);
    campi_->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    colonna->addLayout(campi_);
    colonna->addStretch(1);
    auto* comandi = new QHBoxLayout;
    comandi->setSpacing(ui::Spaziatura);
    comandi->addStretch(1);
    comandi->addWidget(btnConferma);
    comandi->addWidget(btnAnnulla);
    colonna->addLayout(comandi);
    btnConferma->setDefault(true);
    connect(btnConferma, &QPushButton::clicked, this, &EditorBase::Conferma);
    connect(btnAnnulla, &QPushButton::clicked, this, &EditorBase::Annulla);
    setMinimumWidth(440);
    setWindowTitle(Q(titolo_));
}

void EditorBase::aggiungiCampo(const QString& etichetta, QWidget* controllo) { campi_->addRow(etichetta, controllo); }

void EditorBase::aggiungiCampo(const core::Campo& campo, QWidget* controllo) {
    controllo->setProperty("DataField", Q(campo.nome));
    aggiungiCampo(Q(core::Didascalia(campo.didascalia)), controllo);
}

bool EditorBase::richiesto(QLineEdit* casella, const std::string& chiave) {
    if (!core::Trim(casella->text().toStdString()).empty()) return true;
    core::MsgBox(core::Testo(chiave), core::vbExclamation);
    casella->setFocus();
    return false;
}

void EditorBase::setDatabase(store::DatabasePtr db) { db_ = std::move(db); }
store::DatabasePtr EditorBase::database() const { return db_ ? db_ : core::ArchivioAperto(); }

void EditorBase::impostaTitolo() { setWindowTitle(Q(titolo_ + " - " + core::Testo(nuovo() ? "s109" : "s110"))); }

std::optional<long> EditorBase::Edita(const Apertura& apertura) {
    Prepara(apertura);
    return Mostra();
}

void EditorBase::EditaGriglia(ui::VetraGrid* grid, bool nuovo) {
    Prepara({nuovo ? Modalita::Nuovo : Modalita::Modifica, 0, grid});
}

void EditorBase::EditaRecordset(long id, bool nuovo) { Prepara({nuovo ? Modalita::Nuovo : Modalita::Modifica, id}); }

void EditorBase::Prepara(const Apertura& apertura) {
    apertura_ = apertura;
    ui::VetraGrid* lista = apertura_.griglia;
    const bool dallaLista = lista && apertura_.modalita != Modalita::Nuovo && lista->haRigaCorrente();
    id_ = apertura_.modalita == Modalita::Nuovo ? 0 : dallaLista ? lista->idCorrente() : apertura_.id;
    salvato_.reset();
    impostaTitolo();
    Carica();
}

std::unique_ptr<store::Recordset> EditorBase::apriRecord(long id) {
    store::DatabasePtr db = database();
    if (!db) store::raise(3420, "Nessun archivio aperto");
    return db->OpenRecordset("Select * from " + tabella_ + " where ID=" + std::to_string(id));
}

void EditorBase::Carica() {
    ui::protetto([this] {
        ui::VetraGrid* lista = apertura_.griglia;
        const bool esistente = apertura_.modalita != Modalita::Nuovo;
        if (esistente && lista && lista->haRigaCorrente()) {
            ui::caricaControlli(this, *lista->Recordset());
            return;
        }
        auto rs = apriRecord(id_);
        if (esistente && !rs->Eof()) ui::caricaControlli(this, *rs);
        else ui::preparaControlli(this, *rs);
    });
    // A copy is a new record from the moment its values are loaded.
    if (apertura_.modalita == Modalita::Duplica) id_ = 0;
    caricaDettagli();
    ui::protetto([this] { DopoCarica(); });
}

ui::Dettaglio* EditorBase::aggiungiDettaglio(const ui::DefinizioneDettaglio& definizione) {
    auto padre = [this](bool perNuovaRiga) -> std::optional<long> {
        if (id_ != 0 || !perNuovaRiga) return id_;
        return SalvaSenzaChiudere();
    };
    auto* d = new ui::Dettaglio(definizione, padre, [this] { ui::protetto([this] { DopoRigheCambiate(); }); }, this);
    dettagli_.push_back(d);
    return d;
}

void EditorBase::caricaDettagli() {
    for (ui::Dettaglio* d : dettagli_) ui::protetto([&] { d->Carica(id_); });
}

std::optional<long> EditorBase::Mostra() {
    // Only btnConferma confirms: a script that drives the screen reports through it too.
    ui::assegnaAcceleratori(this);
    ui::eseguiModale(this, [this] { return exec() == QDialog::Accepted; });
    return salvato_;
}

std::optional<long> EditorBase::SalvaSenzaChiudere() {
    bool valido = false;
    if (!ui::protetto([&] { valido = Valida(); }) || !valido) return std::nullopt;
    std::optional<long> id;
    if (!ui::protetto([&] { id = Salva(); })) return std::nullopt;
    id_ = *id;
    salvato_ = id;
    ui::protetto([&] { DopoSalvato(*id); });
    // From now on the record exists: a later confirm changes it instead of adding another.
    apertura_.modalita = Modalita::Modifica;
    impostaTitolo();
    caricaDettagli();
    return id;
}

void EditorBase::Conferma() {
    if (!SalvaSenzaChiudere()) return;
    if (ui::VetraGrid* lista = apertura_.griglia) {
        ui::protetto([&] {
            lista->Aggiorna();
            lista->vaiAId(*salvato_);
        });
    }
    accept();
}

void EditorBase::Annulla() { reject(); }

// The one save: the record by its id (or the table's empty result for a new one), the bound
// controls, the fields of the screen's own, the id of a new record, the update.
long EditorBase::Salva() {
    auto rs = apriRecord(nuovo() ? 0 : id_);
    if (nuovo()) {
        rs->AddNew();
    } else {
        if (rs->Eof()) store::raise(3021, "Nessun record corrente.");
        rs->Edit();
    }
    ui::salvaControlli(this, *rs);
    if (nuovo() && !apertura_.campoPadre.empty())
        rs->set(apertura_.campoPadre, store::Value::Long(static_cast<std::int32_t>(apertura_.idPadre)));
    PrimaDiAggiornare(*rs);
    if (nuovo()) core::NuovoID(*rs, database());
    rs->Update();
    rs->setBookmark(rs->LastModified());
    return store::CLng(rs->get("ID"));
}

QWidget* EditorBase::conImmagini(ui::VetraCombo* combo, FabbricaEditor editor) {
    auto* riga = new QWidget(this);
    auto* l = new QHBoxLayout(riga);
    l->setContentsMargins(0, 0, 0, 0);
    l->setSpacing(2);
    combo->setParent(riga);
    l->addWidget(combo, 1);
    const QString nomeNew = nomeLibero(this, "imgNew");
    const QString nomeEdit = nomeLibero(this, "imgEdit");
    QToolButton* imgNew = ui::immagine("imgNew", Q(core::Testo("s109")), riga);
    imgNew->setObjectName(nomeNew);
    QToolButton* imgEdit = ui::immagine("imgEdit", Q(core::Testo("s110")), riga);
    imgEdit->setObjectName(nomeEdit);
    l->addWidget(imgNew);
    l->addWidget(imgEdit);
    auto apri = [this, combo, editor](Modalita modalita) {
        ui::protetto([&] {
            std::optional<long> salvato = editor(this)->Edita({modalita, ui::IdDi(combo->valore())});
            combo->Aggiorna();
            if (salvato) combo->setValore(store::Value::Long(static_cast<std::int32_t>(*salvato)));
        });
        combo->setFocus();
    };
    connect(imgNew, &QToolButton::clicked, this, [apri] { apri(Modalita::Nuovo); });
    connect(imgEdit, &QToolButton::clicked, this, [combo, apri] {
        if (ui::IdDi(combo->valore()) == 0) {
            core::MsgBox(core::Testo("s203"), core::vbExclamation);
            return;
        }
        apri(Modalita::Modifica);
    });
    return riga;
}
