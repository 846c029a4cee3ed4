#include "core/calendario.h"

#include <array>
#include <string>

#include "store/clock.h"
#include "store/convert.h"

namespace core {

namespace {

struct GiornoMese {
    int giorno, mese;
};

// Capodanno, Epifania, Liberazione, Lavoro, Repubblica, Ferragosto, Ognissanti, Immacolata,
// Natale, Santo Stefano.
constexpr std::array<GiornoMese, 10> kFestivitaFisse{{
    {1, 1}, {6, 1}, {25, 4}, {1, 5}, {2, 6}, {15, 8}, {1, 11}, {8, 12}, {25, 12}, {26, 12},
}};

bool FestivitaFissa(int giorno, int mese) {
    for (const auto& f : kFestivitaFisse) {
        if (f.giorno == giorno && f.mese == mese) return true;
    }
    return false;
}

int AnnoDi(double data) { return store::SplitDate(data).year; }

}  // namespace

bool Bisestile(int anno) { return (anno % 4 == 0 && anno % 100 != 0) || anno % 400 == 0; }

int GiorniMese(int mese, int anno) {
    switch (mese) {
        case 2: return Bisestile(anno) ? 29 : 28;
        case 4: case 6: case 9: case 11: return 30;
        default: return 31;
    }
}

bool GiornoFestivo(double data) {
    if (store::Weekday(data) == 1) return true;
    const auto parti = store::SplitDate(data);
    if (FestivitaFissa(parti.day, parti.month)) return true;
    const double pasqua = Pasqua(AnnoDi(store::Oggi()));
    return data == pasqua || data == pasqua + 1;
}

double Pasqua(int anno) {
    const int a = anno % 19, b = anno % 7, c = anno % 4;
    const int d = (19 * a + 24) % 30;
    const int e = (2 * c + 4 * b + 6 * d + 5) % 7;
    const int s = d + e;
    int giorno, mese;
    if (s > 9) {
        mese = 4;
        giorno = s - 9;
        if (giorno == 26) giorno = 19;
        else if (giorno == 25 && d == 28) giorno = 18;
    } else {
        mese = 3;
        giorno = s + 22;
    }
    // Made from its text, as the stored due dates were: a year that is no date raises the same error.
    const std::string testo = std::to_string(giorno) + "/" + std::to_string(mese) + "/" + std::to_string(anno);
    return store::CDate(store::Value::Text(testo));
}

}  // namespace core
