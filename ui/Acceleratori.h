// Alt+letter for every command of a window. Buttons whose caption comes from the language file
// carry no accelerator of their own; each gets the first letter of its caption that no other
// control of the window already uses, so that no two commands fight over one key.
#pragma once

class QWidget;

namespace ui {

void assegnaAcceleratori(QWidget* finestra);

}  // namespace ui
