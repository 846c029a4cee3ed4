#include "tools/completa.h"

#include "core/varie.h"
#include "store/convert.h"

namespace tools {

namespace {

// Characters, not bytes: the selection of a box counts letters, and à is two bytes in UTF-8.
int caratteri(const std::string& utf8) {
    int n = 0;
    for (unsigned char c : utf8)
        if ((c & 0xC0) != 0x80) n++;
    return n;
}

}  // namespace

std::string IstruzioneCompletamento(const std::string& testo, const std::string& tabella, const std::string& campo,
                                    bool uguale) {
    return "SELECT Distinct " + campo + " FROM " + tabella + " WHERE " + campo + " " + (uguale ? "=" : "LIKE") +
           " '" + core::Apici(testo) + (uguale ? "" : "*") + "'";
}

std::optional<Completamento> CompletaTesto(const std::string& testo, store::Database& db, const std::string& tabella,
                                           const std::string& campo, bool uguale, bool tastoCancellazione) {
    if (testo.empty() || tastoCancellazione) return std::nullopt;
    auto rs = db.OpenRecordset(IstruzioneCompletamento(testo, tabella, campo, uguale));
    if (rs->Eof()) return std::nullopt;
    store::Value v = rs->Fields(0).value();
    if (v.isNull()) return std::nullopt;
    Completamento c;
    c.testo = store::ConcatText(v);
    c.selStart = caratteri(testo);
    c.selLength = caratteri(c.testo) - c.selStart;
    if (c.selLength < 0) c.selLength = 0;
    return c;
}

}  // namespace tools
