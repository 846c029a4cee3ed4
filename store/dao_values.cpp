// Program values <-> what SQLite stores, by the platform's field types.
#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

#include "store/catalog_database.h"
#include "store/clock.h"
#include "store/convert.h"

namespace store::detail {

Cell cellFromColumn(sqlite3_stmt* s, int column) {
    Cell c;
    switch (sqlite3_column_type(s, column)) {
        case SQLITE_INTEGER: c.kind = Cell::Kind::Int; c.i = sqlite3_column_int64(s, column); break;
        case SQLITE_FLOAT: c.kind = Cell::Kind::Real; c.d = sqlite3_column_double(s, column); break;
        case SQLITE_NULL: break;
        default: {
            c.kind = Cell::Kind::Text;
            const unsigned char* t = sqlite3_column_text(s, column);
            if (t) c.s.assign(reinterpret_cast<const char*>(t), static_cast<std::size_t>(sqlite3_column_bytes(s, column)));
        }
    }
    return c;
}

void bindCell(sqlite3_stmt* s, int index, const Cell& c) {
    switch (c.kind) {
        case Cell::Kind::Null: sqlite3_bind_null(s, index); break;
        case Cell::Kind::Int: sqlite3_bind_int64(s, index, c.i); break;
        case Cell::Kind::Real: sqlite3_bind_double(s, index, c.d); break;
        case Cell::Kind::Text:
            sqlite3_bind_text(s, index, c.s.data(), static_cast<int>(c.s.size()), SQLITE_TRANSIENT);
            break;
    }
}

namespace {

Value integerValue(FieldType type, std::int64_t i) {
    if (type == FieldType::Boolean) return Value::Bool(i != 0);
    if ((type == FieldType::Integer || type == FieldType::Byte) && i >= INT16_MIN && i <= INT16_MAX)
        return Value::Int(static_cast<std::int16_t>(i));
    if (i >= INT32_MIN && i <= INT32_MAX) return Value::Long(static_cast<std::int32_t>(i));
    return Value::Double(static_cast<double>(i));
}

Value realValue(FieldType type, double d) {
    if (type == FieldType::Date) return Value::Date(d);
    if (type == FieldType::Boolean) return Value::Bool(d != 0);
    if (isIntegerType(type) && std::floor(d) == d && std::fabs(d) < 2147483648.0)
        return integerValue(type, static_cast<std::int64_t>(d));
    return Value::Double(d);
}

// "YYYY-MM-DD", the form almost every stored date has, read without the general parser: registers
// read thousands of them.
std::optional<double> plainIsoDay(std::string_view s) {
    if (s.size() != 10 || s[4] != '-' || s[7] != '-') return std::nullopt;
    unsigned d[10];
    for (std::size_t i = 0; i < 10; ++i) {
        d[i] = static_cast<unsigned char>(s[i]) - unsigned{'0'};
        if (d[i] > 9 && i != 4 && i != 7) return std::nullopt;
    }
    const int year = static_cast<int>(d[0] * 1000 + d[1] * 100 + d[2] * 10 + d[3]);
    const int month = static_cast<int>(d[5] * 10 + d[6]), day = static_cast<int>(d[8] * 10 + d[9]);
    if (!ValidDate(year, month, day)) return std::nullopt;
    return DateSerial(year, month, day);
}

Value textValue(FieldType type, std::string s) {
    if (type == FieldType::Date) {
        if (auto d = plainIsoDay(s)) return Value::Date(*d);
        if (auto d = DateFromIso(s)) return Value::Date(*d);
    }
    return Value::Text(std::move(s));
}

void packNumber(RowBuffer& buffer, Value::Kind kind, double d) {
    char* p = buffer.extend(1 + sizeof d);
    p[0] = static_cast<char>(kind);
    std::memcpy(p + 1, &d, sizeof d);
}

void packText(RowBuffer& buffer, std::string_view text) {
    const auto n = static_cast<std::uint32_t>(text.size());
    char* p = buffer.extend(1 + sizeof n + text.size());
    p[0] = static_cast<char>(Value::Kind::Text);
    std::memcpy(p + 1, &n, sizeof n);
    if (n) std::memcpy(p + 1 + sizeof n, text.data(), n);
}

Cell intCell(std::int64_t i) { Cell c; c.kind = Cell::Kind::Int; c.i = i; return c; }
Cell realCell(double d) { Cell c; c.kind = Cell::Kind::Real; c.d = d; return c; }
Cell textCell(std::string s) { Cell c; c.kind = Cell::Kind::Text; c.s = std::move(s); return c; }

std::int64_t checkedRange(std::int64_t v, std::int64_t lo, std::int64_t hi) {
    if (v < lo || v > hi) raise(6);
    return v;
}

Cell textStorage(FieldType type, int size, const Value& v, Conversion mode) {
    std::string s = v.kind() == Value::Kind::Text ? v.text() : CStr(v);
    if (type == FieldType::Text && size > 0 && utf8Length(s) > static_cast<std::size_t>(size)) {
        if (mode == Conversion::Strict) raise(3163);
        s = utf8Prefix(s, static_cast<std::size_t>(size));
    }
    return textCell(std::move(s));
}

Cell convertedStorage(FieldType type, int size, const Value& v, Conversion mode) {
    switch (type) {
        case FieldType::Boolean: return intCell(CBool(v) ? -1 : 0);
        case FieldType::Byte: return intCell(checkedRange(CInt(v), 0, 255));
        case FieldType::Integer: return intCell(CInt(v));
        case FieldType::Long: return intCell(CLng(v));
        case FieldType::Single: return realCell(static_cast<double>(static_cast<float>(CDbl(v))));
        case FieldType::Currency: return realCell(Round(CDbl(v), 4));
        case FieldType::Double: return realCell(CDbl(v));
        case FieldType::Date: return textCell(DateToIso(CDate(v)));
        case FieldType::Text:
        case FieldType::Memo: return textStorage(type, size, v, mode);
    }
    return Cell{};
}

}  // namespace

Value readCell(FieldType type, Cell c) {
    switch (c.kind) {
        case Cell::Kind::Null: return Value::Null();
        case Cell::Kind::Int: return type == FieldType::Date ? Value::Date(static_cast<double>(c.i))
                                     : isRealType(type)    ? Value::Double(static_cast<double>(c.i))
                                                           : integerValue(type, c.i);
        case Cell::Kind::Real: return realValue(type, c.d);
        case Cell::Kind::Text: return textValue(type, std::move(c.s));
    }
    return Value::Null();
}

// Blocks double from 4 KB to 256 KB: a recordset of one row stays small.
void RowBuffer::grow(std::size_t n) {
    static constexpr std::size_t kFirst = 4 * 1024, kLargest = 256 * 1024;
    const std::size_t partial = used_ - start_;
    const std::size_t cap = std::max(std::min(kLargest, std::max(kFirst, cap_ * 2)), 2 * (partial + n));
    auto block = std::make_unique_for_overwrite<char[]>(cap);
    if (partial) std::memcpy(block.get(), block_ + start_, partial);
    block_ = block.get();
    blocks_.push_back(std::move(block));
    start_ = 0;
    used_ = partial;
    cap_ = cap;
}

void RowBuffer::clear() {
    blocks_.clear();
    block_ = nullptr;
    used_ = cap_ = start_ = 0;
}

void packValue(RowBuffer& buffer, const Value& v) {
    if (v.kind() == Value::Kind::Text) packText(buffer, v.text());
    else if (v.isNull()) *buffer.extend(1) = static_cast<char>(Value::Kind::Null);
    else packNumber(buffer, v.kind(), v.number());
}

// The common kinds go in without a Value in between: a text as its bytes, a stored date read from
// its ISO text once here rather than at every reading.
void packColumn(RowBuffer& buffer, FieldType type, sqlite3_stmt* s, int column) {
    sqlite3_value* v = sqlite3_column_value(s, column);
    switch (sqlite3_value_type(v)) {
        case SQLITE_NULL: *buffer.extend(1) = static_cast<char>(Value::Kind::Null); return;
        case SQLITE_INTEGER: {
            const std::int64_t i = sqlite3_value_int64(v);
            if (type == FieldType::Long && i >= INT32_MIN && i <= INT32_MAX)
                return packNumber(buffer, Value::Kind::Long, static_cast<double>(i));
            if (type == FieldType::Boolean) return packNumber(buffer, Value::Kind::Boolean, i != 0 ? -1 : 0);
            Cell c;
            c.kind = Cell::Kind::Int;
            c.i = i;
            return packValue(buffer, readCell(type, std::move(c)));
        }
        case SQLITE_FLOAT: {
            const double d = sqlite3_value_double(v);
            if (type == FieldType::Double || type == FieldType::Currency || type == FieldType::Single)
                return packNumber(buffer, Value::Kind::Double, d);
            return packValue(buffer, realValue(type, d));
        }
        default: {
            const char* t = reinterpret_cast<const char*>(sqlite3_value_text(v));
            const std::string_view text(t ? t : "", t ? static_cast<std::size_t>(sqlite3_value_bytes(v)) : 0);
            if (type == FieldType::Date) {
                if (auto d = plainIsoDay(text)) return packNumber(buffer, Value::Kind::Date, *d);
                if (auto d = DateFromIso(text)) return packNumber(buffer, Value::Kind::Date, *d);
            }
            packText(buffer, text);
        }
    }
}

Cell storeValue(FieldType type, int size, const Value& v, Conversion mode) {
    if (v.isNull()) return Cell{};
    if (mode == Conversion::Strict) return convertedStorage(type, size, v, mode);
    try {
        return convertedStorage(type, size, v, mode);
    } catch (const JetError&) {
        return Cell{};
    }
}

namespace {

void setResult(sqlite3_context* ctx, const Cell& c) {
    switch (c.kind) {
        case Cell::Kind::Null: sqlite3_result_null(ctx); break;
        case Cell::Kind::Int: sqlite3_result_int64(ctx, c.i); break;
        case Cell::Kind::Real: sqlite3_result_double(ctx, c.d); break;
        case Cell::Kind::Text:
            sqlite3_result_text(ctx, c.s.data(), static_cast<int>(c.s.size()), SQLITE_TRANSIENT);
            break;
    }
}

Cell cellFromArgument(sqlite3_value* v) {
    Cell c;
    switch (sqlite3_value_type(v)) {
        case SQLITE_INTEGER: c.kind = Cell::Kind::Int; c.i = sqlite3_value_int64(v); break;
        case SQLITE_FLOAT: c.kind = Cell::Kind::Real; c.d = sqlite3_value_double(v); break;
        case SQLITE_NULL: break;
        default: {
            c.kind = Cell::Kind::Text;
            const unsigned char* t = sqlite3_value_text(v);
            if (t) c.s.assign(reinterpret_cast<const char*>(t), static_cast<std::size_t>(sqlite3_value_bytes(v)));
        }
    }
    return c;
}

FieldType typeArgument(sqlite3_value* v) {
    int code = sqlite3_value_int(v);
    return isValidFieldType(code) ? static_cast<FieldType>(code) : FieldType::Memo;
}

// __jet_conv(value, fromType, toType, size): a stored value carried over to a field's new type.
void convertFunction(sqlite3_context* ctx, int, sqlite3_value** argv) {
    Value v = readCell(typeArgument(argv[1]), cellFromArgument(argv[0]));
    setResult(ctx, storeValue(typeArgument(argv[2]), sqlite3_value_int(argv[3]), v, Conversion::Lenient));
}

// __jet_date(), __jet_now(): the defaults Date() and Now() of a field, from the program's clock.
void todayFunction(sqlite3_context* ctx, int, sqlite3_value**) { setResult(ctx, textCell(DateToIso(Oggi()))); }
void nowFunction(sqlite3_context* ctx, int, sqlite3_value**) { setResult(ctx, textCell(DateToIso(Adesso()))); }

}  // namespace

void registerEngineFunctions(sqlite3* db) {
    sqlite3_create_function_v2(db, "__jet_date", 0, SQLITE_UTF8, nullptr, todayFunction, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "__jet_now", 0, SQLITE_UTF8, nullptr, nowFunction, nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(db, "__jet_conv", 4, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, convertFunction,
                               nullptr, nullptr, nullptr);
}

}  // namespace store::detail
