// The engine's one variant type, shared by the SQL functions, the DAO objects and the program's
// conversions. A Date is the platform's serial: days since 30/12/1899, the time as the fraction.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace store {

// Field type codes as the platform numbers them; they are what Field::Type() answers.
enum class FieldType : int {
    Boolean = 1,
    Byte = 2,
    Integer = 3,
    Long = 4,
    Currency = 5,
    Single = 6,
    Double = 7,
    Date = 8,
    Text = 10,
    Memo = 12,
};

class Value {
public:
    enum class Kind : std::uint8_t { Null, Boolean, Integer, Long, Double, Date, Text };

    Value() = default;  // Null
    static Value Null() { return Value(); }
    static Value Bool(bool b) { return Value(Kind::Boolean, b ? -1 : 0); }
    static Value Int(std::int16_t i) { return Value(Kind::Integer, i); }
    static Value Long(std::int32_t l) { return Value(Kind::Long, l); }
    static Value Double(double d) { return Value(Kind::Double, d); }
    static Value Date(double serial) { return Value(Kind::Date, serial); }
    static Value Text(std::string s) { return Value(std::move(s)); }
    // A number kept with its kind (Boolean -1/0, Integer, Long, Double, Date), as it was read.
    static Value Stored(Kind kind, double num) { return Value(kind, num); }

    Kind kind() const { return kind_; }
    bool isNull() const { return kind_ == Kind::Null; }
    bool isNumeric() const;  // Boolean, Integer, Long, Double (not Date, not Text)

    // Raw access; the caller knows the kind. Booleans are -1/0 in number().
    double number() const { return num_; }
    const std::string& text() const { return text_; }

    bool operator==(const Value& o) const;  // same kind and same content (for tests and caches)

private:
    Value(Kind kind, double num) : kind_(kind), num_(num) {}
    explicit Value(std::string s) : kind_(Kind::Text), text_(std::move(s)) {}

    Kind kind_ = Kind::Null;
    double num_ = 0;
    std::string text_;
};

const char* kindName(Value::Kind k);

}  // namespace store
