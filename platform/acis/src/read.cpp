#include "read.h"

#include <algorithm>
#include <map>
#include <set>

#include "geometry.h"
#include "vec.h"

namespace acis {
namespace {

using arxsolids::Brep;
using arxsolids::BrepCoedge;
using arxsolids::BrepFace;
using arxsolids::BrepLoop;
using arxsolids::SurfaceKind;

// Records of a list linked through `nextOf`, ending at -1; a list that comes back on itself is
// broken structure.
template <typename Next>
std::vector<int> listFrom(const SatDocument& doc, int first, Next nextOf, const char* what) {
    std::vector<int> out;
    std::set<int> seen;
    for (int i = first; i >= 0; i = nextOf(i)) {
        if (!seen.insert(i).second)
            throw SatError(doc.records[first].line, std::string("the list of ") + what +
                                                        " starting at $" + std::to_string(first) +
                                                        " runs in a circle");
        out.push_back(i);
    }
    return out;
}

struct CoedgeRecord {
    int index = -1;
    int next = -1, prev = -1, edge = -1;
    bool reversed = false;
};

CoedgeRecord readCoedge(const SatDocument& doc, int index) {
    Fields f(doc, index);
    f.skipCommon();
    CoedgeRecord c;
    c.index = index;
    c.next = f.ref("next coedge", "coedge");
    c.prev = f.ref("previous coedge", "coedge");
    f.ref("partner coedge", "coedge");
    c.edge = f.ref("edge", "edge");
    c.reversed = f.word("sense", "reversed", "forward");
    if (c.edge < 0) f.fail("a coedge needs an edge");
    return c;
}

// One lump's boundary, gathered face by face; edges and vertices shared through the maps.
class LumpReader {
public:
    explicit LumpReader(const SatDocument& doc) : doc_(doc) {}

    void addFace(int index, bool& doubleSided) {
        Fields f(doc_, index);
        f.skipCommon();
        f.ref("next face", "face");
        const int firstLoop = f.ref("first loop", "loop");
        f.ref("shell", "shell");
        f.ref("subshell", "subshell");
        const int surface = f.ref("surface", "-surface");
        const bool reversed = f.word("sense", "reversed", "forward");
        if (f.word("sidedness", "double", "single")) {
            doubleSided = true;
            f.word("containment", "in", "out");
        }
        if (surface < 0) f.fail("a face needs a surface");
        const SurfaceRead s = readSurface(doc_, surface);
        BrepFace face;
        face.surface = s.desc;
        const bool against = s.flipped != reversed;
        if (s.desc.kind == SurfaceKind::kPlane) {
            if (against) face.surface.axis = -face.surface.axis; // a plane's axis faces out
        } else {
            face.reversed = against;
        }
        const auto loops = listFrom(
            doc_, firstLoop,
            [&](int i) {
                Fields l(doc_, i);
                l.skipCommon();
                return l.ref("next loop", "loop");
            },
            "loops");
        std::vector<std::vector<CoedgeRecord>> rings;
        std::map<int, int> uses; // edge record -> coedges of this face on it
        for (int loop : loops) {
            Fields l(doc_, loop);
            l.skipCommon();
            l.ref("next loop", "loop");
            const int first = l.ref("first coedge", "coedge");
            if (first < 0) l.fail("a loop needs a coedge");
            rings.push_back(ring(first));
            for (const CoedgeRecord& c : rings.back())
                ++uses[c.edge];
        }
        for (const auto& ring : rings)
            addLoops(ring, uses, face.loops);
        if (!face.loops.empty()) face.loops.front().outer = true;
        brep_.faces.push_back(std::move(face));
    }

    Brep take() { return std::move(brep_); }

private:
    // The coedges of a loop, following `next` until it comes back to the first.
    std::vector<CoedgeRecord> ring(int first) {
        std::vector<CoedgeRecord> out;
        int at = first;
        do {
            if (out.size() > doc_.records.size())
                throw SatError(doc_.records[first].line, "the coedges from $" +
                                                             std::to_string(first) +
                                                             " never come back to it");
            out.push_back(readCoedge(doc_, at));
            const CoedgeRecord& c = out.back();
            if (c.next < 0)
                throw SatError(doc_.records[at].line,
                               "coedge $" + std::to_string(at) + ": the loop is open here");
            if (readCoedge(doc_, c.next).prev != at)
                throw SatError(doc_.records[c.next].line, "coedge $" + std::to_string(c.next) +
                                                              ": its previous coedge is not $" +
                                                              std::to_string(at) +
                                                              ", which names it as next");
            at = c.next;
        } while (at != first);
        return out;
    }

    // A loop without its seams (edges the face runs twice) and collapsed edges (no curve),
    // as the kernel's boundary leaves them out.
    void addLoops(const std::vector<CoedgeRecord>& ring, const std::map<int, int>& uses,
                  std::vector<BrepLoop>& out) {
        std::vector<arxsolids::RingCoedge> kept;
        for (const CoedgeRecord& c : ring) {
            arxsolids::RingCoedge r;
            r.coedge.edge = uses.at(c.edge) > 1 ? -1 : edgeIndex(c.edge);
            r.kept = r.coedge.edge >= 0;
            if (r.kept) {
                r.coedge.reversed = c.reversed;
                const auto& e = brep_.edges[r.coedge.edge];
                r.vertex = c.reversed ? e.endVertex : e.startVertex;
            }
            kept.push_back(r);
        }
        for (BrepLoop& loop : arxsolids::loopsOfRing(kept, false))
            out.push_back(std::move(loop));
    }

    // The boundary's edge for an edge record; -1 for a collapsed edge (one without a curve).
    int edgeIndex(int index) {
        if (const auto it = edges_.find(index); it != edges_.end()) return it->second;
        Fields f(doc_, index);
        f.skipCommon();
        const int v0 = f.ref("start vertex", "vertex");
        EdgeRun run;
        run.t0 = f.number("start parameter");
        const int v1 = f.ref("end vertex", "vertex");
        run.t1 = f.number("end parameter");
        f.ref("coedge", "coedge");
        const int curve = f.ref("curve", "-curve");
        run.reversed = f.word("sense", "reversed", "forward");
        if (v0 < 0 || v1 < 0) f.fail("an edge needs both its vertices");
        int result = -1;
        if (curve >= 0) {
            arxsolids::BrepEdge edge;
            edge.startVertex = vertexIndex(v0);
            edge.endVertex = vertexIndex(v1);
            run.start = brep_.vertices[edge.startVertex].point;
            run.end = brep_.vertices[edge.endVertex].point;
            run.closed = v0 == v1;
            edge.curve = readCurve(doc_, curve, run);
            result = static_cast<int>(brep_.edges.size());
            brep_.edges.push_back(std::move(edge));
        }
        edges_[index] = result;
        return result;
    }

    int vertexIndex(int index) {
        if (const auto it = vertices_.find(index); it != vertices_.end()) return it->second;
        Fields f(doc_, index);
        f.skipCommon();
        f.ref("edge", "edge");
        const int point = f.ref("point", "point");
        if (point < 0) f.fail("a vertex needs a point");
        Fields p(doc_, point);
        p.skipCommon();
        arxsolids::Vec3 at;
        at.x = p.number("x");
        at.y = p.number("y");
        at.z = p.number("z");
        const int result = static_cast<int>(brep_.vertices.size());
        brep_.vertices.push_back({at});
        vertices_[index] = result;
        return result;
    }

    const SatDocument& doc_;
    Brep brep_;
    std::map<int, int> edges_, vertices_;
};

arxsolids::Matrix readTransform(const SatDocument& doc, int index) {
    Fields f(doc, index);
    f.ref("attribute", "");
    f.skip("history number");
    // Rows of the linear part act on row vectors; the host's matrices act on columns.
    double linear[3][3];
    for (auto& row : linear)
        for (double& v : row)
            v = f.number("matrix entry");
    double shift[3];
    for (double& v : shift)
        v = f.number("translation");
    const double scale = f.number("scale");
    arxsolids::Matrix m;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c)
            m(r, c) = linear[c][r] * scale;
        m(r, 3) = shift[r];
    }
    return m;
}

} // namespace

SatBody readBody(const SatDocument& doc) {
    if (doc.version < 700)
        throw Unrepresentable("SAT of version " + std::to_string(doc.version) +
                              " (the reader starts at 700)");
    std::vector<int> bodies;
    for (std::size_t i = 0; i < doc.records.size(); ++i)
        if (doc.records[i].name == "body") bodies.push_back(static_cast<int>(i));
    if (bodies.empty()) throw SatError(0, "the text holds no body record");
    if (doc.declaredBodies > 0 && doc.declaredBodies != static_cast<int>(bodies.size()))
        throw SatError(1, "the header counts " + std::to_string(doc.declaredBodies) +
                              " bodies, the text holds " + std::to_string(bodies.size()));
    Fields b(doc, bodies.front());
    b.skipCommon();
    const int firstLump = b.ref("first lump", "lump");
    const int wire = b.ref("wire", "wire");
    const int transform = b.ref("transform", "transform");
    if (wire >= 0) throw Unrepresentable("a body with wires");

    SatBody out;
    if (transform >= 0) out.transform = readTransform(doc, transform);
    const auto nextOf = [&](const char* kind, const char* field) {
        return [&doc, kind, field](int i) {
            Fields f(doc, i);
            f.skipCommon();
            return f.ref(field, kind);
        };
    };
    for (int lump : listFrom(doc, firstLump, nextOf("lump", "next lump"), "lumps")) {
        Fields l(doc, lump);
        l.skipCommon();
        l.ref("next lump", "lump");
        const int firstShell = l.ref("first shell", "shell");
        LumpReader reader(doc);
        for (int shell : listFrom(doc, firstShell, nextOf("shell", "next shell"), "shells")) {
            Fields s(doc, shell);
            s.skipCommon();
            s.ref("next shell", "shell");
            if (s.ref("subshell", "subshell") >= 0) throw Unrepresentable("a shell with subshells");
            const int firstFace = s.ref("first face", "face");
            if (s.ref("wire", "wire") >= 0) throw Unrepresentable("a shell with wires");
            for (int face : listFrom(doc, firstFace, nextOf("face", "next face"), "faces"))
                reader.addFace(face, out.doubleSided);
        }
        out.lumps.push_back(reader.take());
    }
    if (out.lumps.empty()) throw Unrepresentable("an empty body");
    return out;
}

} // namespace acis
