// The table of towns (Comuni of Utilità.mdb): what an address box offers as the user types a town,
// each town with its CAP and province, one row per CAP.
#pragma once

#include <string>
#include <vector>

#include "store/dao.h"

namespace core {

struct Comune {
    std::string comune;
    std::string cap;
    std::string provincia;
};

// The towns that begin with the text, by name and CAP; at most `massimo` of them. Nothing with an
// empty text or when the utilities database is not open (a null db means the session's).
std::vector<Comune> ComuniCheIniziano(const std::string& testo, std::size_t massimo = 200,
                                      store::DatabasePtr db = nullptr);

}  // namespace core
