// The checks before a document header is written, with the user's answers scripted.
#include <deque>

#include "support/archivio_logica.h"
#include "support/DialoghiScript.h"
#include "sales/controllo_documento.h"

namespace {

using sales::EsitoControllo;

class ControlloDocumento : public prova::ArchivioProva {};

TEST_F(ControlloDocumento, ScalaDeiControlli) {
    Documento(1, {});
    Documento(2, {.numero = 2, .data = "20/03/2026"});
    struct Caso {
        const char* nome;
        const char* data;
        long controparte, numero;
        std::deque<int> risposte;
        EsitoControllo esito;
        long numeroFinale;
        const char* messaggio;  // the last one shown, "" for none
        int stile;
    } const casi[] = {
        {"data vuota", "  ", 1, 3, {}, EsitoControllo::Rifiutato, 3, "Data mancante", 48},
        {"non una data", "abc", 1, 3, {}, EsitoControllo::Rifiutato, 3, "Data non valida", 48},
        {"fuori esercizio", "10/03/2025", 1, 3, {}, EsitoControllo::DataNonValida, 3, "Data fuori esercizio", 48},
        {"senza cliente", "21/03/2026", 0, 3, {}, EsitoControllo::Rifiutato, 3, "Cliente mancante", 48},
        {"duplicato, No", "21/03/2026", 1, 2, {core::vbNo}, EsitoControllo::Rifiutato, 2, "Numero gia' usato", 36},
        {"duplicato, Si", "21/03/2026", 1, 2, {core::vbYes}, EsitoControllo::Valido, 3, "Numero gia' usato", 36},
        // The number taken in place of the duplicate is tested for order too: 3 before 20 March fails.
        {"duplicato sostituito fuori sequenza", "15/03/2026", 1, 2, {core::vbYes}, EsitoControllo::Rifiutato, 3,
         "Numero fuori sequenza", 48},
        {"tutto in regola", "21/03/2026", 1, 3, {}, EsitoControllo::Valido, 3, "", 0},
    };
    for (const auto& c : casi) {
        SCOPED_TRACE(c.nome);
        auto script = prova::installaScript();
        for (int r : c.risposte) script->rispondi(r);
        sales::TestataDaControllare testata{5, c.data, c.controparte, c.numero, "", "", 0};
        EXPECT_EQ(sales::ControllaTestataDocumento(testata), c.esito);
        EXPECT_EQ(testata.numero, c.numeroFinale);
        if (*c.messaggio == '\0') {
            EXPECT_TRUE(script->messaggi().empty());
        } else {
            ASSERT_FALSE(script->messaggi().empty());
            EXPECT_EQ(script->messaggi().back().testo, c.messaggio);
            EXPECT_EQ(script->messaggi().back().stile, c.stile);
        }
    }
    core::installDialogs(nullptr);
}

}  // namespace
