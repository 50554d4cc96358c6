// The triangle strips of a mesh object, decoded into pieces that fit the host's mesh limits.
#pragma once

#include "bulk/param_view.h"
#include "bulk/tv_mesh.h"

#include <arx/arx.h>

#include <functional>
#include <vector>

// What the file gives, checked: the stream is cut before its first index outside the vertex
// list, strip lengths are clipped to what remains, and colours or intensities are looked up only
// where the file has them. Nothing is sized by a count the file merely states.
struct MeshInput {
    QelArrayView<float> vertices;
    unsigned vertexCount = 0;
    QelArrayView<int> stream;
    unsigned usable = 0; // indices of the stream that name a vertex, from the start
    QelArrayView<int> lens;
    std::vector<int> ownLens; // one strip of 3 per triangle when the file has no lengths
    QelArrayView<short> intensities;
    QelArrayView<unsigned char> colours;
    int faceCount = 0;
    float minMapped = 0.0f, maxMapped = 0.0f;
    double scale = 1.0;
    double toDrawing = 1.0; // metres to drawing units: every unit row is one factor
    const TvMesh* ramp = nullptr;

    // False, after a message, without "triStripIndices".
    bool Read(QelObject* object, const TvMesh& mesh);
    // From the vertex count and the stated face count, 1 to 24.
    int PieceCount() const;

    bool HasColours() const { return !colours.empty(); }
    bool HasIntensities() const { return !intensities.empty(); }
    unsigned StripCount() const { return lens.count; }
    // A strip's length, never below 0.
    long long StripLength(unsigned s) const { return lens[s] > 0 ? lens[s] : 0; }
    // The vertex in drawing units.
    AcGePoint3d Point(int vertex) const;
    // The mapped intensity of a vertex; false when the file has none for it.
    bool Intensity(int vertex, double& mapped) const;
};

struct MeshFace {
    int local[3];
    int colourIndex = -1; // -1: no colour
};

struct MeshPiece {
    std::vector<AcGePoint3d> points;
    std::vector<int> vertices; // the stream vertex number of each point
    std::vector<MeshFace> faces;
};

// Walks the strips piece by piece. A piece stops as soon as it holds 32767 vertices or faces;
// the strip it stopped in is begun again in the next piece, so the triangles it had written
// appear twice. Triangles go (i0,i1,i2), (i2,i1,i3), (i2,i3,i4), (i4,i3,i5) to keep the winding.
class StripDecoder {
public:
    explicit StripDecoder(const MeshInput& input) : m_in(input), m_local(input.vertexCount, -1) {}
    // True once every strip was read.
    bool Done() const { return m_strip >= m_in.StripCount() || m_pos >= m_in.usable; }
    // The next piece; onFace is called once per face.
    void NextPiece(MeshPiece& piece, const std::function<void()>& onFace);

private:
    // The piece's number of a stream vertex, the vertex added when new.
    int LocalOf(MeshPiece& piece, int vertex);
    // The colour index of a face from the colours of a and b (by their numbers in the piece)
    // and c (by its number in the stream), or from the strip's two first intensities and c's.
    int FaceColour(int la, int lb, int c, double ia, double ib) const;
    // An entry of the ramp as the face record takes it: through its true colour.
    int RampFaceColour(Adesk::UInt8 entry) const;

    const MeshInput& m_in;
    unsigned m_strip = 0;
    long long m_pos = 0;
    // The piece's number of each vertex of the file, -1 where the piece has none: one entry per
    // vertex the file holds, cleared piece by piece.
    std::vector<int> m_local;
    mutable short m_byEntry[256];
    mutable bool m_known[256] = {};
};
