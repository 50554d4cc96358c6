#include "param_compare.h"

#include "references.h"
#include "shape_symmetry.h"

#include <qel/qel_types.h>

#include <fmt/format.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <map>
#include <span>
#include <string_view>

namespace qeltool {

std::vector<unsigned> referenceNumbers(QelParam& param) {
    if (param.GetType() == QelUIntType) {
        unsigned v = 0;
        param.GetValue(v);
        return {v};
    }
    if (param.GetType() == QelUIntArrayType) {
        unsigned* v = nullptr;
        unsigned n = 0;
        param.GetValue(v, n, false);
        return std::vector<unsigned>(v, v + n);
    }
    return {};
}

namespace {

template <typename T>
std::span<const T> arrayOf(QelParam& p) {
    T* values = nullptr;
    unsigned count = 0;
    p.GetValue(values, count, false);
    return {values, count};
}

template <typename T>
T scalarOf(const QelParam& p) {
    T value{};
    p.GetValue(value);
    return value;
}

template <typename T>
std::string element(T v) {
    if constexpr (std::is_same_v<T, unsigned char>)
        return std::to_string(unsigned(v));
    else
        return fmt::format("{}", v);
}

// An array as text: whole when short, else its first values and its length.
template <typename T>
std::string listText(std::span<const T> values) {
    constexpr std::size_t kShown = 8;
    std::string text = "[";
    for (std::size_t i = 0; i < values.size() && i < kShown; ++i)
        text += (i ? ", " : "") + element(values[i]);
    if (values.size() > kShown) text += fmt::format(", ... {} values", values.size());
    return text + "]";
}

std::string valueText(QelParam& p) {
    switch (p.GetType()) {
    case QelBoolType:
        return scalarOf<bool>(p) ? "true" : "false";
    case QelShortType:
        return element(scalarOf<short>(p));
    case QelIntType:
        return element(scalarOf<int>(p));
    case QelUIntType:
        return element(scalarOf<unsigned>(p));
    case QelFloatType:
        return element(scalarOf<float>(p));
    case QelDoubleType:
        return element(scalarOf<double>(p));
    case QelStringType:
        return fmt::format("\"{}\"", scalarOf<const char*>(p));
    case QelObjectType: {
        QelObject* child = scalarOf<QelObject*>(p);
        return child ? child->GetName() : "none";
    }
    case QelByteArrayType:
        return listText(arrayOf<unsigned char>(p));
    case QelShortArrayType:
        return listText(arrayOf<short>(p));
    case QelIntArrayType:
        return listText(arrayOf<int>(p));
    case QelUIntArrayType:
        return listText(arrayOf<unsigned>(p));
    case QelFloatArrayType:
        return listText(arrayOf<float>(p));
    case QelDoubleArrayType:
        return listText(arrayOf<double>(p));
    default:
        return "?";
    }
}

template <typename T>
bool sameBits(T a, T b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// How two lists of reals differ. Each element is measured against the largest magnitude in
// either list: the values of an array are coordinates of one thing, so a zero beside a 5 may
// move by 5 times the tolerance. A lone value is a list of one.
struct RealsCompared {
    bool identical = true;
    double worst = 0; // the largest relative difference; infinite for a lost finite value
    std::size_t at = 0;
};

template <typename T>
RealsCompared compareReals(std::span<const T> a, std::span<const T> b) {
    double scale = 0;
    for (std::span<const T> list : {a, b})
        for (T v : list)
            if (std::isfinite(v)) scale = std::max(scale, std::fabs(double(v)));
    RealsCompared result;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (sameBits(a[i], b[i])) continue;
        if (std::isnan(a[i]) && std::isnan(b[i])) continue;
        const double gap = std::fabs(double(a[i]) - double(b[i])); // 0 for 0 and -0
        const double d = !std::isfinite(gap) ? HUGE_VAL : gap == 0 ? 0 : gap / scale;
        if (result.identical || d > result.worst) {
            result.worst = d;
            result.at = i;
        }
        result.identical = false;
    }
    return result;
}

class Comparer {
public:
    Comparer(double tolerance, const FilePairing& pairing, Symmetry symmetry,
             std::vector<ParamChange>& out)
        : m_tolerance(tolerance), m_pairing(pairing), m_symmetry(symmetry), m_out(out) {}

    void objects(QelObject& a, QelObject& b, const std::string& prefix) {
        std::map<std::string, std::vector<unsigned>> positionsB;
        for (unsigned i = 0; i < b.GetParamCount(); ++i)
            if (QelParam* p = b.GetParam(i)) positionsB[p->GetName()].push_back(i);
        std::vector<bool> pairedB(b.GetParamCount(), false);
        std::map<std::string, std::size_t> seenA;
        for (unsigned i = 0; i < a.GetParamCount(); ++i) {
            QelParam* pa = a.GetParam(i);
            if (!pa) continue;
            const std::string name = pa->GetName();
            const std::size_t occurrence = seenA[name]++;
            const auto& candidates = positionsB[name];
            if (occurrence >= candidates.size()) {
                lone(a.GetName(), *pa, prefix + name, Change::Removed);
                continue;
            }
            pairedB[candidates[occurrence]] = true;
            param(a.GetName(), *pa, *b.GetParam(candidates[occurrence]), prefix + name);
        }
        for (unsigned i = 0; i < b.GetParamCount(); ++i)
            if (QelParam* pb = b.GetParam(i); pb && !pairedB[i])
                lone(b.GetName(), *pb, prefix + pb->GetName(), Change::Added);
    }

private:
    void lone(std::string_view owner, QelParam& p, const std::string& path, Change change) {
        if (owner != "Transformation" && std::string_view(p.GetName()) == "pose" &&
            lonePose(p, path, change))
            return;
        ParamChange c{path, change, "", "", "", "", 0, ""};
        const std::string_view name = p.GetName();
        const bool added = change == Change::Added;
        // A pose without a rotation stands unturned: a turn by nothing in the other file, or a
        // turn that the shape does not show, is the same model.
        if (owner == "Transformation" && name == "rotation" && p.GetType() == QelDoubleArrayType &&
            p.GetArraySize() == 4) {
            const PoseTurn t =
                comparePoseTurns(symmetryAt(path), nullptr, arrayOf<double>(p).data());
            if (t.turn <= m_tolerance) {
                c.change = Change::WithinTolerance;
                c.difference = t.turn;
                c.note =
                    added ? "no rotation -> a turn by nothing" : "a turn by nothing -> no rotation";
            } else if (t.shape <= m_tolerance) {
                c.change = Change::WithinTolerance;
                c.difference = t.shape;
                c.note = fmt::format("no rotation in {}; {}", added ? "A" : "B",
                                     sameShapeText(symmetryAt(path), t));
            }
        }
        // Nor does a pose without a translation stand anywhere but at the origin.
        if (owner == "Transformation" && name == "translation" &&
            p.GetType() == QelDoubleArrayType && p.GetArraySize() == 3) {
            const auto v = arrayOf<double>(p);
            if (std::all_of(v.begin(), v.end(), [](double x) { return x == 0; })) {
                c.change = Change::WithinTolerance;
                c.note = added ? "no translation -> the origin" : "the origin -> no translation";
            }
        }
        (change == Change::Removed ? c.typeA : c.typeB) = QelTypeName(p.GetType());
        (change == Change::Removed ? c.valueA : c.valueB) = valueText(p);
        m_out.push_back(std::move(c));
    }

    // A pose in one file only is the same model when it places the object as no pose does:
    // then each of its params is told as within tolerance, else the pose as one change.
    bool lonePose(QelParam& p, const std::string& path, Change change) {
        if (p.GetType() != QelObjectType) return false;
        QelObject* pose = scalarOf<QelObject*>(p);
        if (!pose || std::string_view(pose->GetName()) != "Transformation") return false;
        const std::size_t before = m_out.size();
        for (unsigned i = 0; i < pose->GetParamCount(); ++i)
            if (QelParam* q = pose->GetParam(i))
                lone("Transformation", *q, path + "." + q->GetName(), change);
        if (std::all_of(m_out.begin() + long(before), m_out.end(),
                        [](const ParamChange& c) { return c.change == Change::WithinTolerance; }))
            return true;
        m_out.resize(before);
        return false;
    }

    // The shape's symmetry counts for its own pose only, not for the systems a view saves.
    Symmetry symmetryAt(const std::string& path) const {
        return path == "pose.rotation" ? m_symmetry : Symmetry::None;
    }

    void note(QelParam& a, QelParam& b, const std::string& path, Change change,
              double difference = 0, std::string text = "") {
        m_out.push_back({path, change, QelTypeName(a.GetType()), QelTypeName(b.GetType()),
                         valueText(a), valueText(b), difference, std::move(text)});
    }

    void param(std::string_view owner, QelParam& a, QelParam& b, const std::string& path) {
        if (a.GetType() != b.GetType()) return note(a, b, path, Change::Changed);
        if (const ReferenceRule* rule = findReference(owner, a.GetName()))
            return references(*rule, a, b, path);
        if (owner == "ModelSpaceView" && std::string_view(a.GetName()) == "layerOverrides")
            return layerOverrides(a, b, path);
        switch (a.GetType()) {
        case QelFloatType:
            return reals<float>(a, b, path, {scalarOf<float>(a)}, {scalarOf<float>(b)});
        case QelDoubleType:
            return reals<double>(a, b, path, {scalarOf<double>(a)}, {scalarOf<double>(b)});
        case QelFloatArrayType:
            return reals<float>(a, b, path, arrayOf<float>(a), arrayOf<float>(b));
        case QelDoubleArrayType:
            if (owner == "Transformation" && std::string_view(a.GetName()) == "rotation")
                return rotation(a, b, path);
            return reals<double>(a, b, path, arrayOf<double>(a), arrayOf<double>(b));
        case QelByteArrayType:
            return exact(a, b, path, arrayOf<unsigned char>(a), arrayOf<unsigned char>(b));
        case QelShortArrayType:
            return exact(a, b, path, arrayOf<short>(a), arrayOf<short>(b));
        case QelIntArrayType:
            return exact(a, b, path, arrayOf<int>(a), arrayOf<int>(b));
        case QelUIntArrayType:
            return exact(a, b, path, arrayOf<unsigned>(a), arrayOf<unsigned>(b));
        case QelObjectType:
            return nested(a, b, path);
        default:
            if (valueText(a) != valueText(b)) note(a, b, path, Change::Changed);
        }
    }

    template <typename T>
    void reals(QelParam& a, QelParam& b, const std::string& path, std::vector<T> va,
               std::vector<T> vb) {
        reals<T>(a, b, path, std::span<const T>(va), std::span<const T>(vb));
    }

    // Floats are compared at single precision: never finer than their last bit.
    template <typename T>
    void reals(QelParam& a, QelParam& b, const std::string& path, std::span<const T> va,
               std::span<const T> vb) {
        if (va.size() != vb.size()) return sizes(a, b, path, va.size(), vb.size());
        const RealsCompared r = compareReals(va, vb);
        if (r.identical) return;
        const double tolerance =
            std::is_same_v<T, float> ? std::max(m_tolerance, double(FLT_EPSILON)) : m_tolerance;
        const std::string where = va.size() > 1 ? fmt::format("element {}: {} -> {}", r.at,
                                                              element(va[r.at]), element(vb[r.at]))
                                                : "";
        note(a, b, path, r.worst <= tolerance ? Change::WithinTolerance : Change::Changed, r.worst,
             where);
    }

    // A rotation is the turn it stands for: the same turn written with another axis length,
    // the opposite axis and angle, or a whole turn more is the same model; so is a turn the
    // object's shape does not show (a cylinder about its own axis).
    void rotation(QelParam& a, QelParam& b, const std::string& path) {
        const auto va = arrayOf<double>(a), vb = arrayOf<double>(b);
        if (va.size() != 4 || vb.size() != 4) return reals<double>(a, b, path, va, vb);
        if (compareReals(va, vb).identical) return;
        const Symmetry symmetry = symmetryAt(path);
        const PoseTurn t = comparePoseTurns(symmetry, va.data(), vb.data());
        if (t.turn <= m_tolerance)
            return note(a, b, path, Change::WithinTolerance, t.turn,
                        fmt::format("turned by {:.3g} rad", t.turn));
        if (t.shape <= m_tolerance)
            return note(a, b, path, Change::WithinTolerance, t.shape, sameShapeText(symmetry, t));
        if (symmetry == Symmetry::None)
            return note(a, b, path, Change::Changed, t.turn,
                        fmt::format("turned by {:.3g} rad", t.turn));
        note(a, b, path, Change::Changed, t.shape,
             fmt::format("turned by {:.3g} rad; the shape by {:.3g} rad", t.turn, t.shape));
    }

    template <typename T>
    void exact(QelParam& a, QelParam& b, const std::string& path, std::span<const T> va,
               std::span<const T> vb) {
        if (va.size() != vb.size()) return sizes(a, b, path, va.size(), vb.size());
        std::size_t differing = 0, first = 0;
        for (std::size_t i = 0; i < va.size(); ++i)
            if (va[i] != vb[i] && differing++ == 0) first = i;
        if (differing == 0) return;
        note(a, b, path, Change::Changed, 0,
             fmt::format("{} of {} elements differ, the first at {}: {} -> {}", differing,
                         va.size(), first, element(va[first]), element(vb[first])));
    }

    void sizes(QelParam& a, QelParam& b, const std::string& path, std::size_t na, std::size_t nb) {
        note(a, b, path, Change::Changed, 0, fmt::format("{} values -> {} values", na, nb));
    }

    void nested(QelParam& a, QelParam& b, const std::string& path) {
        QelObject* ca = scalarOf<QelObject*>(a);
        QelObject* cb = scalarOf<QelObject*>(b);
        if (!ca && !cb) return;
        if (!ca || !cb || std::string_view(ca->GetName()) != cb->GetName())
            return note(a, b, path, Change::Changed);
        objects(*ca, *cb, path + ".");
    }

    std::string objectName(const std::vector<std::string>& classes, unsigned n) const {
        return n < classes.size() ? fmt::format("{} {}", classes[n], n) : fmt::format("{}", n);
    }

    // Reference numbers mean the objects they lead to. A list is a set of members: the same
    // members in another order are the same model. Members without a partner are told as
    // objects of one file alone, not again here.
    void references(const ReferenceRule& rule, QelParam& a, QelParam& b, const std::string& path) {
        // Which layer an object is on is told with the object.
        if (std::string_view(rule.owner) == "Layer") return;
        const std::vector<unsigned> ra = referenceNumbers(a), rb = referenceNumbers(b);
        std::vector<int> mapped, kept;
        for (unsigned n : ra)
            if (n < m_pairing.aToB.size() && m_pairing.aToB[n] >= 0)
                mapped.push_back(m_pairing.aToB[n]);
        for (unsigned n : rb)
            if (n < m_pairing.bToA.size() && m_pairing.bToA[n] >= 0) kept.push_back(int(n));
        if (mapped == kept) return;
        std::vector<std::string> lost, gained;
        for (unsigned n : ra)
            if (n < m_pairing.aToB.size() && m_pairing.aToB[n] >= 0 &&
                std::find(kept.begin(), kept.end(), m_pairing.aToB[n]) == kept.end())
                lost.push_back(objectName(m_pairing.classA, n));
        for (int n : kept)
            if (std::find(mapped.begin(), mapped.end(), n) == mapped.end())
                gained.push_back(objectName(m_pairing.classB, unsigned(n)));
        if (lost.empty() && gained.empty())
            return note(a, b, path, Change::WithinTolerance, 0,
                        "the same members in another order");
        std::string text;
        if (!lost.empty()) text = fmt::format("without {} (of A)", fmt::join(lost, ", "));
        if (!gained.empty())
            text +=
                fmt::format("{}with {} (of B)", text.empty() ? "" : "; ", fmt::join(gained, ", "));
        note(a, b, path, Change::Changed, 0, text);
    }

    // One word of flags per layer in the order of "layerList": compared layer by layer, by name.
    void layerOverrides(QelParam& a, QelParam& b, const std::string& path) {
        const auto va = arrayOf<unsigned>(a), vb = arrayOf<unsigned>(b);
        if (va.size() != m_pairing.layersA.size() || vb.size() != m_pairing.layersB.size())
            return exact(a, b, path, va, vb);
        std::multimap<std::string, unsigned> flagsA, flagsB;
        for (std::size_t i = 0; i < va.size(); ++i)
            flagsA.emplace(m_pairing.layersA[i], va[i]);
        for (std::size_t i = 0; i < vb.size(); ++i)
            flagsB.emplace(m_pairing.layersB[i], vb[i]);
        if (flagsA == flagsB) {
            if (!std::equal(va.begin(), va.end(), vb.begin(), vb.end()))
                note(a, b, path, Change::WithinTolerance, 0,
                     "the same flags per layer, the layers in another order");
            return;
        }
        std::vector<std::string> differing;
        for (const auto& [name, flags] : flagsA) {
            const auto other = flagsB.find(name);
            if (other == flagsB.end())
                differing.push_back(fmt::format("{}: {} -> no layer", name, flags));
            else if (other->second != flags)
                differing.push_back(fmt::format("{}: {} -> {}", name, flags, other->second));
        }
        for (const auto& [name, flags] : flagsB)
            if (!flagsA.count(name))
                differing.push_back(fmt::format("{}: no layer -> {}", name, flags));
        note(a, b, path, Change::Changed, 0, fmt::format("{}", fmt::join(differing, "; ")));
    }

    double m_tolerance;
    const FilePairing& m_pairing;
    Symmetry m_symmetry;
    std::vector<ParamChange>& m_out;
};

} // namespace

std::vector<ParamChange> compareObjects(QelObject& a, QelObject& b, double tolerance,
                                        const FilePairing& pairing) {
    std::vector<ParamChange> changes;
    // A symmetry counts only where both objects keep it.
    const Symmetry symmetry = symmetryOf(a, tolerance);
    Comparer(tolerance, pairing, symmetry == symmetryOf(b, tolerance) ? symmetry : Symmetry::None,
             changes)
        .objects(a, b, "");
    return changes;
}

} // namespace qeltool
