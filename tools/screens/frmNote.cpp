#include "tools/screens/frmNote.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/diritti.h"
#include "core/dialogs.h"
#include "core/impostazioni.h"
#include "core/session.h"
#include "core/varie.h"
#include "store/convert.h"
#include "store/errors.h"
#include "tools/note.h"
#include "ui/Dettaglio.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"
#include "ui/VText.h"
#include "ui/VetraGrid.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

// The archive and the scratch file; error 3420 when either is not open.
store::Database& Aperto(const store::DatabasePtr& db) {
    if (!db) store::raise(3420, "Database non aperto");
    return *db;
}
store::Database& Archivio() { return Aperto(core::session().dbArchivio); }
store::Database& Temp() { return Aperto(core::session().dbTemp); }

constexpr const char* kSenzaCategoria = "Creare o selezionare una categoria!";
constexpr const char* kSenzaCampi = "La categoria non ha campi: aggiungerli con Modifica categoria.";

const core::TabellaCampi& CampiDiUnaCategoria() {
    static const core::TabellaCampi t{{"NomeCampo", "s139", 3000},
                                      {"Dimensione", "s138", 1200, "", core::Allineamento::Destra}};
    return t;
}

// A column as wide as its field allows, within what a screen can show.
int larghezzaColonna(long dimensione) {
    if (dimensione <= 0) return 4500;
    const long twips = dimensione * 120;
    return static_cast<int>(twips < 1200 ? 1200 : twips > 4500 ? 4500 : twips);
}

}  // namespace

// ---- frmNote -------------------------------------------------------------------------------------

frmNote::frmNote(QWidget* parent)
    : RegistroBase(Nome, parent),
      cbCat(new QComboBox(this)),
      imgNew(ui::immagine("imgNew", Q(core::Testo("s253")), this)),
      imgEdit(ui::immagine("imgEdit", Q(core::Testo("s254")), this)),
      Image1(ui::immagine("btnElimina", Q(core::Testo("s111")), this)) {
    cbCat->setObjectName("cbCat");
    Image1->setObjectName("Image1");
    cbCat->setMinimumWidth(260);
    auto* riga = new QHBoxLayout;
    riga->setSpacing(ui::Spaziatura);
    auto* lblCat = new QLabel(Q(core::Testo("s141")), this);
    lblCat->setBuddy(cbCat);
    riga->addWidget(lblCat);
    riga->addWidget(cbCat, 1);
    riga->addWidget(imgNew);
    riga->addWidget(imgEdit);
    riga->addWidget(Image1);
    if (auto* colonna = qobject_cast<QVBoxLayout*>(layout())) colonna->insertLayout(0, riga);

    // The category commands from the keyboard too.
    const std::pair<QToolButton*, const char*> tasti[] = {
        {imgNew, "Ctrl+Shift+N"}, {imgEdit, "Ctrl+Shift+M"}, {Image1, "Ctrl+Shift+E"}};
    for (const auto& [b, tasto] : tasti) {
        b->setShortcut(QKeySequence(tasto));
        b->setToolTip(b->toolTip() + " (" + QKeySequence(tasto).toString(QKeySequence::NativeText) + ")");
    }
    connect(imgNew, &QToolButton::clicked, this, [this] { NuovaCategoria(); });
    connect(imgEdit, &QToolButton::clicked, this, [this] { ModificaCategoria(); });
    connect(Image1, &QToolButton::clicked, this, [this] { EliminaCategoria(); });
    connect(cbCat, qOverload<int>(&QComboBox::activated), this, [this] { MostraCategoria(); });
    resize(820, 540);
    CaricaCategorie();
}

long frmNote::categoria() const { return cbCat->currentIndex() < 0 ? 0 : cbCat->currentData().toInt(); }

void frmNote::CaricaCategorie(long scegli) {
    cbCat->clear();
    ui::protetto([&] {
        auto rs = Archivio().OpenRecordset("Select * from [Note] order by Predefinita,Descrizione");
        for (; !rs->Eof(); rs->MoveNext())
            cbCat->addItem(Q(store::ConcatText(rs->get("Descrizione"))), store::CLng(rs->get("ID")));
    });
    const int scelta = scegli ? cbCat->findData(static_cast<int>(scegli)) : -1;
    cbCat->setCurrentIndex(scelta >= 0 ? scelta : cbCat->count() > 0 ? 0 : -1);
    MostraCategoria();
}

void frmNote::MostraCategoria() {
    Definizione d;
    d.titolo = "s20";
    d.sorgente = "Select * from [Note]";
    d.ordinamento = "ID";
    d.database = core::session().dbTemp;
    d.diritti = {core::NoteUtente, core::NoteUtente, core::NoteUtente, core::NoteUtente};
    d.editor = [this](QWidget* parent) {
        return std::make_unique<frmNoteDettagliEdita>(categoria(), parent, [this](long r) { recordSalvato_ = r; });
    };
    std::vector<tools::CampoNota> campi;
    // The list lets go of the scratch table before it is made again.
    Grid->setSorgente("Select * from [Note] where ID<0");
    ui::protetto([&] { Grid->Aggiorna(); });
    const bool fatta = ui::protetto([&] { campi = tools::PreparaVistaNote(Archivio(), Temp(), categoria()); });
    if (!fatta) campi.clear();
    for (const tools::CampoNota& c : campi) d.ricerca.push_back("[" + c.nome + "]");
    carica(d);
    for (std::size_t i = 0; i < campi.size(); ++i) {
        Grid->aggiungiColonna({campi[i].nome, campi[i].nome, larghezzaColonna(campi[i].dimensione)});
        cbCerca->setItemText(static_cast<int>(i), Q(campi[i].nome));
    }
    Aggiorna();
}

std::optional<Apertura> frmNote::aperturaPer(ui::Elenco&, Modalita modalita) {
    if (categoria() == 0) {
        core::MsgBox(kSenzaCategoria, core::vbExclamation);
        return std::nullopt;
    }
    recordSalvato_ = 0;
    return Apertura{modalita, 0, Grid};
}

void frmNote::DopoSalvato(long) {
    if (recordSalvato_ != 0) Grid->vaiAId(recordSalvato_);
}

// The record's values go first, then its row of the view.
bool frmNote::PrimaDiEliminare(long id) {
    if (core::MsgBox(core::Testo("s252"), core::vbYesNo | core::vbQuestion) != core::vbYes) return false;
    tools::EliminaScheda(Archivio(), id);
    return true;
}

void frmNote::NuovaCategoria() {
    if (!ui::consentito(core::NoteUtente)) return;
    frmNoteEdita e(this);
    std::optional<long> id = e.Edita({Modalita::Nuovo});
    CaricaCategorie(id ? *id : categoria());
}

void frmNote::ModificaCategoria() {
    if (!ui::consentito(core::NoteUtente)) return;
    if (categoria() == 0) {
        core::MsgBox(core::Testo("s260"), core::vbExclamation);
        return;
    }
    const long cat = categoria();
    frmNoteEdita e(this);
    e.Edita({Modalita::Modifica, cat});
    // Fields may have come or gone even when the category itself was not confirmed.
    CaricaCategorie(cat);
}

void frmNote::EliminaCategoria() {
    if (!ui::consentito(core::NoteUtente)) return;
    if (categoria() == 0) {
        core::MsgBox(core::Testo("s260"), core::vbExclamation);
        return;
    }
    if (core::MsgBox(core::Testo("s255"), core::vbYesNo | core::vbQuestion) != core::vbYes) return;
    if (core::MsgBox(core::Testo("s256"), core::vbYesNo | core::vbQuestion) != core::vbYes) return;
    ui::protetto([&] { tools::EliminaCategoria(Archivio(), categoria()); });
    CaricaCategorie();
}

// ---- frmNoteEdita --------------------------------------------------------------------------------

frmNoteEdita::frmNoteEdita(QWidget* parent)
    : EditorBase(Nome, "[Note]", core::Testo("s141"), parent),
      VText1(new ui::VText(this)),
      chkPredefinita(new QCheckBox(this)) {
    VText1->setObjectName("VText1");
    VText1->setDataField("Descrizione");
    chkPredefinita->setObjectName("chkPredefinita");
    chkPredefinita->setProperty("DataField", "Predefinita");
    aggiungiCampo(Q(core::Testo("s77")), VText1);
    aggiungiCampo("Predefinita", chkPredefinita);

    ui::DefinizioneDettaglio d;
    d.nome = "GridCampi";
    d.righe = [](long id) { return "Select * from NoteCampi where Note=" + std::to_string(id); };
    d.vuota = "Select * from NoteCampi where ID<0";
    d.campoPadre = "Note";
    d.ordinamento = "ID";
    d.campi = &CampiDiUnaCategoria();
    d.colonne = {"NomeCampo", "Dimensione"};
    d.diritti = {core::NoteUtente, core::NoteUtente, core::NoteUtente, core::NoteUtente};
    d.editor = [](QWidget* parent) { return std::make_unique<frmCampiEdita>(parent); };
    d.domandaElimina = [this](store::Recordset& rs) {
        campoInEliminazione_ = store::CLng(rs.get("ID"));
        return core::Testo("s270");
    };
    GridCampi = aggiungiDettaglio(d);
    GridCampi->setMinimumHeight(200);
    campi()->addRow(GridCampi);
}

bool frmNoteEdita::Valida() { return richiesto(VText1, "s140"); }

// One default category: ticking this one unticks the others first.
void frmNoteEdita::PrimaDiAggiornare(store::Recordset&) {
    if (chkPredefinita->isChecked()) database()->Execute("Update [Note] set Predefinita=False");
}

// A field deleted from the list takes its values with it.
void frmNoteEdita::DopoRigheCambiate() {
    if (campoInEliminazione_ == 0) return;
    const long campo = campoInEliminazione_;
    campoInEliminazione_ = 0;
    if (database()->OpenRecordset("Select ID from NoteCampi where ID=" + std::to_string(campo))->Eof())
        tools::EliminaCampo(*database(), campo);
}

// ---- frmCampiEdita -------------------------------------------------------------------------------

frmCampiEdita::frmCampiEdita(QWidget* parent)
    : EditorBase(Nome, "NoteCampi", core::Testo("s139"), parent),
      VText1(new ui::VText(this)),
      VText2(new ui::VText(this)) {
    VText1->setObjectName("VText1");
    VText2->setObjectName("VText2");
    VText2->setNumerico(true);
    VText2->setPredefinito("0");
    VText2->setMaximumWidth(100);
    VText2->setToolTip("Se zero corrisponde a nessun limite di lunghezza");
    aggiungiCampo(CampiDiUnaCategoria()["NomeCampo"], VText1);
    aggiungiCampo(CampiDiUnaCategoria()["Dimensione"], VText2);
    auto* nota = new QLabel("Se zero corrisponde a nessun limite di lunghezza", this);
    nota->setEnabled(false);
    aggiungiCampo("", nota);
}

bool frmCampiEdita::Valida() {
    long categoria = apertura().idPadre;
    if (categoria == 0 && id() != 0) {
        auto rs = database()->OpenRecordset("Select [Note] from NoteCampi where ID=" + std::to_string(id()));
        if (!rs->Eof()) categoria = store::CLng(rs->Fields(0).value());
    }
    const std::string errore = tools::ControllaCampo(*database(), categoria, nuovo() ? 0 : id(),
                                                     VText1->testo(), static_cast<long>(VText2->numero()));
    if (errore.empty()) return true;
    core::MsgBox(errore, core::vbExclamation);
    (errore == core::Testo("s137") ? VText1 : VText2)->setFocus();
    return false;
}

// ---- frmNoteDettagliEdita ------------------------------------------------------------------------

frmNoteDettagliEdita::frmNoteDettagliEdita(long categoria, QWidget* parent, std::function<void(long)> salvato)
    : EditorBase(Nome, "[Note]", core::Testo("s20"), parent),
      PicBase(new QScrollArea(this)),
      categoria_(categoria),
      avvisa_(std::move(salvato)) {
    setDatabase(core::session().dbTemp);
    PicBase->setObjectName("PicBase");
    PicBase->setWidgetResizable(true);
    PicBase->setFrameShape(QFrame::NoFrame);
    auto* Picture1 = new QWidget(PicBase);
    Picture1->setObjectName("Picture1");
    auto* pila = new QFormLayout(Picture1);
    pila->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    pila->setSpacing(ui::Spaziatura);
    std::vector<tools::CampoNota> elenco;
    if (core::session().dbArchivio) ui::protetto([&] { elenco = tools::CampiCategoria(Archivio(), categoria_); });
    int i = 0;
    for (const tools::CampoNota& c : elenco) {
        ++i;
        auto* lblTitolo = new QLabel(Q(c.nome), Picture1);
        lblTitolo->setObjectName(QString("lblTitolo%1").arg(i));
        QWidget* casella;
        if (c.dimensione > 0) {
            auto* txtCampo = new ui::VText(Picture1);
            txtCampo->setObjectName(QString("txtCampo%1").arg(i));
            txtCampo->setMaxLength(static_cast<int>(c.dimensione));
            txtCampo->setDataField(c.nome);
            casella = txtCampo;
        } else {
            auto* txtCampoMemo = new QPlainTextEdit(Picture1);
            txtCampoMemo->setObjectName(QString("txtCampoMemo%1").arg(i));
            txtCampoMemo->setProperty("DataField", Q(c.nome));
            txtCampoMemo->setTabChangesFocus(true);
            txtCampoMemo->setFixedHeight(90);
            casella = txtCampoMemo;
        }
        casella->setProperty("Campo", static_cast<int>(c.id));
        lblTitolo->setBuddy(casella);
        pila->addRow(lblTitolo, casella);
        caselle_.push_back(casella);
    }
    if (elenco.empty()) pila->addRow(new QLabel(kSenzaCampi, Picture1));
    PicBase->setWidget(Picture1);
    // Taller than the screen, the stack scrolls.
    PicBase->setMinimumHeight(std::min(static_cast<int>(elenco.size()) * 40 + 20, ui::AltezzaMassima - 160));
    campi()->addRow(PicBase);
    setMinimumWidth(520);
}

std::vector<std::pair<long, std::string>> frmNoteDettagliEdita::valori() const {
    std::vector<std::pair<long, std::string>> v;
    for (QWidget* c : caselle_) {
        const long campo = c->property("Campo").toInt();
        if (auto* t = qobject_cast<QLineEdit*>(c)) v.emplace_back(campo, t->text().toStdString());
        else if (auto* m = qobject_cast<QPlainTextEdit*>(c)) v.emplace_back(campo, m->toPlainText().toStdString());
    }
    return v;
}

bool frmNoteDettagliEdita::Valida() {
    if (caselle_.empty()) {
        core::MsgBox(kSenzaCampi, core::vbExclamation);
        return false;
    }
    const std::string errore = tools::ControllaScheda(Archivio(), categoria_, valori());
    if (errore.empty()) return true;
    core::MsgBox(errore, core::vbExclamation);
    return false;
}

void frmNoteDettagliEdita::PrimaDiAggiornare(store::Recordset&) {
    record_ = tools::SalvaScheda(Archivio(), categoria_, nuovo() ? 0 : id(), valori());
}

// The view numbered the new row as its own next; the record's number is what stands for it.
void frmNoteDettagliEdita::DopoSalvato(long id) {
    if (record_ != id)
        database()->Execute("Update [Note] set ID=" + std::to_string(record_) + " where ID=" + std::to_string(id));
    if (avvisa_) avvisa_(record_);
}
