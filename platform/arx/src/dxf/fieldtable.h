// Building blocks of the per-kind field tables.
#pragma once

#include <functional>
#include <type_traits>

#include "arx/dxfkind.h"

namespace dxf {

inline bool isDefault(double v) {
    return v == 0.0;
}
inline bool isDefault(const AcGeVector3d& v) {
    return v == AcGeVector3d::kZAxis;
}
inline bool isDefault(const AcGePoint3d& v) {
    return v == AcGePoint3d::kOrigin;
}
template <class I>
requires std::is_integral_v<I>
bool isDefault(I v) {
    return v == 0;
}

inline AcDbDxfItem toItem(short code, double v, unsigned flags) {
    return AcDbDxfItem::ofReal(code, v, flags & AcDbDxfField::kAngle);
}
inline AcDbDxfItem toItem(short code, const AcGePoint3d& v, unsigned) {
    return AcDbDxfItem::ofPoint(code, v);
}
inline AcDbDxfItem toItem(short code, const AcGeVector3d& v, unsigned) {
    return AcDbDxfItem::ofPoint(code, {v.x, v.y, v.z});
}
template <class I>
requires std::is_integral_v<I> AcDbDxfItem toItem(short code, I v, unsigned) {
    return AcDbDxfItem::ofInt(code, Adesk::Int64(v));
}

template <class V>
V fromItem(const AcDbDxfItem& item) {
    if constexpr (std::is_same_v<V, double>)
        return item.real();
    else if constexpr (std::is_same_v<V, AcGePoint3d>)
        return item.point;
    else if constexpr (std::is_same_v<V, AcGeVector3d>)
        return item.point.asVector();
    else
        return static_cast<V>(item.integer);
}

template <class T, class S, class V>
bool callSetter(T& object, S setter, const V& value) {
    using R = std::invoke_result_t<S, T&, const V&>;
    if constexpr (std::is_same_v<R, Acad::ErrorStatus>)
        return std::invoke(setter, object, value) == Acad::eOk;
    else if constexpr (std::is_same_v<R, bool>)
        return std::invoke(setter, object, value);
    else {
        std::invoke(setter, object, value);
        return true;
    }
}

// A field of one value: Get reads it from the object (member or free function), Set writes it.
template <class T, auto Get, auto Set>
constexpr AcDbDxfField value(short code, unsigned flags = 0) {
    return {code, nullptr, flags,
            [](const AcDbDxfField& f, const AcDbObject& o, AcDbDxfItems& out) {
                const auto v = std::invoke(Get, static_cast<const T&>(o));
                if ((f.flags & AcDbDxfField::kOmitDefault) && isDefault(v)) return;
                out.push_back(toItem(f.code, v, f.flags));
            },
            [](const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
                using V = std::decay_t<std::invoke_result_t<decltype(Get), const T&>>;
                return callSetter(static_cast<T&>(o), Set, fromItem<V>(item));
            }};
}

constexpr AcDbDxfField marker(const ACHAR* text) {
    return {100, text, 0,
            [](const AcDbDxfField& f, const AcDbObject&, AcDbDxfItems& out) {
                out.push_back(AcDbDxfItem::ofText(100, f.marker));
            },
            nullptr};
}

// A field written and read by hand: repeated groups, or values that need care.
constexpr AcDbDxfField custom(short code,
                              void (*write)(const AcDbDxfField&, const AcDbObject&, AcDbDxfItems&),
                              bool (*read)(const AcDbDxfField&, AcDbObject&, const AcDbDxfItem&),
                              short more0 = 0, short more1 = 0, short more2 = 0) {
    return {code, nullptr, 0, write, read, {more0, more1, more2, 0}};
}

// Registers a kind when the library loads.
struct Registrar {
    explicit Registrar(const AcDbDxfKind* kind) { acdbDxfAddKind(kind); }
};

} // namespace dxf

// The kind of CLASS, with its DXF name and its fields.
#define ACDB_DXF_KIND(CLASS, NAME, FIELDS)                                                         \
    namespace {                                                                                    \
    const AcDbDxfKind k##CLASS##Kind{ACRX_T(NAME), &CLASS::desc,                                   \
                                     []() -> AcDbObject* { return new CLASS; }, FIELDS};           \
    const dxf::Registrar k##CLASS##Registrar(&k##CLASS##Kind);                                     \
    }
