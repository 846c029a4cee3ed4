#include "store/clock.h"

#include <chrono>
#include <cmath>
#include <ctime>

namespace store {

namespace {
std::optional<double> fixed;

double realNow() {
    // Local time, as the platform's Now: days since 30/12/1899 with the time as a fraction.
    std::time_t t = std::time(nullptr);
    std::tm lt{};
    localtime_r(&t, &lt);
    std::tm base{};
    base.tm_year = lt.tm_year; base.tm_mon = lt.tm_mon; base.tm_mday = lt.tm_mday; base.tm_hour = 12;
    std::time_t noon = timegm(&base);
    double days = std::floor(static_cast<double>(noon) / 86400.0) + 25569.0;  // 25569 = 01/01/1970
    double secs = lt.tm_hour * 3600.0 + lt.tm_min * 60.0 + lt.tm_sec;
    return days + secs / 86400.0;
}
}  // namespace

double Adesso() { return fixed ? *fixed : realNow(); }
double Oggi() { return std::floor(Adesso()); }
void fissaOrologio(std::optional<double> serial) { fixed = serial; }

}  // namespace store
