// What the grid tests share: the rows a grid shows once read to both ends.
#pragma once

#include <string>
#include <vector>

#include "store/convert.h"
#include "ui/VetraGrid.h"

namespace prova {

// Every row of the grid, read to its end and up to its start: records by ID, captions as "#caption".
inline std::vector<std::string> righeGriglia(ui::VetraGrid& g) {
    ui::VetraGridModel* m = g.modello();
    m->leggiFinoAllaFine();
    while (m->puoLeggereSopra()) m->leggiSopra();
    std::vector<std::string> out;
    for (int r = 0; r < g.righeMostrate(); ++r)
        out.push_back(m->rigaDiGruppo(r) ? "#" + m->data(m->index(r, 0), Qt::DisplayRole).toString().toStdString()
                                         : store::ConcatText(m->valore(r, "ID")));
    return out;
}

}  // namespace prova
