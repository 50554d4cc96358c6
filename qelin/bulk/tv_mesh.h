// Triangle meshes of the object file as polyface meshes of the host. A host mesh holds at most
// 32767 vertices and faces, so a larger object is cut along whole strips into several meshes in
// one anonymous group, each piece numbering its own vertices. The colour ramp of intensities
// lives here too; point clouds share it.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>
#include <win/win.h>

class TvMesh {
public:
    static constexpr int kMaxVerts = 32767;
    static constexpr int kMaxFaces = 32767;
    static constexpr int kMaxPieces = 24;
    static constexpr int kRampSize = 1024;

    TvMesh();
    virtual ~TvMesh();

    // The object's mesh in the current space: 0 on success, 1 when a mesh could not be added.
    int Import(QelObject* object, unsigned objIndex, const CString* filePath);

    // The range of mapped intensities the ramp spans. A set range (minMapped from 1e-6 up)
    // stands; otherwise the file's intensity bounds when maxIntensity is set, else the lowest
    // and highest of the values, else 0 to 1.
    static void ResolveIntensityRange(float minIntensity, float maxIntensity, const short* values,
                                      unsigned count, float& minMapped, float& maxMapped);
    // A 16-bit intensity mapped onto 0 to 1.
    static double Mapped(short value) { return (value + 32768.0) / 65535.0; }

    // The colour index at a ramp position. The position is not clamped by the callers: a value
    // outside the mapped range lands before the start or past the end, and then takes the
    // nearest end's colour, which leaves every position inside the ramp as it is.
    Adesk::UInt8 RampColour(double position) const;
    const Adesk::UInt8* Ramp() const { return m_ramp; }

private:
    Adesk::UInt8 m_ramp[kRampSize];
};
