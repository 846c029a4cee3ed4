// The desk calculator driven key by key, as a table of sequences and what the display then shows.
#include <gtest/gtest.h>

#include <sstream>
#include <utility>

#include "tools/calcolatrice.h"

namespace {

struct Caso {
    const char* tasti;     // captions separated by blanks
    const char* display;
    bool memoria = false;  // the memory mark shown
};

TEST(Calcolatrice, SequenzeDiTasti) {
    const Caso casi[] = {
        // Decimals: "," on a new number is "0,"; a second comma is ignored.
        {", 5", "0,5"},
        {"1 , 2 , 5", "1,25"},
        {"0 , 1 + 0 , 2 Invio", "0,3"},
        // A pending operation runs before the next one; an operation key twice only changes it.
        {"2 + 3 * 4 Invio", "20"},
        {"2 + * 4 Invio", "8"},
        // Enter again repeats the last operation on the result; a new number starts over.
        {"2 + 3 Invio Invio Invio", "11"},
        {"1 0 - 4 Invio 2 0 Invio", "16"},
        {"1 / 3 Invio", "0,333333333333333"},
        {"2 0 0 % 1 5 Invio", "30"},
        {"3 + 5 +/- Invio", "-2"},
        // Backspace and clears.
        {"7 +/- Cancella", "0"},
        {"2 + 3 CE 4 Invio", "6"},
        // Scientific keys, and a unary result used as the second operand.
        {"9 + 1 6 sqr Invio", "13"},
        {"1 Exp Log", "1"},
        {"2 / 3 Invio Rnd", "0,67"},
        // Memory.
        {"5 MS 3 M+ MR", "8", true},
        {"5 MS MC MR", "0"},
        {"2 M+ 2 M+ C MR * 3 Invio", "12", true},
        // The refusals show their message, and the calculator goes on.
        {"5 / 0 Invio + sqr Invio MS", "ERROR: Invalid use of zero"},
        {"5 / 0 Invio 2 + 2 Invio", "4"},
        {"4 +/- sqr", "Ongeldige invoer, getal moet groter zijn dan 0"},
        {"1 0 0 0 Exp", "Overflow!    het getal is te groot"},
        {"9 9 9 9 9 9 9 9 9 9 MS x² x² x² x² x² x² Cancella MR", "9999999999", true},
    };
    for (const Caso& c : casi) {
        tools::Calcolatrice calc;
        std::istringstream tasti(c.tasti);
        for (std::string t; tasti >> t;) ASSERT_TRUE(calc.Premi(t, "2")) << t;
        EXPECT_EQ(calc.display(), c.display) << c.tasti;
        EXPECT_EQ(calc.memoriaInUso(), c.memoria) << c.tasti;
    }
}

TEST(Calcolatrice, MemoriaEArrotondamento) {
    tools::Calcolatrice calc;
    for (const char* t : {"1", "2", "3", "4", ",", "5", "6", "7", "MS"}) calc.Premi(t);
    EXPECT_EQ(calc.suggerimentoMemoria(), "Current memory = 1234,567");
    const std::pair<const char*, const char*> arrotondati[] = {{"2", "1.234,57"}, {"x", "1.235"}, {"4", "1.234,5670"}};
    for (const auto& [decimali, display] : arrotondati) {
        calc.Premi("MR");
        calc.Premi("Rnd", decimali);
        EXPECT_EQ(calc.display(), display) << decimali;
    }
    // The rounded text, grouped as it is, is still the number: it multiplies on.
    calc.Premi("MR");
    calc.Premi("Rnd", "1");
    for (const char* t : {"*", "2", "Invio"}) calc.Premi(t);
    EXPECT_EQ(calc.display(), "2469,2");
    EXPECT_FALSE(calc.Premi("Tasto"));
}

}  // namespace
