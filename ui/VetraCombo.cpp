#include "ui/VetraCombo.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTreeView>

#include "core/archivio_sql.h"
#include "store/convert.h"
#include "store/format.h"
#include "ui/VetraGrid.h"

namespace ui {

namespace {

bool stessoValore(const store::Value& a, const store::Value& b) {
    if (a.isNull() || b.isNull()) return false;
    if (a.kind() == store::Value::Kind::Text || b.kind() == store::Value::Kind::Text)
        return store::CompareText(store::ConcatText(a), store::ConcatText(b)) == 0;
    return a.number() == b.number();
}

}  // namespace

VetraCombo::VetraCombo(QWidget* parent) : QComboBox(parent), lista_(new QStandardItemModel(this)) {
    auto* vista = new QTreeView(this);
    vista->setRootIsDecorated(false);
    vista->setAlternatingRowColors(true);
    vista->setUniformRowHeights(true);
    vista->setAllColumnsShowFocus(true);
    vista->setSelectionBehavior(QAbstractItemView::SelectRows);
    vista->header()->setStretchLastSection(true);
    setModel(lista_);
    setView(vista);
    setMinimumContentsLength(12);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(this, &QComboBox::currentIndexChanged, this, &VetraCombo::valoreCambiato);
}

void VetraCombo::setColonne(std::vector<ColonnaLista> colonne) {
    colonne_ = std::move(colonne);
    if (campoTesto_.empty() && !colonne_.empty()) campoTesto_ = colonne_.front().campo;
}

void VetraCombo::setAperta(bool aperta) {
    setEditable(aperta);
    if (aperta) setInsertPolicy(QComboBox::NoInsert);
}

void VetraCombo::Aggiorna() {
    store::Value scelto = valore();
    std::string testoLibero = aperta() ? testo() : std::string();
    store::DatabasePtr db = db_ ? db_ : core::ArchivioAperto();
    if (!db) throw store::JetError(3420, "Nessun database aperto");
    auto rs = db->OpenRecordset(sorgente_);
    blockSignals(true);
    riempi(*rs);
    if (aperta()) setTesto(testoLibero);
    else setValore(scelto);
    blockSignals(false);
}

void VetraCombo::riempi(store::Recordset& rs) {
    pulisci();
    prendiColonne(rs);
    // The combo shows the text column; when the list does not show it, it rides in a hidden column.
    int colonnaTesto = -1;
    for (size_t i = 0; i < colonne_.size(); ++i)
        if (store::CompareText(colonne_[i].campo, campoTesto_) == 0) colonnaTesto = static_cast<int>(i);
    const bool nascosta = colonnaTesto < 0;
    if (nascosta) colonnaTesto = static_cast<int>(colonne_.size());
    QStringList titoli;
    for (const auto& c : colonne_) titoli << QString::fromStdString(c.titolo);
    lista_->setColumnCount(static_cast<int>(colonne_.size()) + (nascosta ? 1 : 0));
    lista_->setHorizontalHeaderLabels(titoli);
    for (; !rs.Eof(); rs.MoveNext()) aggiungiRiga(rs, nascosta);
    setModelColumn(colonnaTesto);
    qobject_cast<QTreeView*>(view())->setColumnHidden(colonnaTesto, nascosta);
    dimensionaLista();
}

void VetraCombo::prendiColonne(store::Recordset& rs) {
    if (colonne_.empty() && rs.FieldCount() > 0) {
        // With no columns given, the list shows the text field alone (the first after the ID).
        std::string primo = rs.FieldCount() > 1 ? rs.Fields(1).Name() : rs.Fields(0).Name();
        if (campoTesto_.empty()) campoTesto_ = primo;
        colonne_.push_back({campoTesto_, {}, 0, {}});
    }
    campiRiga_.clear();
    for (int i = 0; i < rs.FieldCount(); ++i) campiRiga_.push_back(rs.Fields(i).Name());
}

void VetraCombo::aggiungiRiga(store::Recordset& rs, bool testoNascosto) {
    std::vector<store::Value> riga;
    for (int i = 0; i < rs.FieldCount(); ++i) riga.push_back(rs.Fields(i).value());
    QList<QStandardItem*> celle;
    for (const auto& c : colonne_) {
        auto* cella = new QStandardItem(QString::fromStdString(store::Format(rs.get(c.campo), c.maschera)));
        if (c.maschera.find_first_of("0#") != std::string::npos) cella->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        celle << cella;
    }
    if (testoNascosto) celle << new QStandardItem(QString::fromStdString(store::ConcatText(rs.get(campoTesto_))));
    for (auto* cella : celle) cella->setEditable(false);
    lista_->appendRow(celle);
    righe_.push_back(std::move(riga));
}

void VetraCombo::dimensionaLista() {
    auto* vista = qobject_cast<QTreeView*>(view());
    bool titolato = false;
    int larghezza = 0;
    for (size_t i = 0; i < colonne_.size(); ++i) {
        const int c = static_cast<int>(i);
        titolato = titolato || !colonne_[i].titolo.empty();
        if (colonne_[i].larghezza > 0) vista->setColumnWidth(c, TwipsInPixel(colonne_[i].larghezza));
        else vista->resizeColumnToContents(c);
        larghezza += vista->columnWidth(c);
    }
    vista->setHeaderHidden(!titolato);
    vista->setMinimumWidth(std::min(larghezza + 24, 900));
}

void VetraCombo::pulisci() {
    lista_->removeRows(0, lista_->rowCount());
    righe_.clear();
    setCurrentIndex(-1);
}

void VetraCombo::aggiungiVoce(const store::Value& valore, const std::string& testo) {
    if (campiRiga_.empty()) campiRiga_ = {campoValore_, campoTesto_.empty() ? "Testo" : campoTesto_};
    if (lista_->columnCount() == 0) lista_->setColumnCount(1);
    righe_.push_back({valore, store::Value::Text(testo)});
    auto* cella = new QStandardItem(QString::fromStdString(testo));
    cella->setEditable(false);
    lista_->appendRow(cella);
    qobject_cast<QTreeView*>(view())->setHeaderHidden(true);
}

int VetraCombo::rigaDelValore(const store::Value& v) const {
    for (size_t c = 0; c < campiRiga_.size(); ++c) {
        if (store::CompareText(campiRiga_[c], campoValore_) != 0) continue;
        for (size_t r = 0; r < righe_.size(); ++r)
            if (stessoValore(righe_[r][c], v)) return static_cast<int>(r);
    }
    return -1;
}

store::Value VetraCombo::valore() const {
    if (aperta()) {
        std::string t = testo();
        return t.empty() ? store::Value::Null() : store::Value::Text(t);
    }
    return campo(campoValore_);
}

void VetraCombo::setValore(const store::Value& v) {
    if (aperta()) return setTesto(v.isNull() ? std::string() : store::ConcatText(v));
    setCurrentIndex(v.isNull() ? -1 : rigaDelValore(v));
}

std::string VetraCombo::testo() const { return currentText().toStdString(); }

void VetraCombo::setTesto(const std::string& t) {
    if (aperta()) return setEditText(QString::fromStdString(t));
    setCurrentIndex(findText(QString::fromStdString(t)));
}

store::Value VetraCombo::campo(const std::string& nome) const {
    int r = currentIndex();
    if (r < 0 || r >= static_cast<int>(righe_.size())) return store::Value::Null();
    if (aperta() && currentText() != itemText(r)) return store::Value::Null();
    for (size_t c = 0; c < campiRiga_.size(); ++c)
        if (store::CompareText(campiRiga_[c], nome) == 0) return righe_[static_cast<size_t>(r)][c];
    return store::Value::Null();
}

long IdDi(const store::Value& v) { return v.isNull() ? 0 : store::CLng(v); }

}  // namespace ui
