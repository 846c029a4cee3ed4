#include "ui/VBars.h"

#include <QFormLayout>
#include <QFrame>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "store/convert.h"
#include "store/format.h"
#include "ui/Stile.h"

namespace ui {

VBars::VBars(QWidget* parent) : QWidget(parent), colonna_(new QVBoxLayout(this)) {
    colonna_->setContentsMargins(0, 0, 0, 0);
    colonna_->setSpacing(Spaziatura);
    colonna_->addStretch(1);
    setMinimumWidth(220);
}

int VBars::aggiungiGruppo(const std::string& titolo) {
    auto* testa = new QToolButton(this);
    testa->setText(QString::fromStdString(titolo));
    testa->setCheckable(true);
    testa->setChecked(true);
    testa->setArrowType(Qt::DownArrow);
    testa->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    testa->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    QFont f = testa->font();
    f.setBold(true);
    testa->setFont(f);
    auto* corpo = new QFrame(this);
    corpo->setFrameShape(QFrame::StyledPanel);
    auto* righe = new QFormLayout(corpo);
    righe->setContentsMargins(Margine, Spaziatura, Margine, Spaziatura);
    righe->setSpacing(Spaziatura);
    righe->setLabelAlignment(Qt::AlignLeft);
    int posizione = colonna_->count() - 1;   // before the closing stretch
    colonna_->insertWidget(posizione, testa);
    colonna_->insertWidget(posizione + 1, corpo);
    int indice = static_cast<int>(gruppi_.size());
    gruppi_.push_back({testa, corpo, righe});
    connect(testa, &QToolButton::toggled, this, [this, indice](bool aperto) { setGruppoAperto(indice, aperto); });
    return indice;
}

void VBars::aggiungiCampo(int gruppo, const std::string& campo, const std::string& titolo,
                          const std::string& maschera) {
    auto* valore = new QLabel(this);
    valore->setTextInteractionFlags(Qt::TextSelectableByMouse);
    valore->setWordWrap(true);
    valore->setObjectName(QString::fromStdString("lbl" + campo));
    auto* etichetta = didascalia(QString::fromStdString(titolo), this);
    gruppi_.at(static_cast<size_t>(gruppo)).righe->addRow(etichetta, valore);
    campi_.push_back({campo, maschera, valore});
}

void VBars::aggiungiControllo(int gruppo, const std::string& titolo, QWidget* controllo) {
    auto& righe = *gruppi_.at(static_cast<size_t>(gruppo)).righe;
    if (titolo.empty()) righe.addRow(controllo);
    else righe.addRow(QString::fromStdString(titolo), controllo);
}

void VBars::setGruppoAperto(int gruppo, bool aperto) {
    auto& g = gruppi_.at(static_cast<size_t>(gruppo));
    g.corpo->setVisible(aperto);
    g.titolo->setArrowType(aperto ? Qt::DownArrow : Qt::RightArrow);
    if (g.titolo->isChecked() != aperto) g.titolo->setChecked(aperto);
}

void VBars::mostra(store::Recordset* rs) {
    bool riga = rs && !rs->Eof() && !rs->Bof();
    for (auto& c : campi_) {
        std::string t = riga && rs->HasField(c.campo) ? store::Format(rs->get(c.campo), c.maschera) : std::string();
        c.valore->setText(QString::fromStdString(t));
    }
}

void VBars::setTesto(const std::string& campo, const std::string& testo) {
    for (auto& c : campi_)
        if (store::CompareText(c.campo, campo) == 0) c.valore->setText(QString::fromStdString(testo));
}

std::string VBars::testo(const std::string& campo) const {
    for (const auto& c : campi_)
        if (store::CompareText(c.campo, campo) == 0) return c.valore->text().toStdString();
    return {};
}

}  // namespace ui
