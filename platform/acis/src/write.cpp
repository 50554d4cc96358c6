#include "write.h"

#include <cstdlib>
#include <ctime>
#include <numeric>

#include "geometry.h"

namespace acis {
namespace {

using arxsolids::Brep;

std::string ref(int index) {
    return "$" + std::to_string(index);
}

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

    std::vector<std::string> records(at.next);
    records[body] = "body $-1 -1 $-1 " + ref(lumpId.front()) + " $-1 $-1 #";
    for (std::size_t l = 0; l < lumps.size(); ++l) {
        const int nextLump = l + 1 < lumps.size() ? lumpId[l + 1] : -1;
        records[lumpId[l]] =
            "lump $-1 -1 $-1 " + ref(nextLump) + " " + ref(shellId[l]) + " " + ref(body) + " #";
        records[shellId[l]] = "shell $-1 -1 $-1 $-1 $-1 " + ref(faceId[lumps[l].front()]) +
                              " $-1 " + ref(lumpId[l]) + " #";
        for (std::size_t i = 0; i < lumps[l].size(); ++i) {
            const int f = lumps[l][i];
            const auto& face = brep.faces[f];
            const int nextFace = i + 1 < lumps[l].size() ? faceId[lumps[l][i + 1]] : -1;
            const int firstLoop = loopId[f].empty() ? -1 : loopId[f].front();
            records[faceId[f]] = "face $-1 -1 $-1 " + ref(nextFace) + " " + ref(firstLoop) + " " +
                                 ref(shellOfFace[f]) + " $-1 " + ref(surfaceId[f]) +
                                 (face.reversed ? " reversed" : " forward") +
                                 (region ? " double out #" : " single #");
            records[surfaceId[f]] = surfaceRecord(face.surface);
            for (std::size_t k = 0; k < face.loops.size(); ++k) {
                const auto& ids = coedgeId[f][k];
                const int nextLoop = k + 1 < face.loops.size() ? loopId[f][k + 1] : -1;
                if (ids.empty()) throw Unrepresentable("a loop without coedges");
                records[loopId[f][k]] = "loop $-1 -1 $-1 " + ref(nextLoop) + " " +
                                        ref(ids.front()) + " " + ref(faceId[f]) + " #";
                const int n = static_cast<int>(ids.size());
                for (int c = 0; c < n; ++c) {
                    const auto& coedge = face.loops[k].coedges[c];
                    // Coedges of one edge form a ring through their partner fields.
                    const auto& ring = coedgesOfEdge[coedge.edge];
                    int partner = -1;
                    for (std::size_t r = 0; r < ring.size() && ring.size() > 1; ++r)
                        if (ring[r] == ids[c]) partner = ring[(r + 1) % ring.size()];
                    records[ids[c]] = "coedge $-1 -1 $-1 " + ref(ids[(c + 1) % n]) + " " +
                                      ref(ids[(c + n - 1) % n]) + " " + ref(partner) + " " +
                                      ref(edgeId[coedge.edge]) +
                                      (coedge.reversed ? " reversed " : " forward ") +
                                      ref(loopId[f][k]) + " $-1 #";
                }
            }
        }
    }
    for (int e = 0; e < nEdges; ++e) {
        const auto& edge = brep.edges[e];
        const CurveRecord curve = curveRecord(edge.curve, brep.vertices[edge.startVertex].point);
        const int firstCoedge = coedgesOfEdge[e].empty() ? -1 : coedgesOfEdge[e].front();
        records[edgeId[e]] = "edge $-1 -1 $-1 " + ref(vertexId[edge.startVertex]) + " " +
                             formatNumber(curve.t0) + " " + ref(vertexId[edge.endVertex]) + " " +
                             formatNumber(curve.t1) + " " + ref(firstCoedge) + " " +
                             ref(curveId[e]) + " forward @7 unknown #";
        records[curveId[e]] = curve.text;
    }
    for (int v = 0; v < nVertices; ++v) {
        const auto& p = brep.vertices[v].point;
        records[vertexId[v]] = "vertex $-1 -1 $-1 " +
                               ref(edgeOfVertex[v] >= 0 ? edgeId[edgeOfVertex[v]] : -1) + " " +
                               ref(pointId[v]) + " #";
        records[pointId[v]] = "point $-1 -1 $-1 " + formatNumber(p.x) + " " + formatNumber(p.y) +
                              " " + formatNumber(p.z) + " #";
    }

    std::string out = "700 " + std::to_string(records.size()) + " 1 0 \n" + dateLine() + "\n" +
                      "1 9.9999999999999995e-007 1e-010 \n";
    for (const std::string& r : records)
        out += r + "\n";
    out += "End-of-ACIS-data\n";
    return out;
}

} // namespace acis
