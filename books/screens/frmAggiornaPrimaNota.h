// Shown once by start-up on an archive whose payments have no journal rows: the journal is rebuilt
// from the payments, every row on the bank for the user to correct later.
#pragma once

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

class frmAggiornaPrimaNota : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmAggiornaPrimaNota";
    explicit frmAggiornaPrimaNota(QWidget* parent = nullptr);

    void Aggiorna();

    QLabel* Label1;
    QLabel* Label2;
    QLabel* Label3;
    QProgressBar* ProgressBar1;
    QPushButton* btnAggiorna;
    QPushButton* Command1;
};
