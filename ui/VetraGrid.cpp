#include "ui/VetraGrid.h"

#include <QFont>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <limits>

#include "core/dialogs.h"
#include "core/record.h"
#include "core/archivio_sql.h"
#include "core/varie.h"
#include "store/convert.h"
#include "ui/Dialoghi.h"
#include "ui/Legami.h"
#include "store/format.h"
#include "ui/VBars.h"

namespace ui {

int TwipsInPixel(int twips) { return (twips + 7) / 15; }

namespace {

std::vector<std::string> campiOrdinamento(const std::string& campi) {
    std::vector<std::string> out;
    size_t inizio = 0;
    while (inizio <= campi.size()) {
        size_t fine = campi.find(',', inizio);
        std::string c = core::Trim(campi.substr(inizio, fine == std::string::npos ? std::string::npos : fine - inizio));
        if (!c.empty()) out.push_back(c);
        if (fine == std::string::npos) break;
        inizio = fine + 1;
    }
    return out;
}

}  // namespace

// ---- the model ---------------------------------------------------------------------------------

struct VetraGridModel::Riga {
    int livello = -1;   // a group caption's level; -1 for a record
    QString titolo;
    store::Bookmark segnalibro = 0;
    std::vector<store::Value> valori;
    std::size_t tratto = 0;   // the piece of the list the record comes from
};

VetraGridModel::VetraGridModel(QObject* parent) : QAbstractTableModel(parent) {}
VetraGridModel::~VetraGridModel() = default;

void VetraGridModel::impostaRecordset(std::unique_ptr<store::Recordset> rs, std::vector<Colonna> colonne,
                                      std::vector<std::string> gruppi, std::vector<RegolaColore> regole, bool inverso) {
    const std::size_t quanti = rs ? 1 : 0;
    impostaTratti(std::move(rs), quanti, {}, std::move(colonne), std::move(gruppi), std::move(regole), inverso);
}

void VetraGridModel::impostaTratti(std::unique_ptr<store::Recordset> primo, std::size_t quanti, ApriTratto apri,
                                   std::vector<Colonna> colonne, std::vector<std::string> gruppi,
                                   std::vector<RegolaColore> regole, bool inverso) {
    beginResetModel();
    tratti_.clear();
    letti_.clear();
    if (primo) {
        tratti_.resize(quanti);
        letti_.resize(quanti);
        tratti_[0] = std::move(primo);
    }
    apri_ = std::move(apri);
    inLettura_ = attivo_ = 0;
    inverso_ = inverso;
    colonne_ = std::move(colonne);
    gruppi_ = std::move(gruppi);
    regole_ = std::move(regole);
    campi_.clear();
    righe_.clear();
    ultimiGruppi_.clear();
    ultimoLetto_.reset();
    dati_ = 0;
    store::Recordset* rs = recordset();
    auto aggiungiCampo = [this, rs](const std::string& c) {
        if (rs && rs->HasField(c) && indiceCampo(c) < 0) campi_.push_back(c);
    };
    aggiungiCampo("ID");
    for (const auto& c : colonne_) aggiungiCampo(c.campo);
    for (const auto& g : gruppi_) aggiungiCampo(g);
    for (const auto& r : regole_) aggiungiCampo(r.campo);
    if (rs)
        for (const auto& c : campi_) letti_[0].push_back(&rs->Fields(c));
    finito_ = !rs || (tratti_.size() == 1 && rs->Eof());
    endResetModel();
    if (inverso_) leggiDallaVista([this] { leggiSopra(); });
    else if (!finito_) fetchMore({});
}

void VetraGridModel::apriTratto(std::size_t k) {
    tratti_[k] = apri_(k);
    letti_[k].clear();
    for (const auto& c : campi_) letti_[k].push_back(&tratti_[k]->Fields(c));
}

bool VetraGridModel::inModifica() const {
    for (std::size_t k : {inLettura_, attivo_})
        if (k < tratti_.size() && tratti_[k] && tratti_[k]->editMode() != store::Recordset::EditMode::None) return true;
    return false;
}

int VetraGridModel::indiceCampo(const std::string& campo) const {
    for (size_t i = 0; i < campi_.size(); ++i)
        if (store::CompareText(campi_[i], campo) == 0) return static_cast<int>(i);
    return -1;
}

int VetraGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(righe_.size());
}

int VetraGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(colonne_.size());
}

bool VetraGridModel::canFetchMore(const QModelIndex& parent) const {
    return !parent.isValid() && !inverso_ && !finito_ && !tratti_.empty() && !inModifica();
}

bool VetraGridModel::puoLeggereSopra() const { return inverso_ && !finito_ && !tratti_.empty() && !inModifica(); }

std::vector<store::Value> VetraGridModel::valoriCorrenti(std::size_t tratto) {
    std::vector<store::Value> v;
    v.reserve(letti_[tratto].size());
    for (store::Field* f : letti_[tratto]) v.push_back(f->value());
    return v;
}

void VetraGridModel::fetchMore(const QModelIndex& parent) {
    if (!canFetchMore(parent)) return;
    leggiDallaVista([this] { leggiBlocco(RighePerBlocco); });
}

void VetraGridModel::leggiDallaVista(const std::function<void()>& lettura) {
    try {
        lettura();
    } catch (const store::JetError& e) {
        // Called from inside the view's layout: the error box comes once the view is done.
        finito_ = true;
        QTimer::singleShot(0, [e] { protetto([&] { throw e; }); });
    } catch (const std::exception& e) {
        finito_ = true;
        std::string testo = e.what();
        QTimer::singleShot(0, [testo] { protetto([&] { throw std::runtime_error(testo); }); });
    }
}

void VetraGridModel::leggiFinoAllaFine() {
    if (!canFetchMore({})) return;
    leggiBlocco(std::numeric_limits<int>::max());
}

// The next records of the list, in its order: on from the last one read, and on into the next
// piece once a piece is read to its end.
std::vector<VetraGridModel::Riga> VetraGridModel::leggiRighe(int quante) {
    std::vector<Riga> lette;
    while (!finito_ && static_cast<int>(lette.size()) < quante) {
        store::Recordset& rs = *tratti_[inLettura_];
        if (ultimoLetto_) {
            rs.setBookmark(*ultimoLetto_);
            rs.MoveNext();
        } else if (rs.RecordCount() > 0) {
            rs.MoveFirst();
        }
        for (; static_cast<int>(lette.size()) < quante && !rs.Eof(); rs.MoveNext()) {
            Riga r;
            r.segnalibro = rs.getBookmark();
            r.valori = valoriCorrenti(inLettura_);
            r.tratto = inLettura_;
            ultimoLetto_ = r.segnalibro;
            lette.push_back(std::move(r));
        }
        if (!rs.Eof()) break;
        if (inLettura_ + 1 >= tratti_.size()) {
            finito_ = true;
        } else {
            apriTratto(++inLettura_);
            ultimoLetto_.reset();
        }
    }
    return lette;
}

void VetraGridModel::leggiBlocco(int quante) {
    std::vector<Riga> nuove;
    for (Riga& r : leggiRighe(quante)) {
        aggiungiTitoliGruppi(r, nuove);
        nuove.push_back(std::move(r));
    }
    if (nuove.empty()) return;
    int primo = static_cast<int>(righe_.size());
    beginInsertRows({}, primo, primo + static_cast<int>(nuove.size()) - 1);
    for (auto& r : nuove) {
        if (r.livello < 0) dati_++;
        righe_.push_back(std::move(r));
    }
    endInsertRows();
}

// Read backwards: the block above is turned round, captioned from its first row, and the captions
// that opened the rows below go where the block ends inside the same groups.
void VetraGridModel::leggiSopra() {
    if (!puoLeggereSopra()) return;
    std::vector<Riga> lette = leggiRighe(RighePerBlocco);
    if (lette.empty()) return;
    std::reverse(lette.begin(), lette.end());
    std::vector<Riga> nuove;
    ultimiGruppi_.clear();
    for (Riga& r : lette) {
        aggiungiTitoliGruppi(r, nuove);
        nuove.push_back(std::move(r));
    }
    size_t primoDato = 0;
    while (primoDato < righe_.size() && righe_[primoDato].livello >= 0) ++primoDato;
    size_t comuni = 0;
    if (primoDato < righe_.size())
        while (comuni < gruppi_.size() && stessoGruppo(nuove.back(), righe_[primoDato], comuni)) ++comuni;
    if (comuni > 0) {
        beginRemoveRows({}, 0, static_cast<int>(comuni) - 1);
        righe_.erase(righe_.begin(), righe_.begin() + static_cast<std::ptrdiff_t>(comuni));
        endRemoveRows();
    }
    beginInsertRows({}, 0, static_cast<int>(nuove.size()) - 1);
    for (const Riga& r : nuove)
        if (r.livello < 0) dati_++;
    righe_.insert(righe_.begin(), std::make_move_iterator(nuove.begin()), std::make_move_iterator(nuove.end()));
    endInsertRows();
}

bool VetraGridModel::stessoGruppo(const Riga& a, const Riga& b, size_t livello) const {
    const auto i = static_cast<size_t>(indiceCampo(gruppi_[livello]));
    return a.valori[i] == b.valori[i];
}

void VetraGridModel::aggiungiTitoliGruppi(const Riga& r, std::vector<Riga>& nuove) {
    // A change of a grouping field opens a caption for it and for every level inside it.
    for (size_t l = 0; l < gruppi_.size(); ++l) {
        const store::Value& v = r.valori[static_cast<size_t>(indiceCampo(gruppi_[l]))];
        if (l < ultimiGruppi_.size() && ultimiGruppi_[l] == v) continue;
        ultimiGruppi_.resize(l);
        for (size_t k = l; k < gruppi_.size(); ++k) {
            const store::Value& vk = r.valori[static_cast<size_t>(indiceCampo(gruppi_[k]))];
            ultimiGruppi_.push_back(vk);
            std::string t = vk.isNull() ? "(vuoto)" : store::Format(vk);
            nuove.push_back({static_cast<int>(k), QString::fromStdString(t), 0, {}});
        }
        return;
    }
}

bool VetraGridModel::rigaDiGruppo(int riga) const {
    return riga >= 0 && riga < rowCount() && righe_[static_cast<size_t>(riga)].livello >= 0;
}

int VetraGridModel::livelloGruppo(int riga) const {
    return riga >= 0 && riga < rowCount() ? righe_[static_cast<size_t>(riga)].livello : -1;
}

long VetraGridModel::righeLette() const { return dati_; }

bool VetraGridModel::posiziona(int riga) {
    if (tratti_.empty() || riga < 0 || riga >= rowCount() || rigaDiGruppo(riga)) return false;
    const Riga& r = righe_[static_cast<size_t>(riga)];
    attivo_ = r.tratto;
    tratti_[attivo_]->setBookmark(r.segnalibro);
    return true;
}

int VetraGridModel::rigaConId(long id, long entro) {
    int campo = indiceCampo("ID");
    if (campo < 0) return -1;
    auto stessoId = [&](const Riga& r) {
        const store::Value& v = r.valori[static_cast<size_t>(campo)];
        return r.livello < 0 && !v.isNull() && store::CLng(v) == id;
    };
    if (inverso_) {
        // The rows read last are on top: only they are looked at again.
        size_t nuove = righe_.size();
        for (;;) {
            for (size_t i = 0; i < nuove && i < righe_.size(); ++i)
                if (stessoId(righe_[i])) return static_cast<int>(i);
            if (!puoLeggereSopra() || (entro >= 0 && dati_ >= entro)) return -1;
            const size_t prima = righe_.size();
            leggiSopra();
            if (righe_.size() == prima) return -1;
            nuove = righe_.size() - prima + gruppi_.size();
        }
    }
    for (size_t i = 0;; ++i) {
        if (i == righe_.size()) {
            if (!canFetchMore({}) || (entro >= 0 && dati_ >= entro)) return -1;
            fetchMore({});
            if (i == righe_.size()) return -1;
        }
        const Riga& r = righe_[i];
        if (r.livello < 0 && !r.valori[static_cast<size_t>(campo)].isNull() &&
            store::CLng(r.valori[static_cast<size_t>(campo)]) == id)
            return static_cast<int>(i);
    }
}

void VetraGridModel::rileggiRiga(int riga) {
    if (!posiziona(riga)) return;
    righe_[static_cast<size_t>(riga)].valori = valoriCorrenti(attivo_);
    emit dataChanged(index(riga, 0), index(riga, columnCount() - 1));
}

void VetraGridModel::rimuoviRiga(int riga) {
    if (riga < 0 || riga >= rowCount()) return;
    const Riga& tolta = righe_[static_cast<size_t>(riga)];
    if (ultimoLetto_ && !rigaDiGruppo(riga) && tolta.tratto == inLettura_ && tolta.segnalibro == *ultimoLetto_) {
        // The next page starts after the record of the same piece read before the deleted one
        // (above it, or below it when read backwards), or from the piece's start.
        ultimoLetto_.reset();
        const int passo = inverso_ ? 1 : -1;
        for (int i = riga + passo; i >= 0 && i < rowCount(); i += passo)
            if (!rigaDiGruppo(i)) {
                const Riga& r = righe_[static_cast<size_t>(i)];
                if (r.tratto == inLettura_) ultimoLetto_ = r.segnalibro;
                break;
            }
    }
    beginRemoveRows({}, riga, riga);
    if (!rigaDiGruppo(riga)) dati_--;
    righe_.erase(righe_.begin() + riga);
    endRemoveRows();
}

store::Value VetraGridModel::valore(int riga, const std::string& campo) const {
    int c = indiceCampo(campo);
    if (c < 0 || riga < 0 || riga >= rowCount() || rigaDiGruppo(riga)) return store::Value::Null();
    return righe_[static_cast<size_t>(riga)].valori[static_cast<size_t>(c)];
}

std::string VetraGridModel::testoCella(const Riga& r, int colonna) const {
    const Colonna& c = colonne_[static_cast<size_t>(colonna)];
    int i = indiceCampo(c.campo);
    if (i < 0) return {};
    const store::Value& v = r.valori[static_cast<size_t>(i)];
    if (v.kind() == store::Value::Kind::Boolean) return {};
    return store::Format(v, c.maschera);
}

const RegolaColore* VetraGridModel::regolaPer(const Riga& r) const {
    for (const auto& regola : regole_) {
        int i = indiceCampo(regola.campo);
        if (i >= 0 && regola.condizione && regola.condizione(r.valori[static_cast<size_t>(i)])) return &regola;
    }
    return nullptr;
}

QVariant VetraGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const Riga& r = righe_[static_cast<size_t>(index.row())];
    if (r.livello >= 0) {
        if (role == Qt::DisplayRole && index.column() == 0) return QString(r.livello * 4, ' ') + r.titolo;
        if (role == Qt::FontRole) {
            QFont f;
            f.setBold(true);
            return f;
        }
        return {};
    }
    const Colonna& c = colonne_[static_cast<size_t>(index.column())];
    switch (role) {
        case Qt::DisplayRole:
            return QString::fromStdString(testoCella(r, index.column()));
        case Qt::CheckStateRole: {
            int i = indiceCampo(c.campo);
            if (i < 0 || r.valori[static_cast<size_t>(i)].kind() != store::Value::Kind::Boolean) return {};
            return r.valori[static_cast<size_t>(i)].number() != 0 ? Qt::Checked : Qt::Unchecked;
        }
        case Qt::TextAlignmentRole:
            return static_cast<int>(c.allineamento);
        case Qt::ForegroundRole:
            if (const RegolaColore* g = regolaPer(r); g && g->testo.isValid()) return g->testo;
            return {};
        case Qt::BackgroundRole:
            if (const RegolaColore* g = regolaPer(r); g && g->sfondo.isValid()) return g->sfondo;
            return {};
        default:
            return {};
    }
}

QVariant VetraGridModel::headerData(int section, Qt::Orientation o, int role) const {
    if (o != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    const Colonna& c = colonne_[static_cast<size_t>(section)];
    if (role == Qt::DisplayRole) return QString::fromStdString(c.titolo.empty() ? c.campo : c.titolo);
    if (role == Qt::TextAlignmentRole) return static_cast<int>((c.allineamento & Qt::AlignHorizontal_Mask) | Qt::AlignVCenter);
    return {};
}

// ---- the grid ----------------------------------------------------------------------------------

VetraGrid::VetraGrid(QWidget* parent) : QTableView(parent), model_(new VetraGridModel(this)) {
    setModel(model_);
    setAlternatingRowColors(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setShowGrid(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    horizontalHeader()->setStretchLastSection(false);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(true);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, &VetraGrid::ordinaPerColonna);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &VetraGrid::leggiSopraSeInCima);
    connect(this, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& i) {
        if (haRecordset() && !model_->rigaDiGruppo(i.row())) emit modificaRichiesta();
    });
    connect(model_, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex&, int primo, int ultimo) {
        for (int r = primo; r <= ultimo; ++r)
            if (model_->rigaDiGruppo(r) && model_->columnCount() > 1) setSpan(r, 0, 1, model_->columnCount());
    });
}

VetraGrid::~VetraGrid() = default;

void VetraGrid::setDatabase(store::DatabasePtr db) { db_ = std::move(db); }
store::DatabasePtr VetraGrid::database() const { return db_ ? db_ : core::ArchivioAperto(); }
void VetraGrid::setSorgente(const std::string& sql) { sorgente_ = sql; }

void VetraGrid::setOrdinamento(const std::string& campi, Direzione direzione) {
    ordinamento_ = campi;
    direzione_ = direzione;
}

void VetraGrid::aggiungiColonna(Colonna c) { colonne_.push_back(std::move(c)); }
void VetraGrid::pulisciColonne() { colonne_.clear(); }
void VetraGrid::aggiungiGruppo(const std::string& campo) { gruppi_.push_back(campo); }
void VetraGrid::pulisciGruppi() { gruppi_.clear(); }
void VetraGrid::collegaGruppo(GruppoCollegato g) { collegati_.push_back(std::move(g)); }
void VetraGrid::aggiungiRegolaColore(RegolaColore r) { regole_.push_back(std::move(r)); }
void VetraGrid::aggiungiSeguace(QWidget* w) { seguaci_.push_back(w); }

std::string VetraGrid::istruzione() const { return ordinata(false); }
std::string VetraGrid::istruzioneInversa() const { return ordinata(true); }

std::vector<std::string> VetraGrid::ordineCampi(bool inverso) const {
    std::vector<std::string> ordine;
    for (const auto& c : campiOrdinamento(ordinamento_))
        ordine.push_back((direzione_ == Direzione::Decrescente) != inverso ? c + " DESC" : c);
    return ordine;
}

std::string VetraGrid::ordinata(bool inverso) const {
    std::vector<std::string> ordine;
    for (const auto& g : gruppi_) ordine.push_back(inverso ? g + " DESC" : g);
    for (auto& c : ordineCampi(inverso)) ordine.push_back(std::move(c));
    if (ordine.empty()) return inverso ? std::string() : sorgente_;
    return core::Trim(core::SenzaOrdine(sorgente_)) + " ORDER BY " + core::Unisci(ordine, ", ");
}

// The pieces of the list when every grouping level is a description of a lookup table (none
// otherwise).
std::vector<std::string> VetraGrid::istruzioniATratti(store::Database& db, bool inverso) const {
    constexpr std::size_t kMassimoTratti = 10000;
    std::vector<GruppoCollegato> livelli;
    for (const auto& g : gruppi_) {
        auto c = std::find_if(collegati_.begin(), collegati_.end(),
                              [&](const GruppoCollegato& x) { return store::CompareText(x.campo, g) == 0; });
        if (c == collegati_.end()) return {};
        livelli.push_back(*c);
    }
    const std::string base = core::Trim(core::SenzaOrdine(sorgente_));
    std::vector<std::string> tratti = IstruzioniATratti(db, base, livelli, ordineCampi(inverso), inverso, kMassimoTratti);
    // A short list, or one with few rows for each piece (quotes among thousands of customers), is
    // sorted at once by SQLite; reading pieces pays only when they hold rows. The count reads one
    // link of the first rows, stopping at the number asked.
    const std::size_t soglia = std::max<std::size_t>(2 * VetraGridModel::RighePerBlocco, 2 * tratti.size());
    if (!tratti.empty() && !RigheAlmeno(db, "Select " + livelli[0].legame + " from (" + base + ")", soglia)) return {};
    return tratti;
}

// The list read from its end stays so while its statement is the same.
void VetraGrid::Aggiorna() { esegui(model_->inverso() && eseguita_ == istruzioneInversa(), true); }

void VetraGrid::esegui(bool inverso, bool ripristina) {
    store::DatabasePtr db = database();
    if (!db) throw store::JetError(3420, "Nessun archivio aperto");
    long prima = ripristina && haRigaCorrente() ? idCorrente() : 0;
    const long letti = model_->righeLette() + 4 * VetraGridModel::RighePerBlocco;
    const std::string sql = inverso ? istruzioneInversa() : istruzione();
    const std::vector<std::string> tratti = istruzioniATratti(*db, inverso);
    // A save elsewhere must not read the whole list first: it reads on from where it stopped.
    auto apri = [db, tratti, sql](std::size_t k) {
        auto rs = db->OpenRecordset(tratti.empty() ? sql : tratti[k]);
        rs->SetResumable(true);
        return rs;
    };
    auto rs = apri(0);
    for (const auto& g : gruppi_)
        if (!rs->HasField(g)) store::raise(3265, g);
    eseguita_ = sql;
    clearSpans();
    leggendo_ = true;
    model_->impostaTratti(std::move(rs), std::max<std::size_t>(tratti.size(), 1), apri, colonne_, gruppi_, regole_,
                          inverso);
    leggendo_ = false;
    applicaLarghezze();
    // Back on the record it was on, read up to it if it moved a little further on; else the first
    // row, or the last one of a list read from its end.
    int riga = prima > 0 ? model_->rigaConId(prima, letti) : -1;
    for (int i = 0; i < model_->rowCount() && riga < 0; ++i) {
        const int r = inverso ? model_->rowCount() - 1 - i : i;
        if (!model_->rigaDiGruppo(r)) riga = r;
    }
    selezionaRiga(riga);
}

void VetraGrid::VaiAllUltima() {
    if (!haRecordset()) return;
    if (model_->canFetchMore({})) {
        if (istruzioneInversa().empty()) protetto([this] { model_->leggiFinoAllaFine(); });
        else protetto([this] { esegui(true, false); });
    }
    int ultima = model_->rowCount() - 1;
    while (ultima >= 0 && model_->rigaDiGruppo(ultima)) ultima--;
    if (ultima >= 0) selezionaRiga(ultima);
}

void VetraGrid::VaiAllaPrima() {
    if (!haRecordset()) return;
    if (model_->inverso()) {
        protetto([this] { esegui(false, false); });
        return;
    }
    int prima = 0;
    while (prima < model_->rowCount() && model_->rigaDiGruppo(prima)) prima++;
    if (prima < model_->rowCount()) selezionaRiga(prima);
}

// At the top of a list read from its end, the rows above are read and the view stays where it was.
void VetraGrid::leggiSopraSeInCima(int valore) {
    if (leggendo_ || valore != verticalScrollBar()->minimum() || !model_->puoLeggereSopra()) return;
    leggendo_ = true;
    const int prima = model_->rowCount();
    protetto([this] { model_->leggiSopra(); });
    const int aggiunte = model_->rowCount() - prima;
    leggendo_ = false;
    if (aggiunte <= 0) return;
    updateGeometries();   // the scroll bar's range takes the new rows before the view moves
    scrollTo(model_->index(aggiunte, 0), QAbstractItemView::PositionAtTop);
}

void VetraGrid::AggiornaRiga() {
    if (!haRigaCorrente()) return;
    model_->rileggiRiga(currentIndex().row());
    aggiornaSeguaci();
}

void VetraGrid::applicaLarghezze() {
    // The widest column (the description, as a rule) takes what the window has to spare.
    int larga = -1;
    for (size_t i = 0; i < colonne_.size(); ++i) {
        int larghezza = colonne_[i].larghezza > 0 ? TwipsInPixel(colonne_[i].larghezza)
                                                  : horizontalHeader()->sectionSizeHint(static_cast<int>(i)) + 24;
        horizontalHeader()->setSectionResizeMode(static_cast<int>(i), QHeaderView::Interactive);
        setColumnWidth(static_cast<int>(i), larghezza);
        if (larga < 0 || colonne_[i].larghezza > colonne_[static_cast<size_t>(larga)].larghezza) larga = static_cast<int>(i);
    }
    if (larga >= 0) horizontalHeader()->setSectionResizeMode(larga, QHeaderView::Stretch);
    int c = 0;
    for (; c < static_cast<int>(colonne_.size()); ++c)
        if (store::CompareText(colonne_[static_cast<size_t>(c)].campo, ordinamento_) == 0) break;
    horizontalHeader()->setSortIndicatorShown(c < static_cast<int>(colonne_.size()));
    horizontalHeader()->setSortIndicator(c, direzione_ == Direzione::Decrescente ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void VetraGrid::selezionaRiga(int riga) {
    if (riga < 0) {
        setCurrentIndex({});
        aggiornaSeguaci();
        emit rigaCambiata();
        return;
    }
    QModelIndex i = model_->index(riga, 0);
    if (i == currentIndex()) {
        model_->posiziona(riga);
        aggiornaSeguaci();
        emit rigaCambiata();
    } else {
        setCurrentIndex(i);   // currentChanged tells the followers
    }
    scrollTo(i);
}

void VetraGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (current.isValid()) model_->posiziona(current.row());
    aggiornaSeguaci();
    emit rigaCambiata();
}

void VetraGrid::aggiornaSeguaci() {
    protetto([this] {
        bool riga = haRigaCorrente();
        store::Recordset* rs = riga ? Recordset() : nullptr;
        for (QWidget* w : seguaci_) {
            if (auto* b = qobject_cast<VBars*>(w)) b->mostra(rs);
            else if (rs) caricaControllo(w, *rs);
            else svuotaControllo(w);
        }
    });
}

bool VetraGrid::haRecordset() const { return model_->recordset() != nullptr; }

bool VetraGrid::haRigaCorrente() const {
    QModelIndex i = currentIndex();
    return haRecordset() && i.isValid() && !model_->rigaDiGruppo(i.row());
}

store::Recordset* VetraGrid::Recordset() {
    store::Recordset* rs = model_->recordset();
    // Positioned on the current row, the recordset is that of the row's piece of the list.
    if (rs && rs->editMode() == store::Recordset::EditMode::None && haRigaCorrente() &&
        model_->posiziona(currentIndex().row()))
        rs = model_->recordset();
    return rs;
}

store::Value VetraGrid::valore(const std::string& campo) {
    if (!haRigaCorrente()) return store::Value::Null();
    store::Value v = model_->valore(currentIndex().row(), campo);
    if (v.isNull() && Recordset()->HasField(campo)) v = Recordset()->get(campo);
    return v;
}

long VetraGrid::idCorrente() {
    store::Value v = valore("ID");
    return v.isNull() ? 0 : store::CLng(v);
}

bool VetraGrid::vaiAId(long id) {
    int r = model_->rigaConId(id);
    if (r >= 0) selezionaRiga(r);
    return r >= 0;
}

int VetraGrid::righeMostrate() const { return model_->rowCount(); }

bool VetraGrid::EliminaRiga() {
    if (!haRigaCorrente()) return false;
    int riga = currentIndex().row();
    Recordset()->Delete();
    model_->rimuoviRiga(riga);
    // A group left with no rows loses its caption too (and so, in turn, the groups around it).
    while (model_->rigaDiGruppo(riga - 1) &&
           (riga >= model_->rowCount() ||
            (model_->rigaDiGruppo(riga) && model_->livelloGruppo(riga) <= model_->livelloGruppo(riga - 1)))) {
        model_->rimuoviRiga(--riga);
    }
    int prossima = std::min(riga, model_->rowCount() - 1);
    while (prossima >= 0 && model_->rigaDiGruppo(prossima)) prossima--;
    selezionaRiga(prossima);
    return true;
}

void VetraGrid::ordinaPerColonna(int colonna) {
    if (colonna < 0 || colonna >= static_cast<int>(colonne_.size())) return;
    const std::string& campo = colonne_[static_cast<size_t>(colonna)].campo;
    bool stesso = store::CompareText(campo, ordinamento_) == 0;
    setOrdinamento(campo, stesso && direzione_ == Direzione::Crescente ? Direzione::Decrescente : Direzione::Crescente);
    protetto([this] { esegui(false, true); });
}

void VetraGrid::keyPressEvent(QKeyEvent* e) {
    // Ctrl+End and Ctrl+Home go to the ends of the statement, not of the rows read so far.
    const bool ctrl = e->modifiers() & Qt::ControlModifier;
    if (ctrl && (e->key() == Qt::Key_End || e->key() == Qt::Key_Home) && haRecordset()) {
        if (e->key() == Qt::Key_End) VaiAllUltima();
        else VaiAllaPrima();
        e->accept();
        return;
    }
    bool invio = e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter;
    if ((invio || e->key() == Qt::Key_Delete) && haRecordset()) {
        if (invio) emit modificaRichiesta();
        else emit eliminaRichiesta();
        e->accept();
        return;
    }
    QTableView::keyPressEvent(e);
}

}  // namespace ui
