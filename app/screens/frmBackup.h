// The backup of the data into a new dated folder, and the import of such a folder back.
#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

class frmBackup : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmBackup";
    static constexpr const char* NomeImporta = "frmImportaBackup";
    explicit frmBackup(QWidget* parent = nullptr);

    void Conferma();
    void Sfoglia();

    // mImportaBackup: asks for a backup folder and puts it back over the data folder.
    static bool ImportaBackup();

    QLineEdit* Dir;
    QPushButton* btnSfoglia;
    QProgressBar* pBar;
    QLabel* lblTit;
    QLabel* lblPerc;
    QPushButton* btnConferma;
    QPushButton* btnAnnulla;
};
