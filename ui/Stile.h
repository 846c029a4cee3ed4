// The program's one look: spacing, icons of commands, the sizes every screen fits in.
#pragma once

#include <QIcon>

class QBoxLayout;
class QDialogButtonBox;
class QLayout;
class QLabel;
class QPushButton;
class QToolButton;
class QWidget;

namespace ui {

inline constexpr int Spaziatura = 6;   // between controls
inline constexpr int Margine = 9;      // around a screen's contents
inline constexpr int LarghezzaMassima = 1366;
inline constexpr int AltezzaMassima = 728;   // 768 less the task bar

// An icon of the theme by its freedesktop name ("document-new", "edit-delete"...), with the
// style's own picture as the fallback.
QIcon icona(const char* nome);
// The icon of a command by its program name (btnNuovo, btnModifica, btnElimina, btnCerca...).
QIcon iconaComando(const QString& nomeComando);

void impostaSpaziatura(QLayout* l);
// A command button with its program name, caption and the icon its name calls for.
QPushButton* comando(const char* nome, const QString& testo, QWidget* parent = nullptr);
// The confirm and cancel row at the foot of a dialog: btnConferma (the default) and btnAnnulla.
QDialogButtonBox* confermaAnnulla(QWidget* parent, QPushButton*& conferma, QPushButton*& annulla);
// The caption of a value that is only shown (field panels, a register's header), greyed.
QLabel* didascalia(const QString& testo, QWidget* parent = nullptr);
// The small image command beside a combo (imgNew, imgEdit).
QToolButton* immagine(const char* nome, const QString& suggerimento, QWidget* parent = nullptr);

}  // namespace ui
