// The customers or the suppliers to a delimited text file: which fields, in which order, with
// which separator. The choice of fields is kept per list.
#pragma once

#include <QDialog>

#include <vector>

#include "output/esporta_elenchi.h"

class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;

class frmEsportaElenchi : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmEsportaElenchi";
    explicit frmEsportaElenchi(QWidget* parent = nullptr);

    // The entries of lstCampi as they stand: name, tick, row id.
    std::vector<output::CampoEsportato> Campi() const;

    void CaricaElenco();
    void Su();
    void Giu();
    void SalvaImpostazioni();
    void Conferma();

    QComboBox* cbElenco;
    QListWidget* lstCampi;
    QPushButton* btnSu;
    QPushButton* btnGiu;
    QLineEdit* txtSep;
    QPushButton* btnSalvaImpostazioni;
    QPushButton* btnConferma;
    QPushButton* btnAnnulla;

private:
    void Sposta(int verso);
};
