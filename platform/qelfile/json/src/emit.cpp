// Prints objects in the JSON form, one param a line, numbers in their shortest exact form.
#include <qel/qel_json.h>
#include <qel/qel_types.h>

#include <nlohmann/json.hpp>

#include <charconv>
#include <cmath>
#include <ostream>

namespace qeljson {

namespace {

// Doubles and floats print as the shortest text that reads back to the same value; values JSON
// has no number for print as strings.
template <typename T>
void number(std::string& out, T v) {
    if (std::isnan(v)) {
        out += "\"NaN\"";
        return;
    }
    if (std::isinf(v)) {
        out += v > 0 ? "\"Infinity\"" : "\"-Infinity\"";
        return;
    }
    if (v == 0 && std::signbit(v)) {
        out += "-0.0"; // a plain -0 reads back as the integer 0
        return;
    }
    char text[64];
    auto [end, ec] = std::to_chars(text, text + sizeof text, v);
    out.append(text, end);
}

template <typename T>
void integer(std::string& out, T v) {
    char text[32];
    auto [end, ec] = std::to_chars(text, text + sizeof text, v);
    out.append(text, end);
}

// Text that is not valid UTF-8 (a narrow string in some other code page) can't stand in JSON as
// it is, so it is kept byte for byte in hexadecimal.
void string(std::string& out, const std::string& s) {
    try {
        out += nlohmann::json(s).dump();
    } catch (const nlohmann::json::type_error&) {
        static const char digits[] = "0123456789abcdef";
        out += "{ \"hex\": \"";
        for (unsigned char c : s) {
            out += digits[c >> 4];
            out += digits[c & 15];
        }
        out += "\" }";
    }
}

void indent(std::string& out, int depth) {
    out.append(static_cast<std::size_t>(depth) * 4, ' ');
}

template <typename T, typename Put>
void array(std::string& out, QelParam& p, int depth, Put put) {
    T* values = nullptr;
    unsigned count = 0;
    p.GetValue(values, count, false);
    out += '[';
    const bool wrap = count > 16;
    for (unsigned i = 0; i < count; ++i) {
        if (i) out += ',';
        if (wrap && i % 8 == 0) {
            out += '\n';
            indent(out, depth + 1);
        } else if (i) {
            out += ' ';
        }
        put(out, values[i]);
    }
    out += ']';
}

void object(std::string& out, const QelObject& obj, int depth);

template <typename T>
T scalar(const QelParam& p) {
    T v{};
    p.GetValue(v);
    return v;
}

void value(std::string& out, QelParam& p, int depth) {
    switch (p.GetType()) {
    case QelBoolType:
        out += scalar<bool>(p) ? "true" : "false";
        return;
    case QelShortType:
        return integer(out, scalar<short>(p));
    case QelIntType:
        return integer(out, scalar<int>(p));
    case QelUIntType:
        return integer(out, scalar<unsigned>(p));
    case QelFloatType:
        return number(out, scalar<float>(p));
    case QelDoubleType:
        return number(out, scalar<double>(p));
    case QelStringType:
        return string(out, scalar<const char*>(p));
    case QelObjectType: {
        QelObject* v;
        p.GetValue(v);
        if (!v)
            out += "null";
        else
            object(out, *v, depth);
        return;
    }
    case QelByteArrayType:
        return array<unsigned char>(out, p, depth, integer<unsigned char>);
    case QelShortArrayType:
        return array<short>(out, p, depth, integer<short>);
    case QelIntArrayType:
        return array<int>(out, p, depth, integer<int>);
    case QelUIntArrayType:
        return array<unsigned>(out, p, depth, integer<unsigned>);
    case QelFloatArrayType:
        return array<float>(out, p, depth, number<float>);
    case QelDoubleArrayType:
        return array<double>(out, p, depth, number<double>);
    default:
        out += "null";
        return;
    }
}

void object(std::string& out, const QelObject& obj, int depth) {
    out += "{ \"class\": ";
    string(out, obj.GetName());
    out += ", \"params\": [";
    const unsigned count = obj.GetParamCount();
    for (unsigned i = 0; i < count; ++i) {
        QelParam* p = obj.GetParam(i);
        out += i ? ",\n" : "\n";
        indent(out, depth + 1);
        out += '[';
        string(out, p->GetName());
        out += ", \"";
        out += QelTypeName(p->GetType());
        out += "\", ";
        value(out, *p, depth + 1);
        out += ']';
    }
    out += count ? " ] }" : "] }";
}

} // namespace

std::string objectToJson(const QelObject& obj) {
    std::string out;
    object(out, obj, 1);
    return out;
}

void dump(QelReader& reader, std::ostream& out) {
    out << "{ \"format\": \"qel-json-1\",\n  \"objects\": [";
    const unsigned count = reader.GetObjectCount();
    std::string text;
    for (unsigned id = 0; id < count; ++id) {
        QelObject* obj = reader.ReadObject(id);
        text.clear();
        text += id ? ",\n    " : "\n    ";
        object(text, *obj, 1);
        obj->UnRef();
        out << text;
    }
    out << (count ? " ] }\n" : "] }\n");
}

} // namespace qeljson
