// Surfaces and curves: the SAT records of each kind the host represents, both ways.
#pragma once

#include <arxsolids/types.h>

#include <stdexcept>
#include <string>

#include "text.h"

namespace acis {

// Something well formed that the host has no exact form for (a spline surface, say): the body
// is kept as raw text.
struct Unrepresentable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// ---- Reading ----

struct SurfaceRead {
    arxsolids::SurfaceDesc desc;
    bool flipped = false; // the record's normal points against that of desc's right-handed frame
};
// The surface a face record names; Unrepresentable for kinds the host lacks.
SurfaceRead readSurface(const SatDocument& doc, int index);

// How an edge runs on its curve: from parameter t0 to t1, against the curve when reversed.
struct EdgeRun {
    arxsolids::Vec3 start, end;
    double t0 = 0.0, t1 = 0.0;
    bool reversed = false;
    bool closed = false;
};
// The curve an edge record names, in the edge's direction.
arxsolids::Curve readCurve(const SatDocument& doc, int index, const EdgeRun& run);

// ---- Writing ----

// Record text (name and fields, common prefix included) of a surface.
std::string surfaceRecord(const arxsolids::SurfaceDesc& desc);

struct CurveRecord {
    std::string text;
    double t0 = 0.0, t1 = 0.0; // the edge's parameters on it
};
// The curve of an edge that starts at `start`, run forwards. Throws Unrepresentable for a curve
// the writer has no exact form for.
CurveRecord curveRecord(const arxsolids::Curve& curve, const arxsolids::Vec3& start);

// A number as the shortest text that reads back to the same double.
std::string formatNumber(double value);
void appendNumber(std::string& out, double value);

} // namespace acis
