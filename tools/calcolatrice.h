// The desk calculator: a display that holds the number being typed, one pending operation between
// two operands, a memory, and a few scientific keys. It touches no data; the screen only passes
// keys and shows the display.
#pragma once

#include <string>
#include <string_view>

namespace tools {

// The keys of the function row, by their place on the keypad.
enum class TastoFunzione {
    Segno = 0,          // +/-
    Virgola = 1,        // ,
    Somma = 2,
    Sottrazione = 3,
    Moltiplicazione = 4,
    Divisione = 5,
    Percento = 6,       // first % second: that percentage of the first
    Radice = 7,         // sqr
    CE = 8,
    C = 9,
    Cancella = 10,      // the last character typed
    MC = 11,
    MR = 12,
    MS = 13,
    MPiu = 14,
};

enum class TastoAvanzato {
    Reciproco = 0,   // 1/x
    Quadrato = 1,    // x²
    Sin = 2,
    Cos = 3,
    Tan = 4,
    Log = 5,         // natural
    Exp = 6,
    Arrotonda = 7,   // Rnd: to the decimals given
};

inline constexpr const char* kInputNonValido = "Ongeldige invoer, getal moet groter zijn dan 0";
inline constexpr const char* kOverflow = "Overflow!    het getal is te groot";
inline constexpr const char* kDivisioneZero = "ERROR: Invalid use of zero";

class Calcolatrice {
public:
    void Cifra(int cifra);   // 0 to 9
    void DoppioZero();       // "00": two zeros
    void Funzione(TastoFunzione tasto);
    // decimali: the text of the decimals box, read only by Rnd (a blank or non-numeric text is 0).
    void Avanzata(TastoAvanzato tasto, const std::string& decimali = "0");
    void Invio();

    // A key by its caption: "0" to "9", "00", "+/-", ",", "+", "-", "*", "/", "%", "sqr", "CE", "C",
    // "Cancella", "MC", "MR", "MS", "M+", "1/x", "x²", "Sin", "Cos", "Tan", "Log", "Exp", "Rnd",
    // "Invio". False for a caption that is no key.
    bool Premi(std::string_view tasto, const std::string& decimali = "0");

    // The number or, after a refused operation, its message until the next key starts a number.
    const std::string& display() const { return display_; }
    bool inErrore() const { return errore_; }
    bool memoriaInUso() const { return memoriaInUso_; }   // lblMemory shows "M"
    double memoria() const { return memoria_; }
    // The tip of the memory mark: "Current memory = " and the value.
    std::string suggerimentoMemoria() const;

private:
    double valore() const;   // the display as a number; a message reads as 0
    void mostra(double x);   // a result to the display, or the overflow message
    void errore(const char* messaggio);
    // first op second, or nothing shown when it fails (the message is on the display then).
    bool calcola(double secondo);
    void unario(double risultato);
    void operazione(int tasto);

    std::string display_ = "0";
    double primo_ = 0;
    double secondo_ = 0;
    int operazione_ = 0;       // the pending key, 2 to 6; 0 none
    bool nuovoNumero_ = true;
    bool dopoInvio_ = false;   // the last result came from Enter: Enter again repeats it
    bool immesso_ = false;     // the display holds a second operand given since the operation key
    bool errore_ = false;
    double memoria_ = 0;
    bool memoriaInUso_ = false;
};

}  // namespace tools
