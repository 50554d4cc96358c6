#include "item_tags.h"

#include <arx/dbmain.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>

#include "utf8.h"

namespace dxf {

bool isPointCode(int code) {
    return (code >= 10 && code <= 18) || (code >= 110 && code <= 112) || code == 210 ||
           (code >= 1010 && code <= 1013);
}

namespace {

constexpr double kDegree = std::numbers::pi / 180.0;

bool isReference(int code) {
    return code >= 330 && code <= 369;
}

// Degrees in the shortest text that reads back to the same radians.
double degreesOf(double radians) {
    const double degrees = radians / kDegree;
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", degrees);
    const double shorter = std::strtod(text, nullptr);
    return shorter * kDegree == radians ? shorter : degrees;
}

} // namespace

std::string handleText(AcDbObjectId id) {
    return formatHandle(id.isNull() ? 0 : Adesk::UInt64(id.handle()));
}

namespace {

// The items of the tags at(first) to at(last - 1).
template <class At>
AcDbDxfItems itemsOf(At at, size_t first, size_t last, AcDbDatabase* db,
                     const std::set<short>& angleCodes, const std::string& source,
                     const std::string& where) {
    AcDbDxfItems items;
    items.reserve(last - first);
    for (size_t i = first; i < last; ++i) {
        const Tag& t = at(i);
        AcDbDxfItem item;
        item.code = short(t.code);
        try {
            if (isPointCode(t.code)) {
                item.point.x = toDouble(t, where);
                if (i + 1 < last && at(i + 1).code == t.code + 10) {
                    item.point.y = toDouble(at(++i), where);
                    if (i + 1 < last && at(i + 1).code == t.code + 20)
                        item.point.z = toDouble(at(++i), where);
                } else {
                    throw DxfError(source, t.line,
                                   where + ": group " + std::to_string(t.code) +
                                       " has no y coordinate after it");
                }
            } else if (isReference(t.code)) {
                const std::uint64_t h = toHandle(t, where);
                if (h != 0) {
                    AcDbObjectId id;
                    if (db->getAcDbObjectId(id, false, AcDbHandle(h)) != Acad::eOk)
                        throw DxfError(source, t.line,
                                       where + ": group " + std::to_string(t.code) +
                                           " refers to handle " + t.value +
                                           ", which no object of the drawing has");
                    item.id = id;
                }
            } else {
                switch (valueType(t.code)) {
                case ValueType::Double:
                    item.point.x = toDouble(t, where);
                    if (angleCodes.count(item.code)) item.point.x *= kDegree;
                    break;
                case ValueType::Int16:
                case ValueType::Int32:
                case ValueType::Int64:
                case ValueType::Bool:
                    item.integer = toInteger(t, where);
                    break;
                case ValueType::Unknown:
                    throw DxfError(source, t.line,
                                   "group code " + std::to_string(t.code) +
                                       " is no code of the file format");
                default:
                    item.text = fromUtf8(t.value);
                    break;
                }
            }
        } catch (const std::invalid_argument& e) {
            throw DxfError(source, t.line, e.what());
        }
        items.push_back(std::move(item));
    }
    return items;
}

} // namespace

AcDbDxfItems itemsFromTags(const Tags& tags, size_t first, size_t last, AcDbDatabase* db,
                           const std::set<short>& angleCodes, const std::string& source,
                           const std::string& where) {
    return itemsOf([&](size_t i) -> const Tag& { return tags[i]; }, first, last, db, angleCodes,
                   source, where);
}

AcDbDxfItems itemsFromTags(const std::vector<const Tag*>& tags, AcDbDatabase* db,
                           const std::set<short>& angleCodes, const std::string& source,
                           const std::string& where) {
    return itemsOf([&](size_t i) -> const Tag& { return *tags[i]; }, 0, tags.size(), db, angleCodes,
                   source, where);
}

void appendTags(Tags& out, const AcDbDxfItems& items, bool flatPoints) {
    for (const AcDbDxfItem& item : items) {
        const int c = item.code;
        if (isPointCode(c)) {
            out.push_back({c, formatDouble(item.point.x)});
            out.push_back({c + 10, formatDouble(item.point.y)});
            if (!(flatPoints && c == 10)) out.push_back({c + 20, formatDouble(item.point.z)});
        } else if (isReference(c)) {
            out.push_back({c, handleText(item.id)});
        } else {
            switch (valueType(c)) {
            case ValueType::Double:
                out.push_back({c, formatDouble(item.angle ? degreesOf(item.real()) : item.real())});
                break;
            case ValueType::Int16:
            case ValueType::Int32:
            case ValueType::Int64:
            case ValueType::Bool:
                out.push_back({c, std::to_string(item.integer)});
                break;
            default:
                out.push_back({c, toUtf8(item.text)});
                break;
            }
        }
    }
}

} // namespace dxf
