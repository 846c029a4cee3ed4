#include "ui/Progresso.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "ui/Stile.h"

namespace ui {

Progresso::Progresso(const std::string& titolo, QWidget* parent)
    : QDialog(parent), testo_(new QLabel(this)), barra_(new QProgressBar(this)) {
    setObjectName("Progress");
    setWindowTitle(QString::fromStdString(titolo));
    setWindowModality(Qt::ApplicationModal);
    auto* l = new QVBoxLayout(this);
    impostaSpaziatura(l);
    l->addWidget(testo_);
    l->addWidget(barra_);
    setMinimumWidth(360);
}

void Progresso::setMassimo(int massimo) { barra_->setRange(0, massimo); }

void Progresso::avanza(int valore, const std::string& testo) {
    barra_->setValue(valore);
    if (!testo.empty()) testo_->setText(QString::fromStdString(testo));
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

int Progresso::valore() const { return barra_->value(); }

}  // namespace ui
