#include "model_diff.h"

#include "param_compare.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <numeric>
#include <span>
#include <tuple>

namespace qeltool {

namespace {

struct Unref {
    void operator()(QelObject* o) const {
        if (o) o->UnRef();
    }
};
using Ref = std::unique_ptr<QelObject, Unref>;

// Where an object stands, for pairing by placement: its pose's translation, else the first
// point it holds. Objects with neither stand nowhere, and pair among themselves by order.
struct Place {
    bool known = false;
    double at[3] = {0, 0, 0};
};

bool firstPoint(QelObject& o, const char* name, Place& place) {
    QelParam* p = o.GetParam(name, 0);
    if (!p || p->GetArraySize() < 3) return false;
    if (p->GetType() == QelDoubleArrayType) {
        double* v = nullptr;
        unsigned n = 0;
        p->GetValue(v, n, false);
        std::copy(v, v + 3, place.at);
    } else if (p->GetType() == QelFloatArrayType) {
        float* v = nullptr;
        unsigned n = 0;
        p->GetValue(v, n, false);
        std::copy(v, v + 3, place.at);
    } else {
        return false;
    }
    // A place that is not a number stands nowhere: it could be neither sorted nor measured.
    place.known =
        std::isfinite(place.at[0]) && std::isfinite(place.at[1]) && std::isfinite(place.at[2]);
    return true;
}

Place placeOf(QelObject& o) {
    Place place;
    QelObject* pose = nullptr;
    if (QelParam* p = o.GetParam("pose", 0); p && p->GetType() == QelObjectType) p->GetValue(pose);
    if (pose && firstPoint(*pose, "translation", place)) return place;
    for (const char* name : {"startPoint", "position", "vertices", "poles", "fitPoints",
                             "contourVertices", "points", "pointList"})
        if (firstPoint(o, name, place)) return place;
    return place;
}

double largest(const Place& p) {
    return std::max({std::fabs(p.at[0]), std::fabs(p.at[1]), std::fabs(p.at[2])});
}

bool isGroup(const std::string& className) {
    return className == "GeometricGroup" || className == "ExclusionVolume";
}

// Groups within groups are seldom deeper than this; deeper ones pair by placement.
constexpr int kGroupRounds = 8;

// One file as a model: its objects, and where the structure puts each.
struct Model {
    std::vector<Ref> objects;
    std::vector<std::string> classes;
    std::vector<Place> places;
    std::vector<unsigned> ordinals;                 // rank among the objects of its class
    std::vector<std::vector<std::string>> layersOf; // names of the layers that list it, sorted
    std::vector<std::vector<unsigned>> groupsOf;    // groups that list it
    std::vector<std::string> layerOrder;            // layer names in "layerList" order
    int header = -1, modelSpace = -1, layerMgr = -1;

    unsigned size() const { return unsigned(objects.size()); }

    int first(const char* className) const {
        for (unsigned i = 0; i < size(); ++i)
            if (classes[i] == className) return int(i);
        return -1;
    }

    // The object a single reference of `owner` leads to when it is of the class, else the
    // first of the class.
    int follow(int owner, const char* param, const char* className) const {
        if (owner >= 0)
            if (QelParam* p = objects[owner]->GetParam(param, 0))
                if (auto n = referenceNumbers(*p);
                    n.size() == 1 && n[0] < size() && classes[n[0]] == className)
                    return int(n[0]);
        return first(className);
    }

    std::string stringParam(unsigned id, const char* name) const {
        QelParam* p = objects[id]->GetParam(name, 0);
        if (!p || p->GetType() != QelStringType) return "";
        const char* text = nullptr;
        p->GetValue(text);
        return text;
    }

    std::vector<unsigned> members(unsigned id, const char* name) const {
        std::vector<unsigned> list;
        if (QelParam* p = objects[id]->GetParam(name, 0))
            for (unsigned n : referenceNumbers(*p))
                if (n < size()) list.push_back(n);
        return list;
    }
};

Model load(const std::string& path, std::vector<std::string>& faults) {
    Model m;
    QelReader reader;
    try {
        reader.Open(path.c_str());
    } catch (const QelException& e) {
        faults.push_back(e.GetReason());
        return m;
    }
    const unsigned count = reader.GetObjectCount();
    m.objects.resize(count);
    m.classes.resize(count);
    for (unsigned id = 0; id < count; ++id) {
        try {
            m.objects[id].reset(reader.ReadObject(id));
            if (!m.objects[id])
                faults.push_back(fmt::format("'{}': object {} cannot be read", path, id));
            else
                m.classes[id] = m.objects[id]->GetName();
        } catch (const QelException& e) {
            faults.push_back(e.GetReason());
        }
    }
    return m;
}

void mapStructure(Model& m) {
    const unsigned n = m.size();
    m.places.resize(n);
    m.ordinals.resize(n);
    m.layersOf.resize(n);
    m.groupsOf.resize(n);
    std::map<std::string, unsigned> perClass;
    for (unsigned id = 0; id < n; ++id) {
        m.places[id] = placeOf(*m.objects[id]);
        m.ordinals[id] = perClass[m.classes[id]]++;
    }
    m.header = m.first("Header");
    m.modelSpace = m.follow(m.header, "rootLocation", "ModelSpace");
    m.layerMgr = m.follow(m.modelSpace, "layerMgr", "LayerMgr");
    if (m.layerMgr >= 0)
        if (QelParam* p = m.objects[m.layerMgr]->GetParam("layerList", 0))
            for (unsigned layer : referenceNumbers(*p))
                m.layerOrder.push_back(
                    layer < n && m.classes[layer] == "Layer" ? m.stringParam(layer, "name") : "");
    for (unsigned id = 0; id < n; ++id) {
        if (m.classes[id] == "Layer")
            for (unsigned member : m.members(id, "objectList"))
                m.layersOf[member].push_back(m.stringParam(id, "name"));
        if (isGroup(m.classes[id]))
            for (unsigned member : m.members(id, "objectList"))
                m.groupsOf[member].push_back(id);
    }
    for (auto& names : m.layersOf)
        std::sort(names.begin(), names.end());
    // A group that lists a member twice holds it once.
    for (auto& groups : m.groupsOf)
        groups.erase(std::unique(groups.begin(), groups.end()), groups.end());
}

std::string layerText(const std::vector<std::string>& names) {
    return names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", "));
}

Outcome outcomeOf(const std::vector<ParamChange>& changes) {
    Outcome outcome = Outcome::Equal;
    for (const ParamChange& c : changes) {
        if (c.change != Change::WithinTolerance) return Outcome::Changed;
        outcome = Outcome::WithinTolerance;
    }
    return outcome;
}

class Matcher {
public:
    Matcher(Model& a, Model& b, double tolerance) : m_a(a), m_b(b), m_tolerance(tolerance) {
        m_pairing.aToB.assign(a.size(), -1);
        m_pairing.bToA.assign(b.size(), -1);
        m_pairing.classA = a.classes;
        m_pairing.classB = b.classes;
        m_pairing.layersA = a.layerOrder;
        m_pairing.layersB = b.layerOrder;
    }

    DiffReport run() {
        pairStructure();
        std::map<std::string, std::pair<std::vector<unsigned>, std::vector<unsigned>>> byClass;
        for (unsigned id = 0; id < m_a.size(); ++id)
            if (m_pairing.aToB[id] < 0) byClass[m_a.classes[id]].first.push_back(id);
        for (unsigned id = 0; id < m_b.size(); ++id)
            if (m_pairing.bToA[id] < 0) byClass[m_b.classes[id]].second.push_back(id);
        // Groups last: they pair by their members first, which must have paired before them.
        for (bool groups : {false, true}) {
            if (groups) pairGroups();
            for (auto& [name, lists] : byClass)
                if (isGroup(name) == groups) {
                    pairCoincident(lists.first, lists.second);
                    pairNearest(lists.first, lists.second);
                }
        }
        return report();
    }

private:
    void pair(int x, int y) {
        if (x < 0 || y < 0 || m_pairing.aToB[x] >= 0 || m_pairing.bToA[y] >= 0 ||
            m_a.classes[x] != m_b.classes[y])
            return;
        m_pairing.aToB[x] = y;
        m_pairing.bToA[y] = x;
    }

    // The objects that hold the file together pair by their place in it; layers by name.
    void pairStructure() {
        pair(m_a.header, m_b.header);
        pair(m_a.modelSpace, m_b.modelSpace);
        pair(m_a.layerMgr, m_b.layerMgr);
        std::map<std::string, std::pair<std::vector<unsigned>, std::vector<unsigned>>> layers;
        for (unsigned id = 0; id < m_a.size(); ++id)
            if (m_a.classes[id] == "Layer") layers[m_a.stringParam(id, "name")].first.push_back(id);
        for (unsigned id = 0; id < m_b.size(); ++id)
            if (m_b.classes[id] == "Layer")
                layers[m_b.stringParam(id, "name")].second.push_back(id);
        for (const auto& [name, lists] : layers)
            for (std::size_t i = 0; i < lists.first.size() && i < lists.second.size(); ++i)
                pair(int(lists.first[i]), int(lists.second[i]));
        pair(m_a.first("ModelSpaceView"), m_b.first("ModelSpaceView"));
        pair(m_a.first("CoordSysMgr"), m_b.first("CoordSysMgr"));
    }

    std::vector<ParamChange> changesOf(unsigned x, unsigned y) const {
        std::vector<ParamChange> changes =
            compareObjects(*m_a.objects[x], *m_b.objects[y], m_tolerance, m_pairing);
        if (m_a.layersOf[x] != m_b.layersOf[y])
            changes.push_back({"layer", Change::Changed, "", "", layerText(m_a.layersOf[x]),
                               layerText(m_b.layersOf[y]), 0, ""});
        return changes;
    }

    bool samePlace(const Place& p, const Place& q) const {
        if (!p.known || !q.known) return p.known == q.known;
        const double scale = std::max(largest(p), largest(q));
        for (int i = 0; i < 3; ++i)
            if (std::fabs(p.at[i] - q.at[i]) > m_tolerance * scale) return false;
        return true;
    }

    // A group stands for its members, not for where it stands: it pairs with the group of its
    // class whose members pair with the most of its own, then the one nearest in size, then in
    // order. A group of groups pairs in a later round, once its member groups have.
    void pairGroups() {
        struct Candidate {
            long shared, sizeGap, order;
            unsigned x, y;
        };
        for (int round = 0; round < kGroupRounds; ++round) {
            std::vector<Candidate> all;
            for (unsigned x = 0; x < m_a.size(); ++x) {
                if (!isGroup(m_a.classes[x]) || m_pairing.aToB[x] >= 0) continue;
                std::vector<unsigned> own = m_a.members(x, "objectList");
                std::sort(own.begin(), own.end());
                own.erase(std::unique(own.begin(), own.end()), own.end());
                std::map<unsigned, long> shared; // group of B -> members in common
                for (unsigned member : own)
                    if (const int partner = m_pairing.aToB[member]; partner >= 0)
                        for (unsigned y : m_b.groupsOf[unsigned(partner)])
                            if (m_pairing.bToA[y] < 0 && m_b.classes[y] == m_a.classes[x])
                                ++shared[y];
                for (const auto& [y, count] : shared)
                    all.push_back(
                        {count,
                         std::abs(long(own.size()) - long(m_b.members(y, "objectList").size())),
                         std::abs(long(m_a.ordinals[x]) - long(m_b.ordinals[y])), x, y});
            }
            std::sort(all.begin(), all.end(), [](const Candidate& p, const Candidate& q) {
                return std::tuple(-p.shared, p.sizeGap, p.order, p.x) <
                       std::tuple(-q.shared, q.sizeGap, q.order, q.x);
            });
            bool paired = false;
            for (const Candidate& c : all)
                if (m_pairing.aToB[c.x] < 0 && m_pairing.bToA[c.y] < 0) {
                    pair(int(c.x), int(c.y));
                    paired = true;
                }
            if (!paired) return;
        }
    }

    // Objects at the same place within the tolerance: each of A takes the candidate of B that
    // it agrees with best, then the one on the same layers, then the one nearest in order.
    void pairCoincident(const std::vector<unsigned>& la, const std::vector<unsigned>& lb) {
        // Candidates are sought in a window of x, sorted; those that stand nowhere apart.
        std::vector<unsigned> sorted, nowhere;
        double reach = 0;
        for (unsigned y : lb) {
            (m_b.places[y].known ? sorted : nowhere).push_back(y);
            if (m_b.places[y].known) reach = std::max(reach, largest(m_b.places[y]));
        }
        std::sort(sorted.begin(), sorted.end(), [&](unsigned p, unsigned q) {
            return m_b.places[p].at[0] < m_b.places[q].at[0];
        });
        for (unsigned x : la) {
            const Place& p = m_a.places[x];
            std::vector<unsigned> candidates;
            if (!p.known) {
                candidates = nowhere;
            } else {
                const double window = m_tolerance * std::max(reach, largest(p));
                auto from =
                    std::lower_bound(sorted.begin(), sorted.end(), p.at[0] - window,
                                     [&](unsigned y, double v) { return m_b.places[y].at[0] < v; });
                for (auto it = from;
                     it != sorted.end() && m_b.places[*it].at[0] <= p.at[0] + window; ++it)
                    if (samePlace(p, m_b.places[*it])) candidates.push_back(*it);
            }
            pickBest(x, candidates);
        }
    }

    void pickBest(unsigned x, std::vector<unsigned>& candidates) {
        std::erase_if(candidates, [&](unsigned y) { return m_pairing.bToA[y] >= 0; });
        const auto distance = [&](unsigned y) {
            return std::abs(long(m_a.ordinals[x]) - long(m_b.ordinals[y]));
        };
        std::stable_sort(candidates.begin(), candidates.end(),
                         [&](unsigned p, unsigned q) { return distance(p) < distance(q); });
        // Objects that stand nowhere can be many: the nearest in order are enough.
        constexpr std::size_t kTried = 32;
        if (candidates.size() > kTried) candidates.resize(kTried);
        int best = -1;
        std::tuple<int, std::size_t, bool, long> bestScore;
        for (unsigned y : candidates) {
            const std::vector<ParamChange> changes = changesOf(x, y);
            const std::tuple<int, std::size_t, bool, long> score{
                int(outcomeOf(changes)), changes.size(), m_a.layersOf[x] != m_b.layersOf[y],
                distance(y)};
            if (best < 0 || score < bestScore) {
                best = int(y);
                bestScore = score;
            }
        }
        pair(int(x), best);
    }

    // What is left of a class pairs by distance, so that a moved object shows as moved rather
    // than as one removed and one added.
    void pairNearest(const std::vector<unsigned>& la, const std::vector<unsigned>& lb) {
        std::vector<unsigned> restA, restB;
        for (unsigned x : la)
            if (m_pairing.aToB[x] < 0) restA.push_back(x);
        for (unsigned y : lb)
            if (m_pairing.bToA[y] < 0) restB.push_back(y);
        if (restA.empty() || restB.empty()) return;
        constexpr std::size_t kMostPairs = 250000;
        if (restA.size() * restB.size() > kMostPairs) {
            for (std::size_t i = 0; i < restA.size() && i < restB.size(); ++i)
                pair(int(restA[i]), int(restB[i]));
            return;
        }
        struct Candidate {
            double distance;
            bool otherLayer;
            long order;
            unsigned x, y;
        };
        std::vector<Candidate> all;
        for (unsigned x : restA)
            for (unsigned y : restB) {
                const Place &p = m_a.places[x], &q = m_b.places[y];
                const double d =
                    p.known != q.known ? HUGE_VAL
                    : p.known ? std::hypot(p.at[0] - q.at[0], p.at[1] - q.at[1], p.at[2] - q.at[2])
                              : 0;
                all.push_back({d, m_a.layersOf[x] != m_b.layersOf[y],
                               std::abs(long(m_a.ordinals[x]) - long(m_b.ordinals[y])), x, y});
            }
        std::sort(all.begin(), all.end(), [](const Candidate& p, const Candidate& q) {
            return std::tie(p.distance, p.otherLayer, p.order, p.x) <
                   std::tie(q.distance, q.otherLayer, q.order, q.x);
        });
        for (const Candidate& c : all)
            pair(int(c.x), int(c.y));
    }

    std::string whereOf(const Model& m, unsigned id) const {
        if (!m.layersOf[id].empty()) return "on layer " + layerText(m.layersOf[id]);
        if (!m.groupsOf[id].empty())
            return fmt::format("in group {}", fmt::join(m.groupsOf[id], ", "));
        return "on no layer";
    }

    DiffReport report() const {
        DiffReport r;
        r.tolerance = m_tolerance;
        r.objectsA = m_a.size();
        r.objectsB = m_b.size();
        std::map<std::string, ClassTally> tally;
        for (unsigned x = 0; x < m_a.size(); ++x) {
            ClassTally& t = tally[m_a.classes[x]];
            ++t.inA;
            const int y = m_pairing.aToB[x];
            if (y < 0) {
                ++t.onlyA;
                r.onlyA.push_back({x, m_a.classes[x], whereOf(m_a, x)});
                continue;
            }
            ObjectPair p{x, unsigned(y), m_a.classes[x], Outcome::Equal, changesOf(x, unsigned(y))};
            p.outcome = outcomeOf(p.changes);
            ++(p.outcome == Outcome::Equal             ? t.equal
               : p.outcome == Outcome::WithinTolerance ? t.withinTolerance
                                                       : t.changed);
            r.pairs.push_back(std::move(p));
        }
        for (unsigned y = 0; y < m_b.size(); ++y) {
            ClassTally& t = tally[m_b.classes[y]];
            ++t.inB;
            if (m_pairing.bToA[y] < 0) {
                ++t.onlyB;
                r.onlyB.push_back({y, m_b.classes[y], whereOf(m_b, y)});
            }
        }
        for (auto& [name, t] : tally) {
            t.className = name;
            r.classes.push_back(t);
        }
        return r;
    }

    Model& m_a;
    Model& m_b;
    double m_tolerance;
    FilePairing m_pairing;
};

} // namespace

bool DiffReport::equal() const {
    return onlyA.empty() && onlyB.empty() &&
           std::none_of(pairs.begin(), pairs.end(),
                        [](const ObjectPair& p) { return p.outcome == Outcome::Changed; });
}

DiffReport compareFiles(const std::string& pathA, const std::string& pathB, double tolerance) {
    std::vector<std::string> faults;
    Model a = load(pathA, faults);
    Model b = load(pathB, faults);
    if (!faults.empty()) throw DiffReadError(fmt::format("{}", fmt::join(faults, "\n")));
    mapStructure(a);
    mapStructure(b);
    return Matcher(a, b, tolerance).run();
}

} // namespace qeltool
