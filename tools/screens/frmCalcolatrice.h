// The desk calculator: the keypad of tools::Calcolatrice with its display, memory mark and the
// decimals for Rnd. Keyboard as on a desk calculator: digits, + - * / (the numeric keypad too), comma
// or point for the decimal comma, Enter, Backspace, Delete (CE), Escape (C); with Shift held the
// zero key types "00".
#pragma once

#include <QDialog>

#include <vector>

#include "tools/calcolatrice.h"

class QLabel;
class QLineEdit;
class QPushButton;

class frmCalcolatrice : public QDialog {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmCalcolatrice";
    explicit frmCalcolatrice(QWidget* parent = nullptr);

    // A key by its caption, as a button or the keyboard gives it.
    void Premi(const char* tasto);
    const tools::Calcolatrice& calcolatrice() const { return calc_; }

    QLabel* lblDisplay;
    QLabel* lblMemory;
    QLabel* lblRound;
    QLineEdit* txtDecimals;
    std::vector<QPushButton*> cmdGetal;      // digits, by value
    std::vector<QPushButton*> cmdFunction;   // +/- , + - * / % sqr CE C Cancella MC MR MS M+
    std::vector<QPushButton*> cmdAdvanced;   // 1/x x² Sin Cos Tan Log Exp Rnd
    QPushButton* cmdEnter;

protected:
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;

private:
    void mostra();
    void zeroDoppio(bool doppio);

    tools::Calcolatrice calc_;
};

// What the menu runs: a fresh calculator beside the panel, unloaded when closed.
bool MostraCalcolatrice();
