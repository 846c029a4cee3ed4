// Laid-out pages onto Qt's painter: the printer, a PDF file, a picture of one page for the preview.
// Everything is drawn in units of 1/720 inch, so that a text measures the same on every device.
#pragma once

#include <QImage>
#include <QMap>
#include <QString>

#include <string>

#include "ui/report/Impaginazione.h"

class QPainter;
class QPagedPaintDevice;

namespace ui::report {

class MisuratoreQt : public Misuratore {
public:
    double altezza(const Carattere& carattere, double larghezza, const std::string& testo) const override;
};

class Pittore {
public:
    // Reads the pictures the pages use; one that is no picture is ErroreReport 321 naming it.
    Pittore(const Documento& documento, const std::string& nomeFile);

    int pagine() const { return static_cast<int>(doc_.pagine.size()); }
    // Draws page i on a painter whose device has the given resolution, from its top left corner.
    void disegna(QPainter& painter, int pagina, double dpiX, double dpiY) const;
    // Page i as a picture at the given zoom (1 = 96 dots per inch), white paper with a thin edge.
    QImage immagine(int pagina, double zoom) const;
    // Writes every page to a PDF file; error 75 naming the file when it cannot be written.
    void esportaPdf(const std::string& percorso) const;
    // Prints pages da to a (0-based, a -1 for the last) on the printer, or any paged device, as it is set up.
    void stampa(QPagedPaintDevice& dispositivo, int da = 0, int a = -1) const;

private:
    const Documento& doc_;
    std::string nomeFile_;
    QMap<QString, QImage> immagini_;
};

}  // namespace ui::report
