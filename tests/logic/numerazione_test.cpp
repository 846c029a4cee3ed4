// Numbering per period and sequence, and its duplicate and chronological tests, on a real archive.
#include "support/archivio_logica.h"
#include "sales/numerazione.h"

namespace {

using namespace sales;

class Numerazione : public prova::ArchivioProva {
protected:
    void Doc(long id, long numero, const std::string& data, const std::string& prefisso = "''",
             const std::string& suffisso = "''", long tipo = 5) {
        Documento(id, {.tipo = tipo, .numero = numero, .data = data, .prefisso = prefisso, .suffisso = suffisso});
    }
};

TEST_F(Numerazione, ProssimoNumeroPerPeriodoESequenza) {
    Doc(1, 40, "20/12/2025");  // last period: the sequence restarts on 1 January
    EXPECT_EQ(ProssimoNumeroDocumento(5, "", ""), 1);
    Doc(2, 1, "10/01/2026");
    Doc(3, 5, "10/02/2026");
    Doc(4, 2, "11/02/2026");
    Doc(5, 3, "10/02/2026", "'A'");
    Doc(6, 9, "10/02/2026", "Null");        // a Null prefix is no sequence typed as ""
    Doc(7, 7, "10/02/2026", "''", "'B'");
    Doc(8, 30, "10/02/2026", "''", "''", 6);  // another kind
    struct Caso {
        long tipo;
        const char *prefisso, *suffisso;
        long atteso;
    } const casi[] = {
        {5, "", "", 6}, {5, "A", "", 4}, {5, "", "B", 8}, {5, "A", "B", 1}, {6, "", "", 31}, {7, "", "", 1},
        {5, "a", "", 4},  // text compares without case
    };
    for (const auto& c : casi)
        EXPECT_EQ(ProssimoNumeroDocumento(c.tipo, c.prefisso, c.suffisso), c.atteso)
            << c.tipo << " '" << c.prefisso << "' '" << c.suffisso << "'";
}

TEST_F(Numerazione, NumeroDuplicato) {
    Doc(1, 5, "10/02/2026");
    Doc(2, 40, "20/12/2025");
    Doc(3, 5, "10/02/2026", "''", "'B'");
    struct Caso {
        const char* nome;
        long numero;
        const char* suffisso;
        long attuale;
        bool duplicato;
    } const casi[] = {
        // A new number already taken is walked with the checks before a header is written.
        {"lo stesso numero che aveva", 5, "", 5, false},
        {"nuovo numero zero", 0, "", 0, false},
        {"altro suffisso", 6, "B", 0, false},
        {"nessun limite di data", 40, "", 0, true},
    };
    for (const auto& c : casi)
        EXPECT_EQ(NumeroDuplicato(5, c.numero, "", c.suffisso, c.attuale), c.duplicato) << c.nome;
}

TEST_F(Numerazione, SequenzaCronologica) {
    Doc(1, 11, "10/03/2026 15.30.00");
    Doc(2, 13, "20/03/2026");
    Doc(3, 50, "31/12/2025");  // before the period: never compared
    using store::DateSerial;
    struct Caso {
        const char* nome;
        long numero;
        double data;
        const char* prefisso;
        bool valida;
    } const casi[] = {
        // Before the previous one is walked with the checks before a header is written.
        {"stessa data del precedente", 12, DateSerial(2026, 3, 10), "", true},
        {"dopo il successivo", 12, DateSerial(2026, 3, 21), "", false},
        {"un numero non si confronta con se stesso", 11, DateSerial(2026, 3, 19), "", true},
        {"altra sequenza", 12, DateSerial(2026, 1, 1), "A", true},
        {"l'ora non conta", 10, DateSerial(2026, 3, 10) + 0.9, "", true},
    };
    for (const auto& c : casi)
        EXPECT_EQ(SequenzaCronologicaValida(5, c.numero, c.data, c.prefisso, ""), c.valida) << c.nome;
}

TEST_F(Numerazione, ProssimoNumeroSpesa) {
    EXPECT_EQ(ProssimoNumeroSpesa(), 1);
    Esegui("Insert Into Spese (ID,Numero,Data) VALUES (1,'3','10/01/2026')");
    Esegui("Insert Into Spese (ID,Numero,Data) VALUES (2,'A7','10/01/2026')");
    Esegui("Insert Into Spese (ID,Numero,Data) VALUES (3,'900','10/12/2025')");
    EXPECT_EQ(ProssimoNumeroSpesa(), 4);
    // 12,5 + 1 = 13,5: to a whole number, the half goes to the even 14.
    Esegui("Insert Into Spese (ID,Numero,Data) VALUES (4,'12,5','10/01/2026')");
    EXPECT_EQ(ProssimoNumeroSpesa(), 14);
    Esegui("Insert Into Spese (ID,Numero,Data) VALUES (5,'32767','10/01/2026')");
    EXPECT_EQ(ProssimoNumeroSpesa(), 0);
}

TEST_F(Numerazione, PrefissiESuffissiUsati) {
    Doc(1, 1, "10/01/2026", "'B'");
    Doc(2, 2, "10/01/2026", "'A'", "'/26'");
    Doc(3, 3, "10/01/2026", "'A'");
    Doc(4, 4, "10/12/2025", "'C'");  // old prefixes stay offered
    Doc(5, 5, "10/01/2026", "'Z'", "''", 6);
    Doc(6, 6, "10/01/2026", "'B'", "Null");  // a Null is offered as an empty text of its own
    const std::vector<std::string> prefissi{"A", "B", "C"};
    EXPECT_EQ(CaricaPrefissi(5), prefissi);
    const std::vector<std::string> suffissi{"", "", "/26"};
    EXPECT_EQ(CaricaSuffissi(5), suffissi);
    EXPECT_TRUE(CaricaPrefissi(7).empty());
}

}  // namespace
