#include "tools/screens/frmCalcolatrice.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

#include "core/impostazioni.h"
#include "ui/Dialoghi.h"
#include "ui/Stile.h"

namespace {

QString Q(const std::string& s) { return QString::fromStdString(s); }

constexpr const char* kFunzioni[] = {"+/-", ",", "+", "-", "*", "/", "%", "sqr",
                                     "CE",  "C", "Cancella", "MC", "MR", "MS", "M+"};
constexpr const char* kAvanzati[] = {"1/x", "x²", "Sin", "Cos", "Tan", "Log", "Exp", "Rnd"};
// What the function keys show where the caption is not the key's name.
QString didascalia(const char* tasto) {
    const QString t = QString::fromUtf8(tasto);
    if (t == "*") return QString::fromUtf8("×");
    if (t == "/") return QString::fromUtf8("÷");
    if (t == "-") return QString::fromUtf8("−");
    if (t == "Cancella") return QString::fromUtf8("←");
    return t;
}

}  // namespace

frmCalcolatrice::frmCalcolatrice(QWidget* parent)
    : QDialog(parent),
      lblDisplay(new QLabel("0", this)),
      lblMemory(new QLabel(this)),
      lblRound(new QLabel("Cifre Decimali", this)),
      txtDecimals(new QLineEdit("2", this)),
      cmdEnter(new QPushButton("Invio", this)) {
    setObjectName(Nome);
    setWindowTitle(Q(core::Testo("s129")));
    lblDisplay->setObjectName("lblDisplay");
    lblMemory->setObjectName("lblMemory");
    lblRound->setObjectName("lblRound");
    txtDecimals->setObjectName("txtDecimals");
    cmdEnter->setObjectName("cmdEnter");

    lblDisplay->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblDisplay->setFrameShape(QFrame::StyledPanel);
    lblDisplay->setFrameShadow(QFrame::Sunken);
    lblDisplay->setMinimumHeight(40);
    lblDisplay->setMinimumWidth(320);
    lblDisplay->setAutoFillBackground(true);
    lblDisplay->setBackgroundRole(QPalette::Base);
    QFont grande = lblDisplay->font();
    grande.setPointSizeF(grande.pointSizeF() * 1.6);
    lblDisplay->setFont(grande);
    lblMemory->setFixedWidth(24);
    lblMemory->setAlignment(Qt::AlignCenter);
    txtDecimals->setMaximumWidth(40);
    txtDecimals->setAlignment(Qt::AlignRight);
    txtDecimals->setToolTip("Round the current number");
    // Digits only: anything else is refused with a beep and the box goes back to "0".
    connect(txtDecimals, &QLineEdit::textEdited, this, [this](const QString& t) {
        for (QChar c : t) {
            if (!c.isDigit()) {
                QApplication::beep();
                txtDecimals->setText("0");
                return;
            }
        }
    });

    auto tasto = [this](const QString& testo, const QString& nome, const char* chiave) {
        auto* b = new QPushButton(testo, this);
        b->setObjectName(nome);
        b->setFocusPolicy(Qt::NoFocus);   // the keyboard belongs to the calculator, not to a key
        b->setMinimumSize(48, 32);
        connect(b, &QPushButton::clicked, this, [this, chiave] { Premi(chiave); });
        return b;
    };
    static const char* const cifre[] = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
    for (int i = 0; i < 10; ++i) cmdGetal.push_back(tasto(cifre[i], QString("cmdGetal_%1").arg(i), cifre[i]));
    zeroDoppio(false);
    for (std::size_t i = 0; i < std::size(kFunzioni); ++i)
        cmdFunction.push_back(tasto(didascalia(kFunzioni[i]), QString("cmdFunction_%1").arg(i), kFunzioni[i]));
    for (std::size_t i = 0; i < std::size(kAvanzati); ++i)
        cmdAdvanced.push_back(tasto(QString::fromUtf8(kAvanzati[i]), QString("cmdAdvanced_%1").arg(i), kAvanzati[i]));
    cmdAdvanced[7]->setToolTip("Round the current number");
    cmdFunction[10]->setToolTip("Cancella");
    cmdEnter->setFocusPolicy(Qt::NoFocus);
    cmdEnter->setMinimumSize(48, 32);
    connect(cmdEnter, &QPushButton::clicked, this, [this] { Premi("Invio"); });

    auto* colonna = new QVBoxLayout(this);
    ui::impostaSpaziatura(colonna);
    auto* testa = new QHBoxLayout;
    testa->addWidget(lblMemory);
    testa->addWidget(lblDisplay, 1);
    colonna->addLayout(testa);

    // Memory and clears on top, the keypad below with the operations at its right, the
    // scientific keys in a column of their own.
    auto* tasti = new QGridLayout;
    tasti->setSpacing(4);
    const int memoria[] = {11, 12, 13, 14};
    for (int c = 0; c < 4; ++c) tasti->addWidget(cmdFunction[static_cast<std::size_t>(memoria[c])], 0, c);
    tasti->addWidget(cmdFunction[10], 0, 4);
    const int cancella[] = {8, 9, 7, 6};
    for (int c = 0; c < 4; ++c) tasti->addWidget(cmdFunction[static_cast<std::size_t>(cancella[c])], 1, c);
    tasti->addWidget(cmdFunction[5], 1, 4);
    for (int d = 1; d <= 9; ++d) tasti->addWidget(cmdGetal[static_cast<std::size_t>(d)], 4 - (d - 1) / 3, (d - 1) % 3);
    tasti->addWidget(cmdFunction[4], 2, 4);
    tasti->addWidget(cmdFunction[3], 3, 4);
    tasti->addWidget(cmdFunction[2], 4, 4);
    tasti->addWidget(cmdFunction[0], 5, 0);
    tasti->addWidget(cmdGetal[0], 5, 1);
    tasti->addWidget(cmdFunction[1], 5, 2);
    tasti->addWidget(cmdEnter, 5, 3, 1, 2);
    for (int r = 2; r <= 4; ++r) tasti->setRowMinimumHeight(r, 32);
    auto* scientifici = new QGridLayout;
    scientifici->setSpacing(4);
    for (std::size_t i = 0; i < cmdAdvanced.size(); ++i)
        scientifici->addWidget(cmdAdvanced[i], static_cast<int>(i) % 4, static_cast<int>(i) / 4);
    auto* decimali = new QHBoxLayout;
    decimali->addWidget(lblRound);
    decimali->addWidget(txtDecimals);
    scientifici->addLayout(decimali, 4, 0, 1, 2);
    auto* corpo = new QHBoxLayout;
    corpo->addLayout(tasti, 3);
    corpo->addSpacing(12);
    corpo->addLayout(scientifici, 2);
    colonna->addLayout(corpo);
    setFocusPolicy(Qt::StrongFocus);
    mostra();
}

void frmCalcolatrice::Premi(const char* tasto) {
    calc_.Premi(tasto, txtDecimals->text().toStdString());
    mostra();
}

void frmCalcolatrice::mostra() {
    lblDisplay->setText(Q(calc_.display()));
    lblMemory->setText(calc_.memoriaInUso() ? "M" : "");
    lblMemory->setToolTip(calc_.memoriaInUso() ? Q(calc_.suggerimentoMemoria()) : QString());
}

void frmCalcolatrice::zeroDoppio(bool doppio) {
    cmdGetal[0]->setText(doppio ? "00" : "0");
    cmdGetal[0]->setToolTip(doppio ? "Press shift to change to single zero (0)"
                                   : "Press shift to change to double zero (00)");
    cmdGetal[0]->disconnect(this);
    connect(cmdGetal[0], &QPushButton::clicked, this, [this, doppio] { Premi(doppio ? "00" : "0"); });
}

void frmCalcolatrice::keyPressEvent(QKeyEvent* e) {
    // The decimals box keeps its own keys.
    if (txtDecimals->hasFocus() && e->key() != Qt::Key_Return && e->key() != Qt::Key_Enter &&
        e->key() != Qt::Key_Escape) {
        QDialog::keyPressEvent(e);
        return;
    }
    const int k = e->key();
    const bool maiuscolo = e->modifiers() & Qt::ShiftModifier;
    if (k == Qt::Key_Shift) {
        zeroDoppio(true);
        return;
    }
    if (k >= Qt::Key_0 && k <= Qt::Key_9) {
        static const char* const cifre[] = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
        Premi(k == Qt::Key_0 && maiuscolo && !(e->modifiers() & Qt::KeypadModifier) ? "00" : cifre[k - Qt::Key_0]);
        return;
    }
    const char* tasto = nullptr;
    switch (k) {
        case Qt::Key_Plus: tasto = "+"; break;
        case Qt::Key_Minus: tasto = "-"; break;
        case Qt::Key_Asterisk:
        case Qt::Key_multiply: tasto = "*"; break;
        case Qt::Key_Slash:
        case Qt::Key_division: tasto = "/"; break;
        case Qt::Key_Percent: tasto = "%"; break;
        case Qt::Key_Comma:
        case Qt::Key_Period: tasto = ","; break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Equal: tasto = "Invio"; break;
        case Qt::Key_Backspace: tasto = "Cancella"; break;
        case Qt::Key_Delete: tasto = "CE"; break;
        case Qt::Key_Escape:
            // A cleared calculator closes on Escape; otherwise Escape clears it.
            if (calc_.display() == "0") {
                close();
                return;
            }
            tasto = "C";
            break;
        default: break;
    }
    if (!tasto) {
        QDialog::keyPressEvent(e);
        return;
    }
    Premi(tasto);
}

void frmCalcolatrice::keyReleaseEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Shift) zeroDoppio(false);
    QDialog::keyReleaseEvent(e);
}

bool MostraCalcolatrice() {
    auto* c = new frmCalcolatrice(ui::finestraPrincipale());
    c->setAttribute(Qt::WA_DeleteOnClose);
    c->setModal(false);
    c->show();
    return true;
}
