#include "store/value.h"

namespace store {

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
