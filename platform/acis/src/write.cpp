#include "write.h"

#include <charconv>
#include <cstdlib>
#include <ctime>
#include <numeric>

#include "geometry.h"

namespace acis {
namespace {

using arxsolids::Brep;

// Lists of numbers kept from one body to the next, so that writing a body makes no room for
// them anew: each list is a run of numbers per item, `start` telling where each run begins.
struct Runs {
    std::vector<int> start{0}, values;
    std::size_t size() const { return start.size() - 1; }
    int* begin(std::size_t i) { return values.data() + start[i]; }
    int count(std::size_t i) const { return start[i + 1] - start[i]; }
    int& at(std::size_t i, int k) { return values[std::size_t(start[i] + k)]; }
};

struct Workspace {
    std::vector<int> parent, faceOfEdge, lumpOfRoot;
    Runs lumps;
    std::vector<int> faceId, surfaceId, shellOfFace, firstLoopOfFace, firstCoedgeOfLoop;
    std::vector<int> loopIds, coedgeIds, ringPairs, edgeId, curveId;
    std::vector<int> vertexId, pointId, edgeOfVertex, lumpId, shellId;
    Runs rings;
    std::vector<std::pair<std::size_t, std::size_t>> spans;
    std::string pool;
};

// Faces joined through shared edges: the faces of each lump ascending, lumps in the order of
// their first face.
void lumpsOf(const Brep& brep, Workspace& w) {
    const int n = static_cast<int>(brep.faces.size());
    std::vector<int>& parent = w.parent;
    parent.resize(std::size_t(n));
    std::iota(parent.begin(), parent.end(), 0);
    const auto root = [&](int i) {
        while (parent[i] != i)
            i = parent[i] = parent[parent[i]];
        return i;
    };
    w.faceOfEdge.assign(brep.edges.size(), -1);
    for (int f = 0; f < n; ++f)
        for (const auto& loop : brep.faces[f].loops)
            for (const auto& c : loop.coedges) {
                if (c.edge < 0 || c.edge >= static_cast<int>(brep.edges.size()))
                    throw Unrepresentable("a coedge names no edge");
                int& other = w.faceOfEdge[c.edge];
                if (other >= 0) parent[root(f)] = root(other);
                other = f;
            }
    // Lumps numbered as their first faces come; each lump's faces ascending.
    w.lumpOfRoot.assign(std::size_t(n), -1);
    std::vector<int>& count = w.lumps.start;
    count.assign(1, 0);
    for (int f = 0; f < n; ++f) {
        int& l = w.lumpOfRoot[root(f)];
        if (l < 0) l = static_cast<int>(count.size()) - 1, count.push_back(0);
        ++count[std::size_t(l) + 1];
    }
    for (std::size_t l = 1; l < count.size(); ++l)
        count[l] += count[l - 1];
    std::vector<int>& next = w.faceOfEdge;
    next.assign(count.begin(), count.end() - 1);
    w.lumps.values.resize(std::size_t(n));
    for (int f = 0; f < n; ++f)
        w.lumps.values[std::size_t(next[std::size_t(w.lumpOfRoot[root(f)])]++)] = f;
}

const std::string& dateLine() {
    // A fixed moment when the build asks for reproducible output.
    std::time_t now = std::time(nullptr);
    if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH")) now = std::atoll(epoch);
    // Bodies written in the same second share the line.
    static thread_local std::time_t lineTime = -1;
    static thread_local std::string line;
    if (now == lineTime && !line.empty()) return line;
    std::tm utc{};
    gmtime_r(&now, &utc);
    char date[64];
    std::strftime(date, sizeof date, "%a %b %d %H:%M:%S %Y", &utc);
    const std::string product = "qelcad", version = "ACIS 32.0 NT";
    line = "@" + std::to_string(product.size()) + " " + product + " @" +
           std::to_string(version.size()) + " " + version + " @" +
           std::to_string(std::char_traits<char>::length(date)) + " " + date + " ";
    lineTime = now;
    return line;
}

// Record numbers, handed out in the order the records are written.
struct Layout {
    int next = 0;
    int take() { return next++; }
};

} // namespace

std::string writeSat(const Brep& brep, bool region) {
    if (brep.faces.empty()) throw Unrepresentable("a body without faces");
    static thread_local Workspace w;
    lumpsOf(brep, w);
    Runs& lumps = w.lumps;
    const std::size_t nLumps = lumps.size();
    const int nFaces = static_cast<int>(brep.faces.size());
    const int nEdges = static_cast<int>(brep.edges.size());
    const int nVertices = static_cast<int>(brep.vertices.size());
    for (const auto& e : brep.edges)
        if (e.startVertex < 0 || e.startVertex >= nVertices || e.endVertex < 0 ||
            e.endVertex >= nVertices)
            throw Unrepresentable("an edge names no vertex");

    // Where each face's loops and each loop's coedges begin among all of them.
    w.firstLoopOfFace.assign(1, 0);
    w.firstCoedgeOfLoop.assign(1, 0);
    for (const auto& face : brep.faces) {
        for (const auto& loop : face.loops)
            w.firstCoedgeOfLoop.push_back(w.firstCoedgeOfLoop.back() +
                                          static_cast<int>(loop.coedges.size()));
        w.firstLoopOfFace.push_back(w.firstLoopOfFace.back() + static_cast<int>(face.loops.size()));
    }
    const auto loopsOf = [&](int f) { return w.firstLoopOfFace[f + 1] - w.firstLoopOfFace[f]; };
    const auto loopId = [&](int f, int k) {
        return w.loopIds[std::size_t(w.firstLoopOfFace[f] + k)];
    };
    const auto coedgesOf = [&](int f, int k) {
        const int loop = w.firstLoopOfFace[f] + k;
        return std::pair(w.coedgeIds.data() + w.firstCoedgeOfLoop[loop],
                         w.firstCoedgeOfLoop[loop + 1] - w.firstCoedgeOfLoop[loop]);
    };

    // Numbers first, so that every record can point forwards.
    Layout at;
    const int body = at.take();
    std::vector<int>&lumpId = w.lumpId, &shellId = w.shellId;
    lumpId.clear(), shellId.clear();
    for (std::size_t l = 0; l < nLumps; ++l)
        lumpId.push_back(at.take()), shellId.push_back(at.take());
    w.faceId.resize(std::size_t(nFaces));
    w.surfaceId.resize(std::size_t(nFaces));
    w.shellOfFace.resize(std::size_t(nFaces));
    w.loopIds.resize(std::size_t(w.firstLoopOfFace.back()));
    w.coedgeIds.resize(std::size_t(w.firstCoedgeOfLoop.back()));
    w.ringPairs.clear();
    for (std::size_t l = 0; l < nLumps; ++l)
        for (int i = 0; i < lumps.count(l); ++i) {
            const int f = lumps.at(l, i);
            w.shellOfFace[f] = shellId[l];
            w.faceId[f] = at.take();
            const auto& loops = brep.faces[f].loops;
            for (std::size_t k = 0; k < loops.size(); ++k) {
                w.loopIds[std::size_t(w.firstLoopOfFace[f]) + k] = at.take();
                int* ids = coedgesOf(f, int(k)).first;
                for (const auto& c : loops[k].coedges) {
                    *ids = at.take();
                    w.ringPairs.push_back(c.edge);
                    w.ringPairs.push_back(*ids++);
                }
            }
            w.surfaceId[f] = at.take();
        }
    // Coedges of each edge in the order they were numbered.
    Runs& rings = w.rings;
    rings.start.assign(std::size_t(nEdges) + 1, 0);
    for (std::size_t i = 0; i < w.ringPairs.size(); i += 2)
        ++rings.start[std::size_t(w.ringPairs[i]) + 1];
    for (int e = 0; e < nEdges; ++e)
        rings.start[std::size_t(e) + 1] += rings.start[std::size_t(e)];
    rings.values.resize(w.ringPairs.size() / 2);
    w.edgeOfVertex.assign(rings.start.begin(), rings.start.end() - 1); // the next place of each
    for (std::size_t i = 0; i < w.ringPairs.size(); i += 2)
        rings.values[std::size_t(w.edgeOfVertex[std::size_t(w.ringPairs[i])]++)] =
            w.ringPairs[i + 1];
    std::vector<int>&edgeId = w.edgeId, &curveId = w.curveId;
    edgeId.resize(std::size_t(nEdges)), curveId.resize(std::size_t(nEdges));
    for (int e = 0; e < nEdges; ++e)
        edgeId[e] = at.take(), curveId[e] = at.take();
    std::vector<int>&vertexId = w.vertexId, &pointId = w.pointId, &edgeOfVertex = w.edgeOfVertex;
    vertexId.resize(std::size_t(nVertices)), pointId.resize(std::size_t(nVertices));
    edgeOfVertex.assign(std::size_t(nVertices), -1);
    for (int v = 0; v < nVertices; ++v)
        vertexId[v] = at.take(), pointId[v] = at.take();
    for (int e = nEdges - 1; e >= 0; --e)
        edgeOfVertex[brep.edges[e].startVertex] = edgeOfVertex[brep.edges[e].endVertex] = e;

    // Records go into one pool in the order they are made and out in the order of their
    // numbers: no text of its own for each.
    std::string& pool = w.pool;
    pool.clear();
    pool.reserve(std::size_t(at.next) * 64);
    auto& spans = w.spans;
    spans.assign(std::size_t(at.next), {0, 0});
    int current = -1;
    const auto begin = [&](int index, const char* name) {
        current = index;
        spans[index].first = pool.size();
        pool += name;
        pool += " $-1 -1 $-1 ";
    };
    const auto end = [&](const char* tail = " #") {
        pool += tail;
        spans[current].second = pool.size() - spans[current].first;
    };
    const auto whole = [&](int index, const std::string& text) {
        spans[index] = {pool.size(), text.size()};
        pool += text;
    };
    const auto ref = [&pool](int index) {
        char buffer[16];
        pool += '$';
        pool.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, index).ptr);
    };
    const auto refs = [&](std::initializer_list<int> indices) {
        bool first = true;
        for (int index : indices) {
            if (!first) pool += ' ';
            first = false;
            ref(index);
        }
    };
    const auto number = [&pool](double value) { appendNumber(pool, value); };

    const std::vector<int>&faceId = w.faceId, &surfaceId = w.surfaceId;
    begin(body, "body");
    refs({lumpId.front(), -1, -1});
    end();
    for (std::size_t l = 0; l < nLumps; ++l) {
        const int nextLump = l + 1 < nLumps ? lumpId[l + 1] : -1;
        begin(lumpId[l], "lump");
        refs({nextLump, shellId[l], body});
        end();
        begin(shellId[l], "shell");
        refs({-1, -1, faceId[lumps.at(l, 0)], -1, lumpId[l]});
        end();
        for (int i = 0; i < lumps.count(l); ++i) {
            const int f = lumps.at(l, i);
            const auto& face = brep.faces[f];
            const int nextFace = i + 1 < lumps.count(l) ? faceId[lumps.at(l, i + 1)] : -1;
            const int nLoops = loopsOf(f);
            const int firstLoop = nLoops == 0 ? -1 : loopId(f, 0);
            begin(faceId[f], "face");
            refs({nextFace, firstLoop, w.shellOfFace[f], -1, surfaceId[f]});
            pool += face.reversed ? " reversed" : " forward";
            end(region ? " double out #" : " single #");
            whole(surfaceId[f], surfaceRecord(face.surface));
            for (int k = 0; k < nLoops; ++k) {
                const auto [ids, n] = coedgesOf(f, k);
                const int nextLoop = k + 1 < nLoops ? loopId(f, k + 1) : -1;
                if (n == 0) throw Unrepresentable("a loop without coedges");
                begin(loopId(f, k), "loop");
                refs({nextLoop, ids[0], faceId[f]});
                end();
                for (int c = 0; c < n; ++c) {
                    const auto& coedge = face.loops[std::size_t(k)].coedges[std::size_t(c)];
                    // Coedges of one edge form a ring through their partner fields.
                    const int* ring = rings.begin(std::size_t(coedge.edge));
                    const int size = rings.count(std::size_t(coedge.edge));
                    int partner = -1;
                    for (int r = 0; r < size && size > 1; ++r)
                        if (ring[r] == ids[c]) partner = ring[(r + 1) % size];
                    begin(ids[c], "coedge");
                    refs({ids[(c + 1) % n], ids[(c + n - 1) % n], partner, edgeId[coedge.edge]});
                    pool += coedge.reversed ? " reversed " : " forward ";
                    refs({loopId(f, k), -1});
                    end();
                }
            }
        }
    }
    for (int e = 0; e < nEdges; ++e) {
        const auto& edge = brep.edges[e];
        const CurveRecord curve = curveRecord(edge.curve, brep.vertices[edge.startVertex].point);
        const int firstCoedge =
            rings.count(std::size_t(e)) == 0 ? -1 : *rings.begin(std::size_t(e));
        begin(edgeId[e], "edge");
        ref(vertexId[edge.startVertex]);
        pool += ' ';
        number(curve.t0);
        pool += ' ';
        ref(vertexId[edge.endVertex]);
        pool += ' ';
        number(curve.t1);
        pool += ' ';
        refs({firstCoedge, curveId[e]});
        end(" forward @7 unknown #");
        whole(curveId[e], curve.text);
    }
    for (int v = 0; v < nVertices; ++v) {
        const auto& p = brep.vertices[v].point;
        begin(vertexId[v], "vertex");
        refs({edgeOfVertex[v] >= 0 ? edgeId[edgeOfVertex[v]] : -1, pointId[v]});
        end();
        begin(pointId[v], "point");
        number(p.x);
        pool += ' ';
        number(p.y);
        pool += ' ';
        number(p.z);
        end();
    }

    const std::string& date = dateLine();
    std::string out;
    out.reserve(date.size() + pool.size() + std::size_t(at.next) + 80);
    out += "700 ";
    out += std::to_string(at.next);
    out += " 1 0 \n";
    out += date;
    out += "\n1 9.9999999999999995e-007 1e-010 \n";
    for (const auto& [from, size] : spans) {
        out.append(pool, from, size);
        out += '\n';
    }
    out += "End-of-ACIS-data\n";
    return out;
}

} // namespace acis
