// The field panel beside a list: titled groups, each a column of captions and values of the
// current row. A group can also hold a control of the screen's own (a check box, a panel).
#pragma once

#include <QWidget>

#include <string>
#include <vector>

#include "store/dao.h"

class QVBoxLayout;
class QFormLayout;
class QLabel;
class QToolButton;

namespace ui {

class VetraGrid;

class VBars : public QWidget {
    Q_OBJECT
public:
    explicit VBars(QWidget* parent = nullptr);

    // Returns the group's index.
    int aggiungiGruppo(const std::string& titolo);
    void aggiungiCampo(int gruppo, const std::string& campo, const std::string& titolo,
                       const std::string& maschera = {});
    void aggiungiControllo(int gruppo, const std::string& titolo, QWidget* controllo);
    void setGruppoAperto(int gruppo, bool aperto);

    // Shows the record's fields (a null recordset, or one at its end, blanks them).
    void mostra(store::Recordset* rs);
    // Sets a field's shown text directly, for values the panel does not read from a row.
    void setTesto(const std::string& campo, const std::string& testo);
    std::string testo(const std::string& campo) const;

private:
    struct Campo { std::string campo; std::string maschera; QLabel* valore; };
    struct Gruppo { QToolButton* titolo; QWidget* corpo; QFormLayout* righe; };
    QVBoxLayout* colonna_;
    std::vector<Gruppo> gruppi_;
    std::vector<Campo> campi_;
};

}  // namespace ui
