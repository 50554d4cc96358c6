#include "bulk/tv_mesh.h"

#include <cmath>
#include <cstring>

namespace {

// Red, yellow, green, cyan, blue in four runs of 256, each entry the nearest of the colour index.
struct RampTable {
    Adesk::UInt8 entries[TvMesh::kRampSize];
    RampTable() {
        for (int i = 0; i < 256; ++i) {
            const auto up = Adesk::UInt8(i), down = Adesk::UInt8(255 - i);
            entries[i] = AcCmEntityColor::lookUpACI(255, up, 0);
            entries[256 + i] = AcCmEntityColor::lookUpACI(down, 255, 0);
            entries[512 + i] = AcCmEntityColor::lookUpACI(0, 255, up);
            entries[768 + i] = AcCmEntityColor::lookUpACI(0, down, 255);
        }
    }
};

} // namespace

TvMesh::TvMesh() {
    static const RampTable table;
    std::memcpy(m_ramp, table.entries, sizeof m_ramp);
}

TvMesh::~TvMesh() = default;

void TvMesh::ResolveIntensityRange(float minIntensity, float maxIntensity, const short* values,
                                   unsigned count, float& minMapped, float& maxMapped) {
    if (!(minMapped < 1e-6f)) return;
    if (maxIntensity > 1e-6f) {
        minMapped = minIntensity;
        maxMapped = maxIntensity;
        return;
    }
    if (values && count > 0) {
        short low = 32767, high = -32768;
        for (unsigned i = 0; i < count; ++i) {
            if (values[i] < low) low = values[i];
            if (values[i] > high) high = values[i];
        }
        minMapped = float(Mapped(low));
        maxMapped = float(Mapped(high));
        return;
    }
    minMapped = 0.0f;
    maxMapped = 1.0f;
}

Adesk::UInt8 TvMesh::RampColour(double position) const {
    // Truncation towards zero as the integer conversion does; NaN counts as the start.
    if (!(position >= 0.0)) return m_ramp[0];
    if (position >= kRampSize - 1) return m_ramp[kRampSize - 1];
    return m_ramp[int(position)];
}
