// Numbers written into SQL and the engine's own number texts stay the same whatever locale the C
// library was given: once the application object has set it from an Italian environment, a "%g"
// would write 12,5 into an Insert.
#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "store/convert.h"
#include "store/format.h"
#include "store/model/model.h"

namespace {

using store::Value;

class LocaleItaliano : public ::testing::Test {
protected:
    void SetUp() override {
        before_ = std::setlocale(LC_ALL, nullptr);
        if (!std::setlocale(LC_ALL, "it_IT.UTF-8")) GTEST_SKIP() << "the it_IT.UTF-8 locale is not installed";
    }
    void TearDown() override { std::setlocale(LC_ALL, before_.c_str()); }

private:
    std::string before_;
};

TEST_F(LocaleItaliano, NumberTextsIgnoreTheCLibraryLocale) {
    struct Case {
        std::string got, expected;
    };
    const Case cases[] = {
        // A literal of the dialect: the point, and every digit that gives the double back.
        {store::model::Letterale(Value::Double(12.5)), "12.5"},
        {store::model::Letterale(Value::Double(0.1)), "0.10000000000000001"},
        {store::model::Letterale(Value::Double(1e-7)), "9.9999999999999995e-08"},
        {store::model::Letterale(Value::Double(1e21)), "1e+21"},
        // CStr: the program's own decimal comma, fifteen digits, an upper-case exponent.
        {store::NumberText(-2.0 / 3), "-0,666666666666667"},
        {store::NumberText(1e20), "1E+20"},
        {store::NumberText(-0.000001234), "-1,234E-06"},
        // Masks rounding on the decimal digits, and the exponent form.
        {store::Format(Value::Double(1234.565), "#,##0.00"), "1.234,57"},
        {store::FormatNumber(98765432.125, 2), "98.765.432,13"},
        {store::Format(Value::Double(-0.00045), "Scientific"), "-4,50E-04"},
    };
    for (const Case& c : cases) EXPECT_EQ(c.got, c.expected);

    EXPECT_EQ(store::ParseNumberText("1.234,5"), 1234.5);
}

}  // namespace
