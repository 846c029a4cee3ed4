// The binding walk shared by every editor and by the controls that follow a grid: each control
// names its field (DataField, CampoDestinazione) and the walk dispatches on the control's type.
#pragma once

#include <string>
#include <vector>

#include "store/dao.h"

class QWidget;

namespace ui {

// The field a control is bound to ("" when it is not bound).
std::string campoLegato(const QWidget* controllo);
// Every bound control under radice, in the order they were created.
std::vector<QWidget*> controlliLegati(const QWidget* radice);

// Load of an existing record: the field's value (blank for Null); text boxes of text fields take
// the field's size as their maximum length.
void caricaControllo(QWidget* controllo, store::Recordset& rs);
// Load of a new record: the control keeps its default, and a text box still gets the maximum length.
void preparaControllo(QWidget* controllo, store::Recordset& rs);
// Save: text boxes write their text, combos their value (0 when none), pickers their date (Null
// when blank), check boxes True or False.
void salvaControllo(QWidget* controllo, store::Recordset& rs);

// Blanks a control that follows a list with no current row.
void svuotaControllo(QWidget* controllo);

// The walks over a whole screen.
void caricaControlli(const QWidget* radice, store::Recordset& rs);
void preparaControlli(const QWidget* radice, store::Recordset& rs);
void salvaControlli(const QWidget* radice, store::Recordset& rs);

// What a box's text writes to a field of that type: numbers (0 when blank), dates (Null when
// blank or no date), Yes/No, text.
store::Value valoreDaTesto(const std::string& testo, store::FieldType tipo);

// The text a plain label shows for a record's field under a mask.
std::string testoCampo(store::Recordset& rs, const std::string& campo, const std::string& maschera = {});

}  // namespace ui
