// The layout editor of a report file: the bands drawn to scale with the painter of the preview, the
// elements chosen, moved and resized with the mouse or the keys, their properties in a panel, the
// fields of the sub-reports to put on the page, undo and redo, and beside it the first page as it
// prints on the current data, laid out again after every change. Saving writes the file; closing with
// changes not saved asks first.
#pragma once

#include <QDialog>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ui/report/EditorModello.h"
#include "ui/report/Motore.h"

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QFontComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QScrollArea;

namespace ui::report {

class Pittore;
class TelaReport;

class frmEditorReport : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmEditorReport";
    // Opens the engine's file; the preview runs the engine's statements and parameters as the caller
    // set them, or the file's own when the engine has nothing loaded. A file that cannot be read is
    // ErroreReport, and no editor.
    explicit frmEditorReport(const Motore& motore, QWidget* parent = nullptr);
    ~frmEditorReport() override;

    EditorModello& Editor() { return ed_; }
    const Documento& Anteprima() const { return anteprima_; }   // the first page last laid out
    const std::vector<std::string>& Campi() const { return campi_; }

    // Writes the file; false, with the message shown, when it cannot be written.
    bool Salva();
    // After any change of the layout: the drawing, the panel, the commands and the preview.
    void Aggiorna();
    // Asks about unsaved changes: false when the user stays.
    bool PuoChiudere();
    // Asks for a picture of the layouts' pictures folder and puts it in the chosen band.
    void AggiungiImmagine();
    void reject() override;

    QPushButton* btnSalva;
    QPushButton* btnAnnullaModifica;
    QPushButton* btnRipeti;
    QPushButton* btnTesto;
    QPushButton* btnCampo;
    QPushButton* btnLinea;
    QPushButton* btnRiquadro;
    QPushButton* btnImmagine;
    QPushButton* btnElimina;
    QPushButton* btnChiudi;
    QComboBox* cbZoom;
    TelaReport* Tela;
    QScrollArea* scrTela;
    QListWidget* lstCampi;
    QLabel* lblSelezione;
    QLineEdit* txtTesto;
    QComboBox* cbCampo;
    QComboBox* cbSomma;
    QComboBox* cbAmbito;
    QComboBox* cbMaschera;
    QLineEdit* txtFile;
    QFontComboBox* cbCarattere;
    QDoubleSpinBox* spnPunti;
    QCheckBox* chkGrassetto;
    QCheckBox* chkCorsivo;
    QComboBox* cbAllinea;
    QDoubleSpinBox* spnSpessore;
    QCheckBox* chkCresce;
    QDoubleSpinBox* spnX;
    QDoubleSpinBox* spnY;
    QDoubleSpinBox* spnLarghezza;
    QDoubleSpinBox* spnAltezza;
    QScrollArea* scrAnteprima;
    QLabel* imgAnteprima;
    QLabel* lblAvvisi;

protected:
    bool eventFilter(QObject* oggetto, QEvent* evento) override;
    void showEvent(QShowEvent* evento) override;

private:
    QWidget* creaPannello();
    void collega(Proprieta p, QWidget* controllo);
    void applica(Proprieta p, const std::string& valore);
    void mostraProprieta();
    void aggiornaAnteprima();
    void mostraAnteprima();
    void aggiungi(TipoElemento tipo, const std::string& campo = {});
    void comando(bool (EditorModello::*azione)());

    std::string file_;
    std::string nomeFile_;
    std::string cartellaImmagini_;
    EditorModello ed_;
    std::vector<SubReportDichiarato> subReports_;     // what the preview runs
    std::vector<ParametroDichiarato> parametri_;
    std::map<std::string, std::vector<std::string>> colonne_;
    std::vector<std::string> campi_;
    Dati dati_;
    std::string erroreDati_;
    Documento anteprima_;
    std::unique_ptr<Pittore> pittoreAnteprima_;
    std::map<Proprieta, QWidget*> controlli_;
    bool mostrando_ = false;
    bool zoomScelto_ = false;
};

// The drawing of the bands: to scale, the chosen element with its grips, the keys and the mouse.
class TelaReport : public QWidget {
    Q_OBJECT
public:
    TelaReport(EditorModello& editor, std::string cartellaImmagini, QWidget* parent = nullptr);
    ~TelaReport() override;

    void ImpostaZoom(double zoom);        // 1 = 96 dots per inch
    double Zoom() const { return zoom_; }
    double PixelPerMm() const { return zoom_ * 96 / 25.4; }
    // Draws the layout again after a change of it.
    void Ricostruisci();

signals:
    // The layout changed (once the mouse lets go, for a drag), or only the selection did.
    void Cambiato();
    void SelezioneCambiata();
    void ModificaTesto();   // a double click on a text or a field

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    bool focusNextPrevChild(bool avanti) override;

private:
    QPointF mm(const QPointF& pixel) const { return pixel / PixelPerMm(); }
    void trascina(const QPointF& punto, bool libero);

    EditorModello& ed_;
    std::string cartellaImmagini_;
    Documento disegno_;
    std::unique_ptr<Pittore> pittore_;
    double zoom_ = 0.8;
    Presa presa_ = Presa::Nessuna;
    QPointF inizio_;                      // where the drag began, in millimetres
    Elemento prima_;                      // the element as it was when the drag began
    double altezzaPrima_ = 0;             // the band's height then
};

}  // namespace ui::report
