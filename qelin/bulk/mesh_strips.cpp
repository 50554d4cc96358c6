#include "bulk/mesh_strips.h"

#include "creators/helpers/format_double.h"
#include "creators/helpers/group_tag.h"
#include "creators/helpers/model_space.h"
#include "creators/helpers/placement.h"
#include "objectfile/param_read.h"

#include <arx/aced.h>

#include <algorithm>
#include <cmath>

bool MeshInput::Read(QelObject* object, const TvMesh& mesh) {
    ramp = &mesh;
    if (!QelViewArray(object, "triStripIndices", QelIntArrayType, stream)) {
        acutPrintf(L"\nError getting triStripIndices of TriMesh: no mesh made.");
        return false;
    }
    QelReadInt(object, "faceCount", faceCount);
    QelViewArray(object, "intensities", "intensityList", QelShortArrayType, intensities);
    QelViewArray(object, "colors", QelByteArrayType, colours);
    QelViewArray(object, "vertices", QelFloatArrayType, vertices);
    vertexCount = vertices.count / 3;
    toDrawing = QelToDrawing(1.0);

    for (usable = 0; usable < stream.count; ++usable)
        if (stream[usable] < 0 || unsigned(stream[usable]) >= vertexCount) break;
    if (usable < stream.count)
        acutPrintf(L"\nTriMesh: strip index %u names vertex %d of %u vertices; the strips end "
                   L"there.",
                   usable, stream[usable], vertexCount);

    if (!QelViewArray(object, "triStripLens", QelIntArrayType, lens) || lens.empty()) {
        ownLens.assign(stream.count / 3, 3);
        lens.data = ownLens.data();
        lens.count = unsigned(ownLens.size());
    }

    if (HasIntensities()) {
        minMapped = QelFloatOrZero(object, "minMappedValue");
        maxMapped = QelFloatOrZero(object, "maxMappedValue");
        TvMesh::ResolveIntensityRange(QelFloatOrZero(object, "minIntensity"),
                                      QelFloatOrZero(object, "maxIntensity"), intensities.data,
                                      intensities.count, minMapped, maxMapped);
        const double range = double(maxMapped) - double(minMapped);
        scale = 1.0 / (range == 0.0 ? 1.0 : range);
    }
    return true;
}

int MeshInput::PieceCount() const {
    double pieces = std::floor(vertices.count / 3 / 32767.0) + 1.0;
    const double byFaces = std::floor(faceCount / 32767.0) + 1.0;
    if (byFaces > pieces) pieces = byFaces;
    return int(std::clamp(std::trunc(pieces), 1.0, double(TvMesh::kMaxPieces)));
}

AcGePoint3d MeshInput::Point(int vertex) const {
    const float* v = vertices.data + 3 * std::size_t(vertex);
    return AcGePoint3d(v[0] * toDrawing, v[1] * toDrawing, v[2] * toDrawing);
}

bool MeshInput::Intensity(int vertex, double& mapped) const {
    if (vertex < 0 || unsigned(vertex) >= intensities.count) return false;
    mapped = TvMesh::Mapped(intensities[unsigned(vertex)]);
    return true;
}

int StripDecoder::LocalOf(MeshPiece& piece, int vertex) {
    int& local = m_local[std::size_t(vertex)];
    if (local < 0) {
        local = int(piece.points.size());
        piece.points.push_back(m_in.Point(vertex));
        piece.vertices.push_back(vertex);
    }
    return local;
}

int StripDecoder::RampFaceColour(Adesk::UInt8 entry) const {
    if (!m_known[entry]) {
        AcCmEntityColor colour(AcCmEntityColor::kByColor);
        colour.setColor(Adesk::UInt32(AcCmEntityColor::kByColor) << 24);
        colour.setColorIndex(entry);
        AcCmColor face;
        face.setColor(colour.trueColor());
        m_byEntry[entry] = face.colorIndex();
        m_known[entry] = true;
    }
    return m_byEntry[entry];
}

int StripDecoder::FaceColour(int la, int lb, int c, double ia, double ib) const {
    if (m_in.HasColours()) {
        const std::size_t bytes = m_in.colours.count;
        const std::size_t at[3] = {3 * std::size_t(la), 3 * std::size_t(lb), 3 * std::size_t(c)};
        for (std::size_t i : at)
            if (i + 2 >= bytes) return -1;
        unsigned char rgb[3];
        for (int k = 0; k < 3; ++k)
            rgb[k] = (unsigned(m_in.colours[unsigned(at[0] + k)]) +
                      m_in.colours[unsigned(at[1] + k)] + m_in.colours[unsigned(at[2] + k)]) /
                     3;
        AcCmColor colour;
        colour.setRGB(rgb[0], rgb[1], rgb[2]);
        return colour.colorIndex();
    }
    double ic = 0.0;
    if (!m_in.HasIntensities() || ia < 0.0 || ib < 0.0 || !m_in.Intensity(c, ic)) return -1;
    const double position = ((ib + ia + ic) / 3.0 - m_in.minMapped) * 1023.0 * m_in.scale;
    return RampFaceColour(m_in.ramp->RampColour(std::trunc(position)));
}

void StripDecoder::NextPiece(MeshPiece& piece, const std::function<void()>& onFace) {
    for (int vertex : piece.vertices)
        m_local[std::size_t(vertex)] = -1;
    piece.points.clear();
    piece.vertices.clear();
    piece.faces.clear();
    auto full = [&piece] {
        return piece.points.size() >= std::size_t(TvMesh::kMaxVerts) ||
               piece.faces.size() >= std::size_t(TvMesh::kMaxFaces);
    };
    for (unsigned s = m_strip; s < m_in.StripCount() && m_pos < m_in.usable;) {
        const long long pos = m_pos;
        const long long end = std::min<long long>(pos + m_in.StripLength(s), m_in.usable);
        if (pos < end) {
            int a = m_in.stream[unsigned(pos)];
            int la = LocalOf(piece, a);
            double ia = -1.0, ib = -1.0;
            m_in.Intensity(a, ia);
            if (pos + 1 < end) {
                int b = m_in.stream[unsigned(pos + 1)];
                int lb = LocalOf(piece, b);
                m_in.Intensity(b, ib);
                for (long long k = pos + 2, step = 0; k < end; ++k, ++step) {
                    const int c = m_in.stream[unsigned(k)];
                    MeshFace face;
                    face.colourIndex = FaceColour(la, lb, c, ia, ib);
                    const int lc = LocalOf(piece, c);
                    face.local[0] = la;
                    face.local[1] = lb;
                    face.local[2] = lc;
                    piece.faces.push_back(face);
                    onFace();
                    if (full()) {
                        m_strip = s; // the strip comes round again in the next piece
                        return;
                    }
                    if (step % 2 == 0) {
                        a = c;
                        la = lc;
                    } else {
                        b = c;
                        lb = lc;
                    }
                }
            }
        }
        // A strip too short for a triangle may still fill the piece with its two vertices. The
        // next piece then starts at this strip's place in the stream but counts strips from
        // where this piece began.
        if (full()) return;
        m_pos = end > pos ? end : pos;
        ++s;
        if (s >= m_in.StripCount() || m_pos >= m_in.usable) m_strip = s;
    }
}
