#include "tools/calcolatrice.h"

#include <cmath>
#include <map>

#include "store/convert.h"
#include "store/format.h"

namespace tools {

namespace {

// Longer than a double can hold: more digits would only be lost.
constexpr std::size_t kCifreMassime = 20;

int decimaliDa(const std::string& testo) {
    if (testo.empty() || testo.size() > 2) return 0;
    int n = 0;
    for (char c : testo) {
        if (c < '0' || c > '9') return 0;
        n = n * 10 + (c - '0');
    }
    return n > 15 ? 15 : n;
}

}  // namespace

double Calcolatrice::valore() const {
    if (errore_) return 0;
    return store::ParseNumberText(display_).value_or(0);
}

void Calcolatrice::mostra(double x) {
    if (!std::isfinite(x)) {
        errore(kOverflow);
        return;
    }
    display_ = store::NumberText(x);
    errore_ = false;
}

void Calcolatrice::errore(const char* messaggio) {
    display_ = messaggio;
    errore_ = true;
    nuovoNumero_ = true;
    immesso_ = false;
    dopoInvio_ = false;
    operazione_ = 0;
    primo_ = 0;
}

bool Calcolatrice::calcola(double secondo) {
    secondo_ = secondo;
    double r = 0;
    switch (operazione_) {
        case 2: r = primo_ + secondo; break;
        case 3: r = primo_ - secondo; break;
        case 4: r = primo_ * secondo; break;
        case 5:
            if (secondo == 0) {
                errore(kDivisioneZero);
                return false;
            }
            r = primo_ / secondo;
            break;
        case 6: r = primo_ * secondo / 100; break;
        default: return false;
    }
    if (!std::isfinite(r)) {
        errore(kOverflow);
        return false;
    }
    primo_ = r;
    mostra(r);
    return true;
}

void Calcolatrice::unario(double risultato) {
    mostra(risultato);
    if (errore_) return;
    nuovoNumero_ = true;
    immesso_ = true;
}

void Calcolatrice::Cifra(int cifra) {
    const char c = static_cast<char>('0' + cifra);
    if (errore_ || nuovoNumero_ || display_ == "0") {
        display_ = std::string(1, c);
    } else if (display_ == "-0") {
        display_ = std::string("-") + c;
    } else if (display_.size() < kCifreMassime) {
        display_ += c;
    }
    errore_ = false;
    nuovoNumero_ = false;
    immesso_ = true;
}

void Calcolatrice::DoppioZero() {
    Cifra(0);
    Cifra(0);
}

void Calcolatrice::operazione(int tasto) {
    if (operazione_ != 0 && immesso_ && !dopoInvio_) {
        if (!calcola(valore())) return;
    } else {
        primo_ = valore();
    }
    operazione_ = tasto;
    nuovoNumero_ = true;
    immesso_ = false;
    dopoInvio_ = false;
    errore_ = false;
}

void Calcolatrice::Funzione(TastoFunzione tasto) {
    // A message stays until a key starts a new number or clears.
    if (errore_ && tasto != TastoFunzione::Virgola && tasto != TastoFunzione::CE && tasto != TastoFunzione::C &&
        tasto != TastoFunzione::Cancella && tasto != TastoFunzione::MC && tasto != TastoFunzione::MR)
        return;
    switch (tasto) {
        case TastoFunzione::Segno:
            display_ = display_.rfind('-', 0) == 0 ? display_.substr(1) : "-" + display_;
            break;
        case TastoFunzione::Virgola:
            if (errore_ || nuovoNumero_) {
                display_ = "0,";
                errore_ = false;
                nuovoNumero_ = false;
                immesso_ = true;
            } else if (display_.find(',') == std::string::npos) {
                display_ += ',';
            }
            break;
        case TastoFunzione::Somma:
        case TastoFunzione::Sottrazione:
        case TastoFunzione::Moltiplicazione:
        case TastoFunzione::Divisione:
        case TastoFunzione::Percento: operazione(static_cast<int>(tasto)); break;
        case TastoFunzione::Radice: {
            const double v = valore();
            if (v < 0) errore(kInputNonValido);
            else unario(std::sqrt(v));
            break;
        }
        case TastoFunzione::CE:
            display_ = "0";
            errore_ = false;
            break;
        case TastoFunzione::C:
            display_ = "0";
            primo_ = secondo_ = 0;
            operazione_ = 0;
            errore_ = false;
            nuovoNumero_ = true;
            immesso_ = false;
            dopoInvio_ = false;
            break;
        case TastoFunzione::Cancella:
            if (errore_) {
                display_ = "0";
                errore_ = false;
            } else {
                display_.pop_back();
                if (display_.empty() || display_ == "-") display_ = "0";
            }
            nuovoNumero_ = false;
            immesso_ = true;
            break;
        case TastoFunzione::MC:
            memoria_ = 0;
            memoriaInUso_ = false;
            break;
        case TastoFunzione::MR: unario(memoria_); break;
        case TastoFunzione::MS:
            memoria_ = valore();
            memoriaInUso_ = true;
            nuovoNumero_ = true;
            break;
        case TastoFunzione::MPiu: {
            const double somma = memoria_ + valore();
            if (!std::isfinite(somma)) {
                errore(kOverflow);
                return;
            }
            memoria_ = somma;
            memoriaInUso_ = true;
            nuovoNumero_ = true;
            break;
        }
    }
}

void Calcolatrice::Avanzata(TastoAvanzato tasto, const std::string& decimali) {
    if (errore_) return;
    const double v = valore();
    switch (tasto) {
        case TastoAvanzato::Reciproco:
            if (v == 0) errore(kDivisioneZero);
            else unario(1 / v);
            break;
        case TastoAvanzato::Quadrato: unario(v * v); break;
        case TastoAvanzato::Sin: unario(std::sin(v)); break;
        case TastoAvanzato::Cos: unario(std::cos(v)); break;
        case TastoAvanzato::Tan: unario(std::tan(v)); break;
        case TastoAvanzato::Log:
            if (v <= 0) errore(kInputNonValido);
            else unario(std::log(v));
            break;
        case TastoAvanzato::Exp: unario(std::exp(v)); break;
        case TastoAvanzato::Arrotonda:
            display_ = store::FormatNumber(v, decimaliDa(decimali));
            errore_ = false;
            nuovoNumero_ = true;
            immesso_ = true;
            break;
    }
}

void Calcolatrice::Invio() {
    if (errore_) return;
    if (operazione_ != 0) {
        bool riuscito;
        if (dopoInvio_) {
            if (immesso_) primo_ = valore();
            riuscito = calcola(secondo_);
        } else {
            riuscito = calcola(valore());
        }
        if (!riuscito) return;
        dopoInvio_ = true;
    }
    nuovoNumero_ = true;
    immesso_ = false;
}

std::string Calcolatrice::suggerimentoMemoria() const { return "Current memory = " + store::NumberText(memoria_); }

bool Calcolatrice::Premi(std::string_view tasto, const std::string& decimali) {
    if (tasto.size() == 1 && tasto[0] >= '0' && tasto[0] <= '9') {
        Cifra(tasto[0] - '0');
        return true;
    }
    if (tasto == "00") {
        DoppioZero();
        return true;
    }
    if (tasto == "Invio") {
        Invio();
        return true;
    }
    static const std::map<std::string_view, TastoFunzione> funzioni = {
        {"+/-", TastoFunzione::Segno}, {",", TastoFunzione::Virgola},   {"+", TastoFunzione::Somma},
        {"-", TastoFunzione::Sottrazione}, {"*", TastoFunzione::Moltiplicazione}, {"/", TastoFunzione::Divisione},
        {"%", TastoFunzione::Percento},    {"sqr", TastoFunzione::Radice}, {"CE", TastoFunzione::CE},
        {"C", TastoFunzione::C},           {"Cancella", TastoFunzione::Cancella}, {"MC", TastoFunzione::MC},
        {"MR", TastoFunzione::MR},         {"MS", TastoFunzione::MS},         {"M+", TastoFunzione::MPiu}};
    static const std::map<std::string_view, TastoAvanzato> avanzati = {
        {"1/x", TastoAvanzato::Reciproco}, {"x²", TastoAvanzato::Quadrato}, {"Sin", TastoAvanzato::Sin},
        {"Cos", TastoAvanzato::Cos},       {"Tan", TastoAvanzato::Tan},     {"Log", TastoAvanzato::Log},
        {"Exp", TastoAvanzato::Exp},       {"Rnd", TastoAvanzato::Arrotonda}};
    if (auto f = funzioni.find(tasto); f != funzioni.end()) {
        Funzione(f->second);
        return true;
    }
    if (auto a = avanzati.find(tasto); a != avanzati.end()) {
        Avanzata(a->second, decimali);
        return true;
    }
    return false;
}

}  // namespace tools
