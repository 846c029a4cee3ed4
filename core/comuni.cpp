#include "core/comuni.h"

#include "core/session.h"
#include "core/varie.h"
#include "store/convert.h"

namespace core {

namespace {

// The text as Like reads it literally: its own wildcards in brackets.
std::string Letterale(const std::string& testo) {
    std::string r;
    for (char c : testo) {
        if (c == '*' || c == '?' || c == '#' || c == '[') r += std::string("[") + c + "]";
        else r += c;
    }
    return r;
}

}  // namespace

std::vector<Comune> ComuniCheIniziano(const std::string& testo, std::size_t massimo, store::DatabasePtr db) {
    std::vector<Comune> comuni;
    if (!db) db = session().dbUtilita;
    if (testo.empty() || !db || !db->isOpen()) return comuni;
    auto rs = db->OpenRecordset("Select Comune, Cap, Provincia from Comuni where Comune Like '" + Apici(Letterale(testo)) +
                                "*' order by Comune, Cap, Provincia");
    for (; !rs->Eof() && comuni.size() < massimo; rs->MoveNext())
        comuni.push_back({store::ConcatText(rs->get("Comune")), store::ConcatText(rs->get("Cap")),
                          store::ConcatText(rs->get("Provincia"))});
    return comuni;
}

}  // namespace core
