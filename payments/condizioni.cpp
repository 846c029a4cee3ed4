#include "payments/condizioni.h"

#include "store/convert.h"

namespace payments {

const core::TabellaCampi& CampiCondizioniPagamento() {
    static const core::TabellaCampi t{
        {"DescPagamento", "s77", 3000},
        {"Rate", "s197", 800, "", core::Allineamento::Destra},
    };
    return t;
}

RateDigitate LeggiRate(const std::string& testo) {
    auto n = store::ParseNumberText(testo);
    double valore = n ? store::Round(*n) : 0;
    RateDigitate r;
    if (valore >= MassimoRate + 1) {
        r.rate = MassimoRate;
        r.corretto = true;
    } else {
        r.rate = valore > 0 ? static_cast<int>(valore) : 0;
    }
    return r;
}

bool RataAttiva(int n, int rate) { return n >= 1 && n <= rate; }

}  // namespace payments
