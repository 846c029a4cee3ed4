// A figure that is only shown (a total, a balance): right-aligned in a sunken box.
#pragma once

class QLabel;
class QWidget;

namespace ui {

QLabel* cifra(const char* nome, QWidget* parent = nullptr);

}  // namespace ui
