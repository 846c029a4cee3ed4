// The progress box of long runs: a bar and a line of text, kept responsive by letting the event
// loop run at each step.
#pragma once

#include <QDialog>

#include <string>

class QLabel;
class QProgressBar;

namespace ui {

class Progresso : public QDialog {
    Q_OBJECT
public:
    explicit Progresso(const std::string& titolo, QWidget* parent = nullptr);
    void setMassimo(int massimo);
    void avanza(int valore, const std::string& testo = {});
    int valore() const;

private:
    QLabel* testo_;
    QProgressBar* barra_;
};

}  // namespace ui
