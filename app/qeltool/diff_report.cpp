// The comparison's report, as text and as JSON.
#include "model_diff.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace qeltool {

namespace {

const char* changeName(Change c) {
    switch (c) {
    case Change::Added:
        return "added";
    case Change::Removed:
        return "removed";
    case Change::Changed:
        return "changed";
    case Change::WithinTolerance:
        return "within tolerance";
    }
    return "";
}

const char* outcomeName(Outcome o) {
    switch (o) {
    case Outcome::Equal:
        return "equal";
    case Outcome::WithinTolerance:
        return "within tolerance";
    case Outcome::Changed:
        return "changed";
    }
    return "";
}

std::string changeLine(const ParamChange& c) {
    if (c.change == Change::Added)
        return fmt::format("{}: added, {} {}", c.path, c.typeB, c.valueB);
    if (c.change == Change::Removed)
        return fmt::format("{}: removed, was {} {}", c.path, c.typeA, c.valueA);
    // A param absent from one file that still stands for the same model.
    const bool absent = c.typeA.empty() || c.typeB.empty();
    std::string line = fmt::format("{}: {} -> {}", c.path, c.typeA.empty() ? "none" : c.valueA,
                                   c.typeB.empty() ? "none" : c.valueB);
    std::vector<std::string> details;
    if (c.typeA != c.typeB && !absent) details.push_back(fmt::format("{} -> {}", c.typeA, c.typeB));
    // The difference of a rotation is an angle, told by the note.
    const bool turn = c.path == "rotation" || c.path.ends_with(".rotation");
    if (c.difference > 0 && !turn)
        details.push_back(fmt::format("relative difference {:.3g}", c.difference));
    if (!c.note.empty()) details.push_back(c.note);
    if (c.change == Change::WithinTolerance) details.push_back("within tolerance");
    if (!details.empty()) line += fmt::format(" ({})", fmt::join(details, "; "));
    return line;
}

void pairsOf(std::string& out, const DiffReport& r, Outcome outcome, const char* title) {
    std::string lines;
    std::size_t count = 0;
    for (const ObjectPair& p : r.pairs) {
        if (p.outcome != outcome) continue;
        ++count;
        lines += fmt::format("  {}, A {} = B {}\n", p.className, p.a, p.b);
        for (const ParamChange& c : p.changes)
            lines += "    " + changeLine(c) + "\n";
    }
    if (count) out += fmt::format("{} ({}):\n{}", title, count, lines);
}

void lonesOf(std::string& out, const std::vector<LoneObject>& lone, const std::string& title) {
    if (lone.empty()) return;
    out += fmt::format("{} ({}):\n", title, lone.size());
    for (const LoneObject& o : lone)
        out += fmt::format("  {} {}, {}\n", o.number, o.className, o.where);
}

} // namespace

std::string diffText(const DiffReport& r, const std::string& nameA, const std::string& nameB) {
    std::size_t equal = 0, within = 0, changed = 0;
    for (const ObjectPair& p : r.pairs)
        ++(p.outcome == Outcome::Equal             ? equal
           : p.outcome == Outcome::WithinTolerance ? within
                                                   : changed);
    std::string out =
        fmt::format("A: {}, {} objects\nB: {}, {} objects\n", nameA, r.objectsA, nameB, r.objectsB);
    out += fmt::format("Paired {}: {} equal, {} equal within tolerance, {} changed; only in A {}, "
                       "only in B {}\n",
                       r.pairs.size(), equal, within, changed, r.onlyA.size(), r.onlyB.size());
    lonesOf(out, r.onlyA, "Only in A");
    lonesOf(out, r.onlyB, "Only in B");
    pairsOf(out, r, Outcome::Changed, "Changed");
    pairsOf(out, r, Outcome::WithinTolerance, "Equal within tolerance");
    out += fmt::format("{:<24}{:>7}{:>7}{:>7}{:>8}{:>9}{:>8}{:>8}\n", "class", "A", "B", "equal",
                       "within", "changed", "only A", "only B");
    for (const ClassTally& t : r.classes)
        out += fmt::format("{:<24}{:>7}{:>7}{:>7}{:>8}{:>9}{:>8}{:>8}\n", t.className, t.inA, t.inB,
                           t.equal, t.withinTolerance, t.changed, t.onlyA, t.onlyB);
    out += r.equal()
               ? fmt::format("The models are equal within the tolerance ({:g}).\n", r.tolerance)
               : fmt::format("The models differ (tolerance {:g}).\n", r.tolerance);
    return out;
}

std::string diffJson(const DiffReport& r, const std::string& nameA, const std::string& nameB) {
    using nlohmann::json;
    json lone[2] = {json::array(), json::array()};
    for (int side = 0; side < 2; ++side)
        for (const LoneObject& o : side ? r.onlyB : r.onlyA)
            lone[side].push_back(
                {{"number", o.number}, {"class", o.className}, {"where", o.where}});
    json pairs = json::array();
    for (const ObjectPair& p : r.pairs) {
        if (p.outcome == Outcome::Equal) continue;
        json changes = json::array();
        for (const ParamChange& c : p.changes)
            changes.push_back({{"path", c.path},
                               {"change", changeName(c.change)},
                               {"typeA", c.typeA},
                               {"typeB", c.typeB},
                               {"valueA", c.valueA},
                               {"valueB", c.valueB},
                               {"difference", c.difference},
                               {"note", c.note}});
        pairs.push_back({{"a", p.a},
                         {"b", p.b},
                         {"class", p.className},
                         {"outcome", outcomeName(p.outcome)},
                         {"changes", changes}});
    }
    json classes = json::array();
    for (const ClassTally& t : r.classes)
        classes.push_back({{"class", t.className},
                           {"inA", t.inA},
                           {"inB", t.inB},
                           {"equal", t.equal},
                           {"withinTolerance", t.withinTolerance},
                           {"changed", t.changed},
                           {"onlyA", t.onlyA},
                           {"onlyB", t.onlyB}});
    const json out = {{"a", {{"file", nameA}, {"objects", r.objectsA}}},
                      {"b", {{"file", nameB}, {"objects", r.objectsB}}},
                      {"tolerance", r.tolerance},
                      {"equal", r.equal()},
                      {"onlyA", lone[0]},
                      {"onlyB", lone[1]},
                      {"pairs", pairs},
                      {"classes", classes}};
    return out.dump(2, ' ', false, json::error_handler_t::replace) + "\n";
}

} // namespace qeltool
