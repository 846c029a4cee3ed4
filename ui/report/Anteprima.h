// The preview of a laid-out report: one page at a time with its zoom, moving through the pages,
// printing on a printer the user chooses, saving the whole as a PDF.
#pragma once

#include <QDialog>

#include <memory>
#include <string>

#include "ui/report/Impaginazione.h"

class QComboBox;
class QLabel;
class QPushButton;
class QScrollArea;

namespace ui::report {

class Pittore;

class frmAnteprima : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmAnteprima";
    frmAnteprima(Documento documento, std::string nomeFile, QWidget* parent = nullptr);
    ~frmAnteprima() override;

    int Pagina() const { return pagina_; }   // 0-based
    int Pagine() const;
    void VaiA(int pagina);
    void ImpostaZoom(double zoom);           // 1 = the page at 96 dots per inch
    double Zoom() const { return zoom_; }
    void Stampa();
    // Asks where to save and writes the PDF; a refusal of the file is shown and nothing is written.
    void SalvaPdf();

    QPushButton* btnPrima;
    QPushButton* btnPrecedente;
    QLabel* lblPagina;
    QPushButton* btnSuccessiva;
    QPushButton* btnUltima;
    QComboBox* cbZoom;
    QPushButton* btnStampa;
    QPushButton* btnSalvaPdf;
    QPushButton* btnChiudi;
    QScrollArea* scrPagina;
    QLabel* imgPagina;

protected:
    bool eventFilter(QObject* oggetto, QEvent* evento) override;

private:
    void Mostra();
    double ZoomAdatto() const;

    Documento doc_;
    std::string nomeFile_;
    std::unique_ptr<Pittore> pittore_;
    int pagina_ = 0;
    double zoom_ = 1;
    enum class Adatta { No, Larghezza, Pagina };
    Adatta adatta_ = Adatta::Larghezza;   // the zoom follows the window
};

}  // namespace ui::report
