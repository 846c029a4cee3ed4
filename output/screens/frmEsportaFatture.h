// The documents of a period and the customers to the two files of the outside accounting program,
// in a folder the user picks.
#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace ui {
class VetraPicker;
}

class frmEsportaFatture : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmEsportaFatture";
    explicit frmEsportaFatture(QWidget* parent = nullptr);

    // btnConferma: the checks, the folder, both files, the message. True when the files were written.
    bool Conferma();

    ui::VetraPicker* pkDal;
    ui::VetraPicker* pkAl;
    QLineEdit* Text1;
    QLineEdit* Text2;
    QPushButton* btnConferma;
    QPushButton* btnAnnulla;
};
