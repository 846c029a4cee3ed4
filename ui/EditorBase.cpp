#include "ui/EditorBase.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/impostazioni.h"
#include "core/record.h"
#include "core/session.h"
#include "core/varie.h"
#include "store/convert.h"
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

}  // namespace

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

bool EditorBase::richiesto(QLineEdit* casella, const std::string& chiave) {
    if (!core::Trim(casella->text().toStdString()).empty()) return true;
    core::MsgBox(core::Testo(chiave), core::vbExclamation);
    casella->setFocus();
    return false;
}

void EditorBase::setDatabase(store::DatabasePtr db) { db_ = std::move(db); }
store::DatabasePtr EditorBase::database() const { return db_ ? db_ : core::session().dbArchivio; }

void EditorBase::impostaTitolo() {
    setWindowTitle(Q(titolo_ + " - " + core::Testo(Nuovo ? "s109" : "s110")));
}

void EditorBase::EditaGriglia(ui::VetraGrid* grid, bool nuovo) {
    Grid = grid;
    Nuovo = nuovo;
    Modo = 0;
    impostaTitolo();
    Carica();
}

void EditorBase::EditaRecordset(long id, bool nuovo) {
    Grid = nullptr;
    ID = id;
    Nuovo = nuovo;
    Modo = 1;
    impostaTitolo();
    Carica();
}

std::unique_ptr<store::Recordset> EditorBase::apriRecord() {
    store::DatabasePtr db = database();
    if (!db) throw store::JetError(3420, "Nessun archivio aperto");
    return db->OpenRecordset("Select * from " + tabella_ + " where ID=" + std::to_string(ID));
}

void EditorBase::Carica() {
    ui::protetto([this] {
        if (Modo == 0) {
            store::Recordset* rs = Grid ? Grid->Recordset() : nullptr;
            if (rs && !Nuovo && Grid->haRigaCorrente()) ui::caricaControlli(this, *rs);
            else if (rs) ui::preparaControlli(this, *rs);
        } else {
            auto rs = apriRecord();
            if (!Nuovo && !rs->Eof()) ui::caricaControlli(this, *rs);
            else ui::preparaControlli(this, *rs);
        }
    });
    ui::protetto([this] { DopoCarica(); });
}

bool EditorBase::Mostra() {
    // Only btnConferma confirms: a script that drives the screen reports through it too.
    ui::eseguiModale(this, [this] { return exec() == QDialog::Accepted; });
    return confermato_;
}

void EditorBase::Conferma() {
    bool valido = false;
    if (!ui::protetto([&] { valido = Valida(); }) || !valido) return;
    if (!ui::protetto([this] { Salva(); })) return;
    confermato_ = true;
    accept();
}

void EditorBase::Annulla() { reject(); }

void EditorBase::Salva() {
    if (Modo == 0) salvaSuGriglia();
    else salvaSuRecordset();
}

void EditorBase::salvaSuGriglia() {
    if (!Grid) return;
    try {
        if (Nuovo) Grid->NuovaRiga();
        else Grid->ModificaRiga();
        store::Recordset& rs = *Grid->Recordset();
        ui::salvaControlli(this, rs);
        PrimaDiAggiornare(rs);
        Grid->SalvaRiga();
    } catch (...) {
        // A failed write must not leave the list's recordset half in AddNew or Edit.
        Grid->AnnullaRiga();
        throw;
    }
}

void EditorBase::salvaSuRecordset() {
    auto rs = apriRecord();
    if (Nuovo) {
        rs->AddNew();
    } else {
        if (rs->Eof()) throw store::JetError(3021, "Nessun record corrente.");
        rs->Edit();
    }
    ui::salvaControlli(this, *rs);
    PrimaDiAggiornare(*rs);
    if (Nuovo) core::NuovoID(*rs, database());
    rs->Update();
    rs->setBookmark(rs->LastModified());
    core::session().IDRecordEdit = store::CLng(rs->get("ID"));
}

QWidget* EditorBase::conImmagini(ui::VetraCombo* combo, std::function<std::unique_ptr<EditorBase>()> editor) {
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
    auto apri = [combo, editor](bool nuovo) {
        ui::protetto([&] {
            core::Session& s = core::session();
            s.IDRecordEdit = 0;
            std::unique_ptr<EditorBase> e = editor();
            store::Value v = combo->valore();
            e->EditaRecordset(nuovo || v.isNull() ? 0 : store::CLng(v), nuovo);
            e->Mostra();
            combo->Aggiorna();
            if (s.IDRecordEdit > 0) combo->setValore(store::Value::Long(static_cast<std::int32_t>(s.IDRecordEdit)));
        });
    };
    connect(imgNew, &QToolButton::clicked, this, [apri] { apri(true); });
    connect(imgEdit, &QToolButton::clicked, this, [combo, apri] {
        store::Value v = combo->valore();
        if (v.isNull() || store::CDbl(v) == 0) {
            core::MsgBox(core::Testo("s203"), core::vbExclamation);
            return;
        }
        apri(false);
    });
    return riga;
}
