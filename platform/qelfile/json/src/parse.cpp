// Builds objects from the JSON form. Every fault names the object and param it was found in.
#include <qel/qel_json.h>
#include <qel/qel_types.h>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <memory>
#include <type_traits>
#include <vector>

using nlohmann::json;

namespace qeljson {

namespace {

constexpr unsigned kMaxDepth = 64;

struct Unref {
    void operator()(QelObject* o) const {
        if (o) o->UnRef();
    }
};
using ObjectPtr = std::unique_ptr<QelObject, Unref>;

class Builder {
public:
    explicit Builder(std::string source) : m_source(std::move(source)) {}

    ObjectPtr object(const json& j, const std::string& where, unsigned depth);

private:
    template <typename... Args>
    [[noreturn]] void bad(const std::string& where, fmt::format_string<Args...> text,
                          Args&&... args) {
        throw JsonError(fmt::format("{}: {}: {}", m_source, where,
                                    fmt::format(text, std::forward<Args>(args)...)));
    }

    QelParam* param(const json& j, const std::string& where, unsigned depth);
    template <typename T>
    T integer(const json& v, const std::string& where);
    template <typename T>
    T real(const json& v, const std::string& where);
    std::string text(const json& v, const std::string& where);
    template <typename T>
    T element(const json& v, const std::string& where);
    template <typename T>
    QelParam* array(const std::string& name, const json& v, const std::string& where);

    std::string m_source;
};

template <typename T>
T Builder::integer(const json& v, const std::string& where) {
    if (!v.is_number_integer()) bad(where, "expected a whole number, found {}", v.dump());
    if (v.is_number_unsigned()) {
        const auto u = v.get<std::uint64_t>();
        if (u > static_cast<std::uint64_t>(std::numeric_limits<T>::max()))
            bad(where, "{} is out of range", u);
        return static_cast<T>(u);
    }
    const auto i = v.get<std::int64_t>();
    if (i < static_cast<std::int64_t>(std::numeric_limits<T>::min()) ||
        i > static_cast<std::int64_t>(std::numeric_limits<T>::max()))
        bad(where, "{} is out of range", i);
    return static_cast<T>(i);
}

template <typename T>
T Builder::real(const json& v, const std::string& where) {
    if (v.is_number()) return static_cast<T>(v.get<double>());
    if (v.is_string()) {
        const auto& s = v.get_ref<const std::string&>();
        if (s == "NaN") return std::numeric_limits<T>::quiet_NaN();
        if (s == "Infinity") return std::numeric_limits<T>::infinity();
        if (s == "-Infinity") return -std::numeric_limits<T>::infinity();
    }
    bad(where, "expected a number, found {}", v.dump());
}

std::string Builder::text(const json& v, const std::string& where) {
    if (v.is_string()) return v.get<std::string>();
    if (v.is_object() && v.size() == 1 && v.contains("hex") && v["hex"].is_string()) {
        const auto& hex = v["hex"].get_ref<const std::string&>();
        if (hex.size() % 2) bad(where, "hex text has an odd number of digits");
        std::string out;
        for (std::size_t i = 0; i < hex.size(); i += 2) {
            auto digit = [&](char c) -> int {
                if (c >= '0' && c <= '9') return c - '0';
                if (c >= 'a' && c <= 'f') return c - 'a' + 10;
                if (c >= 'A' && c <= 'F') return c - 'A' + 10;
                bad(where, "'{}' is not a hex digit", c);
            };
            out += static_cast<char>(digit(hex[i]) * 16 + digit(hex[i + 1]));
        }
        return out;
    }
    bad(where, "expected a string, found {}", v.dump());
}

template <typename T>
T Builder::element(const json& v, const std::string& where) {
    if constexpr (std::is_floating_point_v<T>)
        return real<T>(v, where);
    else
        return integer<T>(v, where);
}

template <typename T>
QelParam* Builder::array(const std::string& name, const json& v, const std::string& where) {
    if (!v.is_array()) bad(where, "expected an array, found {}", v.dump());
    if (v.size() > std::numeric_limits<unsigned>::max()) bad(where, "array is too long");
    std::vector<T> values;
    values.reserve(v.size());
    for (std::size_t i = 0; i < v.size(); ++i)
        values.push_back(element<T>(v[i], fmt::format("{}, element {}", where, i)));
    return QelParam::Create(name.c_str(), values.data(), static_cast<unsigned>(values.size()));
}

QelParam* Builder::param(const json& j, const std::string& at, unsigned depth) {
    if (!j.is_array() || j.size() != 3 || !j[0].is_string() || !j[1].is_string())
        bad(at, "a param must be [name, type, value]");
    const std::string name = j[0].get<std::string>();
    const std::string typeText = j[1].get<std::string>();
    const std::string where = fmt::format("{} ('{}')", at, name);
    const json& v = j[2];
    const QelParamType type = QelTypeFromName(typeText.c_str());
    const char* n = name.c_str();
    switch (type) {
    case QelBoolType:
        if (!v.is_boolean()) bad(where, "expected true or false, found {}", v.dump());
        return QelParam::Create(n, v.get<bool>());
    case QelShortType:
        return QelParam::Create(n, integer<short>(v, where));
    case QelIntType:
        return QelParam::Create(n, integer<int>(v, where));
    case QelUIntType:
        return QelParam::Create(n, integer<unsigned>(v, where));
    case QelFloatType:
        return QelParam::Create(n, real<float>(v, where));
    case QelDoubleType:
        return QelParam::Create(n, real<double>(v, where));
    case QelStringType:
        return QelParam::Create(n, text(v, where).c_str());
    case QelObjectType: {
        if (v.is_null()) return QelParam::Create(n, static_cast<QelObject*>(nullptr));
        ObjectPtr child = object(v, where, depth + 1);
        return QelParam::Create(n, child.get());
    }
    case QelByteArrayType:
        return array<unsigned char>(name, v, where);
    case QelShortArrayType:
        return array<short>(name, v, where);
    case QelIntArrayType:
        return array<int>(name, v, where);
    case QelUIntArrayType:
        return array<unsigned>(name, v, where);
    case QelFloatArrayType:
        return array<float>(name, v, where);
    case QelDoubleArrayType:
        return array<double>(name, v, where);
    default:
        bad(where, "unknown type '{}'", typeText);
    }
}

ObjectPtr Builder::object(const json& j, const std::string& where, unsigned depth) {
    if (depth > kMaxDepth) bad(where, "objects nested deeper than {}", kMaxDepth);
    if (!j.is_object() || !j.contains("class") || !j["class"].is_string())
        bad(where, "an object needs a \"class\" name");
    const std::string className = j["class"].get<std::string>();
    ObjectPtr result(QelObject::Create(className.c_str()));
    if (!j.contains("params")) return result;
    const json& params = j["params"];
    if (!params.is_array()) bad(where, "\"params\" of '{}' must be a list", className);
    for (std::size_t i = 0; i < params.size(); ++i) {
        QelParam* p =
            param(params[i], fmt::format("{} ('{}'), param {}", where, className, i), depth);
        if (result->GetParam(p->GetName(), 0)) {
            const std::string dup = p->GetName();
            result->AddOrReplaceParam(p); // hands the param over before reporting
            bad(where, "'{}' has two params named '{}'", className, dup);
        }
        result->AddOrReplaceParam(p);
    }
    return result;
}

json parseText(const std::string& text, const std::string& source) {
    try {
        return json::parse(text);
    } catch (const json::parse_error& e) {
        throw JsonError(fmt::format("{}: not valid JSON: {}", source, e.what()));
    }
}

} // namespace

QelObject* objectFromJson(const std::string& text, const std::string& source) {
    Builder builder(source);
    return builder.object(parseText(text, source), "object", 0).release();
}

void build(const std::string& text, const std::string& source, const std::string& qelPath) {
    const json doc = parseText(text, source);
    if (!doc.is_object() || doc.value("format", std::string()) != "qel-json-1")
        throw JsonError(
            fmt::format("{}: not a QEL JSON file (\"format\" must be \"qel-json-1\")", source));
    if (!doc.contains("objects") || !doc["objects"].is_array())
        throw JsonError(fmt::format("{}: \"objects\" must be a list", source));
    Builder builder(source);
    // Build every object before the file is opened, so that a fault leaves nothing behind.
    std::vector<ObjectPtr> objects;
    const json& list = doc["objects"];
    objects.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        objects.push_back(builder.object(list[i], fmt::format("object {}", i), 0));
    QelWriter writer(qelPath.c_str());
    for (const ObjectPtr& o : objects)
        writer.WriteObject(o.get());
    writer.Close();
}

} // namespace qeljson
