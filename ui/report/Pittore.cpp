#include "ui/report/Pittore.h"

#include <QFile>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <filesystem>

namespace ui::report {
namespace {

constexpr double kUnita = 720.0;            // drawing units per inch
constexpr double kMmUnita = kUnita / 25.4;  // units per millimetre

QFont font(const Carattere& c) {
    QFont f(QString::fromStdString(c.famiglia));
    f.setPixelSize(std::max(1, static_cast<int>(c.punti * kUnita / 72.0 + 0.5)));
    f.setBold(c.grassetto);
    f.setItalic(c.corsivo);
    f.setHintingPreference(QFont::PreferNoHinting);
    return f;
}

QRectF rettangolo(const Primitiva& p) {
    return QRectF(p.x * kMmUnita, p.y * kMmUnita, p.larghezza * kMmUnita, p.altezza * kMmUnita);
}

int allineamento(const Primitiva& p) {
    const int orizzontale = p.allinea == Allineamento::Destra   ? Qt::AlignRight
                            : p.allinea == Allineamento::Centro ? Qt::AlignHCenter
                                                                : Qt::AlignLeft;
    return orizzontale | (p.aCapo ? Qt::AlignTop | Qt::TextWordWrap : Qt::AlignVCenter | Qt::TextSingleLine);
}

}  // namespace

double MisuratoreQt::altezza(const Carattere& carattere, double larghezza, const std::string& testo) const {
    const QFontMetricsF m(font(carattere));
    const QRectF r = m.boundingRect(QRectF(0, 0, larghezza * kMmUnita, 1e7), Qt::AlignLeft | Qt::TextWordWrap,
                                    QString::fromStdString(testo));
    return r.height() / kMmUnita;
}

Pittore::Pittore(const Documento& documento, const std::string& nomeFile) : doc_(documento), nomeFile_(nomeFile) {
    for (const auto& pagina : doc_.pagine)
        for (const auto& p : pagina.primitive) {
            if (p.tipo != TipoElemento::Immagine) continue;
            const QString percorso = QString::fromStdString(p.testo);
            if (immagini_.contains(percorso)) continue;
            QImage img(percorso);
            if (img.isNull())
                throw ErroreReport(ErrFormato, nomeFile_ + ": l'immagine " +
                                                   std::filesystem::path(p.testo).filename().string() +
                                                   " non è un'immagine leggibile");
            immagini_.insert(percorso, img);
        }
}

void Pittore::disegna(QPainter& painter, int pagina, double dpiX, double dpiY) const {
    if (pagina < 0 || pagina >= pagine()) return;
    painter.save();
    painter.scale(dpiX / kUnita, dpiY / kUnita);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const auto& p : doc_.pagine[pagina].primitive) {
        switch (p.tipo) {
        case TipoElemento::Testo:
        case TipoElemento::Campo:
            if (p.testo.empty()) break;
            painter.setFont(font(p.carattere));
            painter.setPen(Qt::black);
            painter.drawText(rettangolo(p), allineamento(p), QString::fromStdString(p.testo));
            break;
        case TipoElemento::Linea:
            painter.setPen(QPen(Qt::black, p.spessore * kMmUnita));
            painter.drawLine(QPointF(p.x * kMmUnita, p.y * kMmUnita),
                             QPointF((p.x + p.larghezza) * kMmUnita, (p.y + p.altezza) * kMmUnita));
            break;
        case TipoElemento::Riquadro:
            painter.setPen(QPen(Qt::black, p.spessore * kMmUnita));
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(rettangolo(p));
            break;
        case TipoElemento::Immagine: {
            const QImage img = immagini_.value(QString::fromStdString(p.testo));
            // The picture keeps its proportions inside its frame, at the frame's top left.
            QSizeF misura = img.size();
            misura.scale(rettangolo(p).size(), Qt::KeepAspectRatio);
            painter.drawImage(QRectF(rettangolo(p).topLeft(), misura), img);
            break;
        }
        }
    }
    painter.restore();
}

QImage Pittore::immagine(int pagina, double zoom) const {
    const double dpi = 96.0 * zoom;
    const QSize misura(static_cast<int>(doc_.pagina.larghezza / 25.4 * dpi + 0.5),
                       static_cast<int>(doc_.pagina.altezza / 25.4 * dpi + 0.5));
    QImage img(misura, QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter painter(&img);
    disegna(painter, pagina, dpi, dpi);
    painter.setPen(QPen(Qt::gray, 1));
    painter.drawRect(QRect(0, 0, misura.width() - 1, misura.height() - 1));
    return img;
}

void Pittore::esportaPdf(const std::string& percorso) const {
    const QString file = QString::fromStdString(percorso);
    {
        QFile prova(file);
        if (!prova.open(QIODevice::WriteOnly))
            throw ErroreReport(75, nomeFile_ + ": il PDF " + percorso + " non si può scrivere");
    }
    QPdfWriter pdf(file);
    pdf.setResolution(300);
    pdf.setTitle(QString::fromStdString(doc_.titolo));
    pdf.setCreator("Brevano");
    stampa(pdf);
}

void Pittore::stampa(QPagedPaintDevice& dispositivo, int da, int a) const {
    da = std::max(0, da);
    a = a < 0 ? pagine() - 1 : std::min(a, pagine() - 1);
    dispositivo.setPageLayout(QPageLayout(QPageSize(QSizeF(doc_.pagina.larghezza, doc_.pagina.altezza), QPageSize::Millimeter),
                                          QPageLayout::Portrait, QMarginsF(0, 0, 0, 0)));
    QPainter painter;
    if (!painter.begin(&dispositivo)) throw ErroreReport(75, nomeFile_ + ": la stampa non può cominciare");
    for (int i = da; i <= a; ++i) {
        if (i > da) dispositivo.newPage();
        disegna(painter, i, dispositivo.logicalDpiX(), dispositivo.logicalDpiY());
    }
    painter.end();
}

}  // namespace ui::report
