#include "store/value.h"

namespace store {

Value Value::Bool(bool b) { Value v; v.kind_ = Kind::Boolean; v.num_ = b ? -1 : 0; return v; }
Value Value::Int(std::int16_t i) { Value v; v.kind_ = Kind::Integer; v.num_ = i; return v; }
Value Value::Long(std::int32_t l) { Value v; v.kind_ = Kind::Long; v.num_ = l; return v; }
Value Value::Double(double d) { Value v; v.kind_ = Kind::Double; v.num_ = d; return v; }
Value Value::Date(double serial) { Value v; v.kind_ = Kind::Date; v.num_ = serial; return v; }
Value Value::Text(std::string s) { Value v; v.kind_ = Kind::Text; v.text_ = std::move(s); return v; }

bool Value::isNumeric() const {
    return kind_ == Kind::Boolean || kind_ == Kind::Integer || kind_ == Kind::Long || kind_ == Kind::Double;
}

bool Value::operator==(const Value& o) const {
    if (kind_ != o.kind_) return false;
    if (kind_ == Kind::Text) return text_ == o.text_;
    return kind_ == Kind::Null || num_ == o.num_;
}

const char* kindName(Value::Kind k) {
    switch (k) {
        case Value::Kind::Null: return "Null";
        case Value::Kind::Boolean: return "Boolean";
        case Value::Kind::Integer: return "Integer";
        case Value::Kind::Long: return "Long";
        case Value::Kind::Double: return "Double";
        case Value::Kind::Date: return "Date";
        case Value::Kind::Text: return "Text";
    }
    return "?";
}

}  // namespace store
