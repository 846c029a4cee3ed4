// The structure update that start-up and the change of Esercizio open when the executable is newer
// (or older) than the one that last brought the archive up to date. Every archive of the master is
// checked against the model; cancelling ends the program, since nobody is to work on an archive of
// an older structure.
#pragma once

#include <QDialog>

#include <string>
#include <vector>

class QFrame;
class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QTimer;

class frmAggiorna : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmAggiorna";
    explicit frmAggiorna(QWidget* parent = nullptr);

    void Aggiorna();
    void Annulla();

    // True when the screen closed in a way that ends the program: cancelled, or an archive failed.
    bool ProgrammaDaChiudere() const { return chiudiProgramma_; }
    const std::vector<std::string>& FileCollezionati() const { return file_; }

    QFrame* Frame1;
    QLabel* lblAvviso;
    QLabel* lblReport;
    QListWidget* List1;
    QLabel* lblOperazioni;
    QPlainTextEdit* Text2;
    QLabel* imgFreccia;
    QTimer* Timer1;
    QPushButton* btnAggiorna;
    QPushButton* btnAnnulla;

protected:
    void reject() override;

private:
    void MuoviFreccia();

    std::vector<std::string> file_;
    std::string modello_;
    bool inCorso_ = false;
    bool chiudiProgramma_ = false;
    int passoFreccia_ = 0;
};

// What the registry runs for frmAggiorna: the screen over the panel; a cancelled update ends the
// program, leaving the panel's event loop when it runs.
bool MostraAggiorna();
