#include "write.h"

#include <charconv>
#include <cstdlib>
#include <ctime>
#include <numeric>

#include "geometry.h"

namespace acis {
namespace {

using arxsolids::Brep;

// Faces joined through shared edges, as lists of face indices.
std::vector<std::vector<int>> lumpsOf(const Brep& brep) {
    const int n = static_cast<int>(brep.faces.size());
    std::vector<int> parent(n);
    std::iota(parent.begin(), parent.end(), 0);
    const auto root = [&](int i) {
        while (parent[i] != i)
            i = parent[i] = parent[parent[i]];
        return i;
    };
    std::vector<int> faceOfEdge(brep.edges.size(), -1);
    for (int f = 0; f < n; ++f)
        for (const auto& loop : brep.faces[f].loops)
            for (const auto& c : loop.coedges) {
                if (c.edge < 0 || c.edge >= static_cast<int>(brep.edges.size()))
                    throw Unrepresentable("a coedge names no edge");
                int& other = faceOfEdge[c.edge];
                if (other >= 0) parent[root(f)] = root(other);
                other = f;
            }
    std::vector<std::vector<int>> lumps;
    std::vector<int> lumpOfRoot(n, -1);
    for (int f = 0; f < n; ++f) {
        int& l = lumpOfRoot[root(f)];
        if (l < 0) l = static_cast<int>(lumps.size()), lumps.emplace_back();
        lumps[l].push_back(f);
    }
    return lumps;
}

std::string dateLine() {
    // A fixed moment when the build asks for reproducible output.
    std::time_t now = std::time(nullptr);
    if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH")) now = std::atoll(epoch);
    std::tm utc{};
    gmtime_r(&now, &utc);
    char date[64];
    std::strftime(date, sizeof date, "%a %b %d %H:%M:%S %Y", &utc);
    const std::string product = "qelcad", version = "ACIS 32.0 NT";
    return "@" + std::to_string(product.size()) + " " + product + " @" +
           std::to_string(version.size()) + " " + version + " @" +
           std::to_string(std::char_traits<char>::length(date)) + " " + date + " ";
}

// Record numbers, handed out in the order the records are written.
struct Layout {
    int next = 0;
    int take() { return next++; }
};

} // namespace

std::string writeSat(const Brep& brep, bool region) {
    if (brep.faces.empty()) throw Unrepresentable("a body without faces");
    const std::vector<std::vector<int>> lumps = lumpsOf(brep);
    const int nFaces = static_cast<int>(brep.faces.size());
    const int nEdges = static_cast<int>(brep.edges.size());
    const int nVertices = static_cast<int>(brep.vertices.size());
    for (const auto& e : brep.edges)
        if (e.startVertex < 0 || e.startVertex >= nVertices || e.endVertex < 0 ||
            e.endVertex >= nVertices)
            throw Unrepresentable("an edge names no vertex");

    // Numbers first, so that every record can point forwards.
    Layout at;
    const int body = at.take();
    std::vector<int> lumpId, shellId;
    for (std::size_t l = 0; l < lumps.size(); ++l)
        lumpId.push_back(at.take()), shellId.push_back(at.take());
    std::vector<int> faceId(nFaces), surfaceId(nFaces), shellOfFace(nFaces);
    std::vector<std::vector<int>> loopId(nFaces);
    std::vector<std::vector<std::vector<int>>> coedgeId(nFaces);
    std::vector<std::vector<int>> coedgesOfEdge(nEdges);
    for (std::size_t l = 0; l < lumps.size(); ++l)
        for (int f : lumps[l]) {
            shellOfFace[f] = shellId[l];
            faceId[f] = at.take();
            for (const auto& loop : brep.faces[f].loops) {
                loopId[f].push_back(at.take());
                coedgeId[f].emplace_back();
                for (const auto& c : loop.coedges) {
                    coedgeId[f].back().push_back(at.take());
                    coedgesOfEdge[c.edge].push_back(coedgeId[f].back().back());
                }
            }
            surfaceId[f] = at.take();
        }
    std::vector<int> edgeId(nEdges), curveId(nEdges);
    for (int e = 0; e < nEdges; ++e)
        edgeId[e] = at.take(), curveId[e] = at.take();
    std::vector<int> vertexId(nVertices), pointId(nVertices), edgeOfVertex(nVertices, -1);
    for (int v = 0; v < nVertices; ++v)
        vertexId[v] = at.take(), pointId[v] = at.take();
    for (int e = nEdges - 1; e >= 0; --e)
        edgeOfVertex[brep.edges[e].startVertex] = edgeOfVertex[brep.edges[e].endVertex] = e;

    // Records go into one pool in the order they are made and out in the order of their
    // numbers: no text of its own for each.
    std::string pool;
    pool.reserve(std::size_t(at.next) * 64);
    std::vector<std::pair<std::size_t, std::size_t>> spans(at.next);
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

    begin(body, "body");
    refs({lumpId.front(), -1, -1});
    end();
    for (std::size_t l = 0; l < lumps.size(); ++l) {
        const int nextLump = l + 1 < lumps.size() ? lumpId[l + 1] : -1;
        begin(lumpId[l], "lump");
        refs({nextLump, shellId[l], body});
        end();
        begin(shellId[l], "shell");
        refs({-1, -1, faceId[lumps[l].front()], -1, lumpId[l]});
        end();
        for (std::size_t i = 0; i < lumps[l].size(); ++i) {
            const int f = lumps[l][i];
            const auto& face = brep.faces[f];
            const int nextFace = i + 1 < lumps[l].size() ? faceId[lumps[l][i + 1]] : -1;
            const int firstLoop = loopId[f].empty() ? -1 : loopId[f].front();
            begin(faceId[f], "face");
            refs({nextFace, firstLoop, shellOfFace[f], -1, surfaceId[f]});
            pool += face.reversed ? " reversed" : " forward";
            end(region ? " double out #" : " single #");
            whole(surfaceId[f], surfaceRecord(face.surface));
            for (std::size_t k = 0; k < face.loops.size(); ++k) {
                const auto& ids = coedgeId[f][k];
                const int nextLoop = k + 1 < face.loops.size() ? loopId[f][k + 1] : -1;
                if (ids.empty()) throw Unrepresentable("a loop without coedges");
                begin(loopId[f][k], "loop");
                refs({nextLoop, ids.front(), faceId[f]});
                end();
                const int n = static_cast<int>(ids.size());
                for (int c = 0; c < n; ++c) {
                    const auto& coedge = face.loops[k].coedges[c];
                    // Coedges of one edge form a ring through their partner fields.
                    const auto& ring = coedgesOfEdge[coedge.edge];
                    int partner = -1;
                    for (std::size_t r = 0; r < ring.size() && ring.size() > 1; ++r)
                        if (ring[r] == ids[c]) partner = ring[(r + 1) % ring.size()];
                    begin(ids[c], "coedge");
                    refs({ids[(c + 1) % n], ids[(c + n - 1) % n], partner, edgeId[coedge.edge]});
                    pool += coedge.reversed ? " reversed " : " forward ";
                    refs({loopId[f][k], -1});
                    end();
                }
            }
        }
    }
    for (int e = 0; e < nEdges; ++e) {
        const auto& edge = brep.edges[e];
        const CurveRecord curve = curveRecord(edge.curve, brep.vertices[edge.startVertex].point);
        const int firstCoedge = coedgesOfEdge[e].empty() ? -1 : coedgesOfEdge[e].front();
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

    std::string out = "700 " + std::to_string(at.next) + " 1 0 \n" + dateLine() + "\n" +
                      "1 9.9999999999999995e-007 1e-010 \n";
    out.reserve(out.size() + pool.size() + std::size_t(at.next) + 20);
    for (const auto& [from, size] : spans) {
        out.append(pool, from, size);
        out += '\n';
    }
    out += "End-of-ACIS-data\n";
    return out;
}

} // namespace acis
