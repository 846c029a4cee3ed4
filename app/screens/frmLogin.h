// The login to the current company, with the choice of the working language.
#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

class frmLogin : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmLogin";
    explicit frmLogin(QWidget* parent = nullptr);

    void Conferma();
    void Lingua();

    QLineEdit* txtUser;
    QLineEdit* txtPass;
    QLineEdit* txtLingua;
    QPushButton* btnLingua;
    QPushButton* btnConferma;
    QPushButton* btnAnnulla;
    QLabel* lblAzienda;
    QLabel* lblArchivio;

private:
    void ImpostaDidascalie();

    QLabel* etichette_[4];
    QLabel* suggerimento_;
};
