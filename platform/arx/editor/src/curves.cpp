// Commands that draw curves, faces and text: LINE, CIRCLE, ARC, PLINE, 3DPOLY, 3DFACE, TEXT.
// Planar entities lie in the current UCS's XY plane (at the height of their first point) and
// take the THICKNESS variable; a point typed with two coordinates takes ELEVATION as its Z.
#include "prompts.h"

#include <arx/dbpl.h>
#include <arx/dbpoly.h>

#include <cmath>
#include <numbers>

namespace qelhost {

namespace {

constexpr double kPi = std::numbers::pi;

// The entity system of a normal: where planar entities keep their 2-D coordinates.
struct Plane {
    AcGeVector3d normal;
    AcGeMatrix3d toWorld, fromWorld;
    explicit Plane(const AcGeVector3d& n)
        : normal(n.normal()), toWorld(AcGeMatrix3d::planeToWorld(n)),
          fromWorld(AcGeMatrix3d::worldToPlane(n)) {}
    AcGePoint3d local(const AcGePoint3d& world) const { return fromWorld * world; }
    // The angle of a point about a centre, in the plane.
    double angle(const AcGePoint3d& center, const AcGePoint3d& p) const {
        const AcGePoint3d c = local(center), q = local(p);
        return std::atan2(q.y - c.y, q.x - c.x);
    }
};

double thickness() {
    return realVariable(L"THICKNESS");
}

// Centre of the circle through three points; false when they lie on one line.
bool circumcentre(const AcGePoint3d& a, const AcGePoint3d& b, const AcGePoint3d& c,
                  AcGePoint3d& centre, AcGeVector3d& normal) {
    const AcGeVector3d ab = b - a, ac = c - a, n = ab.crossProduct(ac);
    const double n2 = n.dotProduct(n);
    if (n2 <= 1e-20 * ab.dotProduct(ab) * ac.dotProduct(ac) || n2 == 0.0) return false;
    centre = a + (n.crossProduct(ab) * ac.dotProduct(ac) + ac.crossProduct(n) * ab.dotProduct(ab)) /
                     (2.0 * n2);
    normal = n.normal();
    return true;
}

// ---- LINE ----

int line(CommandContext& ctx) {
    AcGePoint3d first;
    if (askPoint(ctx, L"Specify first point: ", first) == Answer::kCancel) return RTCAN;
    std::vector<AcDbObjectId> segments;
    AcGePoint3d from = first;
    const Option kOptions[] = {{L"C", L"CLOSE"}, {L"U", L"UNDO"}};
    for (;;) {
        AcGePoint3d to;
        const Answer got = askPoint(ctx,
                                    segments.size() >= 2 ? L"Specify next point or [Close/Undo]: "
                                                         : L"Specify next point or [Undo]: ",
                                    to, kOptions, true);
        if (got == Answer::kCancel) return RTCAN;
        if (got == Answer::kEnter) return RTNORM;
        if (got == Answer::kOption && got.option == 1) {
            if (segments.empty()) {
                ctx.invalid(L"All segments already undone.");
                continue;
            }
            AcDbEntity* segment = nullptr;
            if (acdbOpenObject(segment, segments.back(), AcDb::kForWrite) == Acad::eOk) {
                AcGePoint3d start;
                static_cast<AcDbLine*>(segment)->getStartPoint(start);
                eraseEntity(*segment);
                segment->close();
                from = start;
            }
            segments.pop_back();
            continue;
        }
        if (got == Answer::kOption) {
            if (segments.size() < 2) {
                ctx.invalid(L"Close needs two segments.");
                continue;
            }
            to = first;
        }
        if (to.isEqualTo(from)) {
            ctx.invalid(L"The next point is the last one: no segment.");
            continue;
        }
        auto* segment = new AcDbLine(from, to);
        segment->setNormal(ucsZ());
        segment->setThickness(thickness());
        const AcDbObjectId id = appendEntity(segment);
        if (id.isNull()) return RTERROR;
        segments.push_back(id);
        from = to;
        if (got == Answer::kOption) return RTNORM;
    }
}

// ---- CIRCLE ----

int circle(CommandContext& ctx) {
    const Option kModes[] = {{L"3P", L"3P"}, {L"2P", L"2P"}};
    AcGePoint3d centre;
    AcGeVector3d normal = ucsZ();
    double radius = 0.0;
    const Answer got =
        askPoint(ctx, L"Specify center point for circle or [3P/2P]: ", centre, kModes);
    if (got == Answer::kCancel) return RTCAN;
    if (got == Answer::kValue) {
        const Option kDiameter[] = {{L"D", L"DIAMETER"}};
        const Answer r = askDistance(ctx, L"Specify radius of circle or [Diameter]: ", radius,
                                     &centre, kDiameter, positive);
        if (r == Answer::kCancel) return RTCAN;
        if (r == Answer::kOption) {
            if (askDistance(ctx, L"Specify diameter of circle: ", radius, &centre, {}, positive) ==
                Answer::kCancel)
                return RTCAN;
            radius /= 2.0;
        }
    } else if (got.option == 1) {
        AcGePoint3d a, b;
        for (;;) {
            if (askPoint(ctx, L"Specify first end point of circle's diameter: ", a) ==
                    Answer::kCancel ||
                askPoint(ctx, L"Specify second end point of circle's diameter: ", b) ==
                    Answer::kCancel)
                return RTCAN;
            if (!a.isEqualTo(b)) break;
            ctx.invalid(L"The two points are the same: no circle.");
        }
        centre = a + (b - a) / 2.0;
        radius = a.distanceTo(b) / 2.0;
    } else {
        AcGePoint3d p[3];
        for (;;) {
            const wchar_t* prompts[3] = {L"Specify first point on circle: ",
                                         L"Specify second point on circle: ",
                                         L"Specify third point on circle: "};
            for (int i = 0; i < 3; ++i)
                if (askPoint(ctx, prompts[i], p[i]) == Answer::kCancel) return RTCAN;
            if (circumcentre(p[0], p[1], p[2], centre, normal)) break;
            ctx.invalid(L"The three points lie on one line: no circle.");
        }
        if (normal.dotProduct(ucsZ()) < 0) normal = -normal;
        radius = centre.distanceTo(p[0]);
    }
    auto* c = new AcDbCircle(centre, normal, radius);
    c->setThickness(thickness());
    return appendEntity(c).isNull() ? RTERROR : RTNORM;
}

// ---- ARC ----

// An arc counter-clockwise about the normal from start to end around the centre.
int appendArc(const AcGePoint3d& centre, const AcGeVector3d& normal, const AcGePoint3d& start,
              const AcGePoint3d& end) {
    const Plane plane(normal);
    auto* arc = new AcDbArc(centre, plane.normal, centre.distanceTo(start),
                            plane.angle(centre, start), plane.angle(centre, end));
    arc->setThickness(thickness());
    return appendEntity(arc).isNull() ? RTERROR : RTNORM;
}

int arcByCentre(CommandContext& ctx, const AcGePoint3d* startGiven) {
    AcGePoint3d centre, start, end;
    if (askPoint(ctx, L"Specify center point of arc: ", centre) == Answer::kCancel) return RTCAN;
    if (startGiven != nullptr) {
        start = *startGiven;
    } else if (askPoint(ctx, L"Specify start point of arc: ", start) == Answer::kCancel) {
        return RTCAN;
    }
    if (start.isEqualTo(centre)) {
        ctx.invalid(L"The start point is the centre: no arc.");
        return RTERROR;
    }
    const Option kAngle[] = {{L"A", L"ANGLE"}};
    const Answer got = askPoint(ctx, L"Specify end point of arc or [Angle]: ", end, kAngle);
    if (got == Answer::kCancel) return RTCAN;
    const AcGeVector3d normal = ucsZ();
    if (got == Answer::kOption) {
        double included = 0.0;
        for (;;) {
            if (askAngle(ctx, L"Specify included angle: ", included, nullptr) == Answer::kCancel)
                return RTCAN;
            if (std::abs(included) > 1e-9 && std::abs(included) < 2 * kPi) break;
            ctx.invalid(L"The included angle must lie between 0 and 360 degrees.");
        }
        // A negative angle runs clockwise: the arc from the end back to the start.
        end = centre + (start - centre).rotateBy(included, normal);
        return included > 0 ? appendArc(centre, normal, start, end)
                            : appendArc(centre, normal, end, start);
    }
    return appendArc(centre, normal, start, end);
}

int arc(CommandContext& ctx) {
    const Option kCentre[] = {{L"C", L"CENTER"}};
    AcGePoint3d start, second, end;
    const Answer first = askPoint(ctx, L"Specify start point of arc or [Center]: ", start, kCentre);
    if (first == Answer::kCancel) return RTCAN;
    if (first == Answer::kOption) return arcByCentre(ctx, nullptr);
    const Answer mid = askPoint(ctx, L"Specify second point of arc or [Center]: ", second, kCentre);
    if (mid == Answer::kCancel) return RTCAN;
    if (mid == Answer::kOption) return arcByCentre(ctx, &start);
    AcGePoint3d centre;
    AcGeVector3d normal;
    for (;;) {
        if (askPoint(ctx, L"Specify end point of arc: ", end) == Answer::kCancel) return RTCAN;
        if (circumcentre(start, second, end, centre, normal)) break;
        ctx.invalid(L"The three points lie on one line: no arc.");
    }
    if (normal.dotProduct(ucsZ()) < 0) return appendArc(centre, -normal, end, start);
    return appendArc(centre, normal, start, end);
}

// ---- PLINE ----

struct PlineState {
    Plane plane{AcGeVector3d::kZAxis};
    double elevation = 0.0;
    std::vector<AcDbPolyline::Vertex> vertices;
    double startWidth = 0.0, endWidth = 0.0;
    bool arcs = false;

    AcGePoint2d local(const AcGePoint3d& world) const {
        const AcGePoint3d p = plane.local(world);
        return {p.x, p.y};
    }
    // The direction in which the last segment ends (the plane's X before any segment).
    AcGeVector2d tangent() const {
        const std::size_t n = vertices.size();
        if (n < 2) return {1.0, 0.0};
        const AcDbPolyline::Vertex& a = vertices[n - 2];
        const AcGeVector2d chord = vertices[n - 1].point - a.point;
        const double half = 2.0 * std::atan(a.bulge); // half the included angle
        return {chord.x * std::cos(half) - chord.y * std::sin(half),
                chord.x * std::sin(half) + chord.y * std::cos(half)};
    }
    void add(const AcGePoint2d& p, double bulgeOfLast) {
        vertices.back().bulge = bulgeOfLast;
        vertices.back().startWidth = startWidth;
        vertices.back().endWidth = endWidth;
        vertices.push_back({p, 0.0, endWidth, endWidth});
        startWidth = endWidth;
    }
};

// The bulge of the arc from the last vertex to p that leaves along the last tangent.
double tangentBulge(const PlineState& s, const AcGePoint2d& p) {
    const AcGeVector2d d = s.tangent(), c = p - s.vertices.back().point;
    const double turn = std::atan2(d.x * c.y - d.y * c.x, d.x * c.x + d.y * c.y);
    return std::tan(turn / 2.0);
}

int askWidths(CommandContext& ctx, PlineState& s, bool half) {
    const double factor = half ? 0.5 : 1.0;
    const double start = s.startWidth * factor;
    const auto notNegative = [](double v) -> const wchar_t* {
        return v >= 0.0 ? nullptr : L"Value must be positive or zero.";
    };
    double value = 0.0;
    const Answer a = askDistance(
        ctx,
        std::wstring(half ? L"Specify starting half-width <" : L"Specify starting width <") +
            number(start) + L">: ",
        value, nullptr, {}, notNegative, &start);
    if (a == Answer::kCancel) return RTCAN;
    s.startWidth = value / factor;
    double end = value;
    const Answer b = askDistance(
        ctx,
        std::wstring(half ? L"Specify ending half-width <" : L"Specify ending width <") +
            number(value) + L">: ",
        end, nullptr, {}, notNegative, &value);
    if (b == Answer::kCancel) return RTCAN;
    s.endWidth = end / factor;
    return RTNORM;
}

int finishPline(PlineState& s, bool closed) {
    if (s.vertices.size() < 2) return RTNORM;
    auto* pline = new AcDbPolyline(unsigned(s.vertices.size()));
    for (unsigned i = 0; i < s.vertices.size(); ++i) {
        const AcDbPolyline::Vertex& v = s.vertices[i];
        pline->addVertexAt(i, v.point, v.bulge, v.startWidth, v.endWidth);
    }
    pline->setNormal(s.plane.normal);
    pline->setElevation(s.elevation);
    pline->setThickness(thickness());
    pline->setClosed(closed);
    return appendEntity(pline).isNull() ? RTERROR : RTNORM;
}

int pline(CommandContext& ctx) {
    PlineState s;
    s.plane = Plane(ucsZ());
    AcGePoint3d start;
    if (askPoint(ctx, L"Specify start point: ", start) == Answer::kCancel) return RTCAN;
    s.elevation = s.plane.local(start).z;
    s.vertices.push_back({s.local(start), 0.0, 0.0, 0.0});
    tell(L"Current line-width is " + number(s.startWidth) + L"\n");
    enum { kArc, kClose, kHalf, kLine, kUndo, kWidth, kAngle };
    const Option kOptions[] = {{L"A", L"ARC"},   {L"CL", L"CLOSE"}, {L"H", L"HALFWIDTH"},
                               {L"L", L"LINE"},  {L"U", L"UNDO"},   {L"W", L"WIDTH"},
                               {L"AN", L"ANGLE"}};
    // Close is also "C" in line mode, where no other option starts with C.
    const Option kLineOptions[] = {{L"A", L"ARC"},  {L"C", L"CLOSE"}, {L"H", L"HALFWIDTH"},
                                   {L"L", L"LINE"}, {L"U", L"UNDO"},  {L"W", L"WIDTH"}};
    for (;;) {
        AcGePoint3d next;
        const bool many = s.vertices.size() >= 3;
        const std::wstring prompt =
            s.arcs ? (many ? L"Specify endpoint of arc or [Angle/CLose/Halfwidth/Line/Undo/Width]: "
                           : L"Specify endpoint of arc or [Angle/Halfwidth/Line/Undo/Width]: ")
                   : (many ? L"Specify next point or [Arc/Close/Halfwidth/Undo/Width]: "
                           : L"Specify next point or [Arc/Halfwidth/Undo/Width]: ");
        const Answer got = s.arcs ? askPoint(ctx, prompt, next, kOptions, true)
                                  : askPoint(ctx, prompt, next, kLineOptions, true);
        if (got == Answer::kCancel) return RTCAN;
        if (got == Answer::kEnter) return finishPline(s, false);
        if (got == Answer::kValue) {
            const AcGePoint2d p = s.local(next);
            if (p.isEqualTo(s.vertices.back().point)) {
                ctx.invalid(L"The next point is the last one: no segment.");
                continue;
            }
            s.add(p, s.arcs ? tangentBulge(s, p) : 0.0);
            continue;
        }
        switch (got.option) {
        case kArc:
            s.arcs = true;
            break;
        case kLine:
            s.arcs = false;
            break;
        case kClose:
            if (!many) {
                ctx.invalid(L"Close needs two segments.");
                break;
            }
            {
                const AcGePoint2d p = s.vertices.front().point;
                const double bulge = s.arcs ? tangentBulge(s, p) : 0.0;
                s.vertices.back().bulge = bulge;
                s.vertices.back().startWidth = s.startWidth;
                s.vertices.back().endWidth = s.endWidth;
            }
            return finishPline(s, true);
        case kHalf:
        case kWidth:
            if (const int status = askWidths(ctx, s, got.option == kHalf); status != RTNORM)
                return status;
            break;
        case kUndo:
            if (s.vertices.size() < 2) {
                ctx.invalid(L"All segments already undone.");
                break;
            }
            s.vertices.pop_back();
            s.vertices.back().bulge = 0.0;
            break;
        case kAngle: {
            double included = 0.0;
            for (;;) {
                if (askAngle(ctx, L"Specify included angle: ", included, nullptr) ==
                    Answer::kCancel)
                    return RTCAN;
                if (std::abs(included) > 1e-9 && std::abs(included) < 2 * kPi) break;
                ctx.invalid(L"The included angle must lie between 0 and 360 degrees.");
            }
            AcGePoint3d end;
            for (;;) {
                if (askPoint(ctx, L"Specify endpoint of arc: ", end) == Answer::kCancel)
                    return RTCAN;
                if (!s.local(end).isEqualTo(s.vertices.back().point)) break;
                ctx.invalid(L"The endpoint is the last point: no segment.");
            }
            s.add(s.local(end), std::tan(included / 4.0));
            break;
        }
        }
    }
}

// ---- 3DPOLY ----

int polyline3d(CommandContext& ctx) {
    AcGePoint3dArray points;
    AcGePoint3d p;
    if (askPoint(ctx, L"Specify start point of polyline: ", p) == Answer::kCancel) return RTCAN;
    points.append(p);
    const Option kOptions[] = {{L"C", L"CLOSE"}, {L"U", L"UNDO"}};
    for (;;) {
        const Answer got =
            askPoint(ctx,
                     points.length() >= 3 ? L"Specify endpoint of line or [Close/Undo]: "
                                          : L"Specify endpoint of line or [Undo]: ",
                     p, kOptions, true);
        if (got == Answer::kCancel) return RTCAN;
        const bool close = got == Answer::kOption && got.option == 0;
        if (close && points.length() < 3) {
            ctx.invalid(L"Close needs two segments.");
            continue;
        }
        if (got == Answer::kEnter || close) {
            if (points.length() < 2) return RTNORM;
            return appendEntity(new AcDb3dPolyline(AcDb::k3dSimplePoly, points, close)).isNull()
                       ? RTERROR
                       : RTNORM;
        }
        if (got == Answer::kOption) {
            if (points.length() > 1)
                points.removeLast();
            else
                ctx.invalid(L"All segments already undone.");
            continue;
        }
        if (p.isEqualTo(points.last())) {
            ctx.invalid(L"The next point is the last one: no segment.");
            continue;
        }
        points.append(p);
    }
}

// ---- 3DFACE ----

// A corner; Invisible before it hides the edge that starts there.
Answer corner(CommandContext& ctx, const std::wstring& prompt, AcGePoint3d& p, bool& hidden,
              bool enterOk) {
    const Option kInvisible[] = {{L"I", L"INVISIBLE"}};
    hidden = false;
    for (;;) {
        const Answer got = askPoint(ctx, prompt, p, kInvisible, enterOk);
        if (got != Answer::kOption) return got;
        hidden = true;
    }
}

int face3d(CommandContext& ctx) {
    AcGePoint3d p[4];
    bool hidden[4];
    if (corner(ctx, L"Specify first point or [Invisible]: ", p[0], hidden[0], false) ==
            Answer::kCancel ||
        corner(ctx, L"Specify second point or [Invisible]: ", p[1], hidden[1], false) ==
            Answer::kCancel)
        return RTCAN;
    for (bool first = true;; first = false) {
        const Answer third = corner(ctx,
                                    first ? L"Specify third point or [Invisible]: "
                                          : L"Specify third point or [Invisible] <exit>: ",
                                    p[2], hidden[2], !first);
        if (third == Answer::kCancel) return RTCAN;
        if (third == Answer::kEnter) return RTNORM;
        const Answer fourth =
            corner(ctx, L"Specify fourth point or [Invisible] <create three-sided face>: ", p[3],
                   hidden[3], true);
        if (fourth == Answer::kCancel) return RTCAN;
        if (fourth == Answer::kEnter) p[3] = p[2];
        auto* face =
            new AcDbFace(p[0], p[1], p[2], p[3], !hidden[0], !hidden[1], !hidden[2], !hidden[3]);
        if (appendEntity(face).isNull()) return RTERROR;
        // The next face starts on the last edge of this one.
        p[0] = p[3], hidden[0] = hidden[3];
        p[1] = p[2], hidden[1] = hidden[2];
    }
}

// ---- TEXT ----

int text(CommandContext& ctx) {
    double height = realVariable(L"TEXTSIZE");
    tell(L"Current text style:  \"Standard\"  Text height:  " + number(height) + L"\n");
    AcGePoint3d start;
    if (askPoint(ctx, L"Specify start point of text: ", start) == Answer::kCancel) return RTCAN;
    const double fallback = height;
    if (askDistance(ctx, L"Specify height <" + number(height) + L">: ", height, &start, {},
                    positive, &fallback) == Answer::kCancel)
        return RTCAN;
    const double none = 0.0;
    double rotation = 0.0;
    if (askAngle(ctx, L"Specify rotation angle of text <0>: ", rotation, &start, {}, &none) ==
        Answer::kCancel)
        return RTCAN;
    const Plane plane(ucsZ());
    // The rotation is measured from the UCS X axis; the text keeps it in its own plane.
    const AcGeVector3d along = ucsVector(AcGeVector3d::kXAxis).rotateBy(rotation, plane.normal);
    const AcGePoint3d alongLocal = plane.fromWorld * (AcGePoint3d::kOrigin + along);
    const double angle = std::atan2(alongLocal.y, alongLocal.x);
    const AcGeVector3d down = plane.normal.crossProduct(along).normal() * (-height * 5.0 / 3.0);
    for (AcGePoint3d at = start;; at += down) {
        std::optional<std::wstring> line = ctx.word(L"Enter text: ", true);
        if (!line) return RTCAN;
        if (line->empty()) return RTNORM;
        auto* t = new AcDbText(at, line->c_str(), AcDbObjectId::kNull, height, angle);
        t->setNormal(plane.normal);
        t->setThickness(thickness());
        if (appendEntity(t).isNull()) return RTERROR;
    }
}

const ProcessorCommand kCommands[] = {
    {L"LINE", line},         {L"CIRCLE", circle}, {L"ARC", arc},   {L"PLINE", pline},
    {L"3DPOLY", polyline3d}, {L"3DFACE", face3d}, {L"TEXT", text},
};

} // namespace

std::span<const ProcessorCommand> curveCommands() {
    return kCommands;
}

} // namespace qelhost
