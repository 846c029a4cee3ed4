// The town box of an address: as the user types a town, a list under the box offers the towns that
// begin with it, each with its CAP and province (a town with several CAPs once per CAP); choosing
// one writes town, CAP and province. Leaving the box on a town with one CAP only fills an empty
// CAP and province as well. The boxes stay free text: a town not in the table is kept as typed.
#pragma once

class QLineEdit;

namespace ui {

// One line per editor: CollegaComuni(txtCitta, txtCap, txtProvincia).
void CollegaComuni(QLineEdit* citta, QLineEdit* cap, QLineEdit* provincia);

}  // namespace ui
