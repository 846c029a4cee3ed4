// The field table of an entity: each field once, with its caption, mask, alignment and width, so
// that a register's columns, its search choice, an editor's labels and a printed list all read the
// same row instead of writing it again.
#pragma once

#include <string>
#include <vector>

namespace core {

enum class Allineamento { Sinistra, Destra, Centro };

struct Campo {
    std::string nome;         // the field of the table or query
    std::string didascalia;   // a language key ("s77") or a fixed caption ("Giorni per rata")
    int larghezza = 0;        // in twips; 0 fits the caption
    std::string maschera{};   // "#,0.00", "0000", "dd/mm/yyyy"; "" shows the value's own text
    Allineamento allineamento = Allineamento::Sinistra;
};

class TabellaCampi {
public:
    TabellaCampi(std::initializer_list<Campo> campi) : campi_(campi) {}

    // The row of a field, compared without case; error 3265 when the table does not have it.
    const Campo& operator[](const std::string& nome) const;
    const std::vector<Campo>& tutti() const { return campi_; }

private:
    std::vector<Campo> campi_;
};

}  // namespace core
