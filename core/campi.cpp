#include "core/campi.h"

#include "store/convert.h"
#include "store/errors.h"

namespace core {

const Campo& TabellaCampi::operator[](const std::string& nome) const {
    for (const Campo& c : campi_)
        if (store::AsciiLower(c.nome) == store::AsciiLower(nome)) return c;
    store::raise(3265, "Elemento non trovato in questo insieme: " + nome);
}

}  // namespace core
