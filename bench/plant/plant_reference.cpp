// The reference for the whole-command benchmark: raw Open CASCADE making the solids of a plant
// model, the same primitives with the same sizes that the import makes for each object, each
// placed by its pose, and all kept to the end as a drawing keeps them.
//
//     plant_reference PLANT.qel
//
// Prints one line: `solids N make_cpu_s S peak_rss_mb M`. Only the making is timed (CPU time
// of the process); reading the object file is not. The parts of each class are those of its
// creator: a valve is two cones, a stem and a hand wheel; a flange with a hub a disc and a
// frustum; a tee a run and a branch. Curves make no solids and are passed over.
#include <qel/qel.h>

#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepPrimAPI_MakeTorus.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Ax2.hxx>
#include <gp_Trsf.hxx>

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <exception>
#include <map>
#include <string>
#include <vector>

namespace {

double number(QelObject* object, const char* name, double fallback = 0.0) {
    QelParam* p = object->GetParam(name, 0);
    if (!p) return fallback;
    double v = fallback;
    p->GetValue(v);
    return v;
}

QelObject* nested(QelObject* object, const char* name) {
    QelParam* p = object->GetParam(name, 0);
    QelObject* child = nullptr;
    if (p) p->GetValue(child);
    return child;
}

std::vector<double> numbers(QelObject* object, const char* name) {
    QelParam* p = object ? object->GetParam(name, 0) : nullptr;
    if (!p) return {};
    double* values = nullptr;
    unsigned count = 0;
    p->GetValue(values, count, false);
    return std::vector<double>(values, values + count);
}

// The pose: a rotation about an axis through the translated origin.
gp_Trsf poseOf(QelObject* object) {
    QelObject* pose = nested(object, "pose");
    gp_Trsf move, turn;
    const std::vector<double> t = numbers(pose, "translation");
    if (t.size() == 3) move.SetTranslation(gp_Vec(t[0], t[1], t[2]));
    const std::vector<double> r = numbers(pose, "rotation");
    if (r.size() == 4 && (r[0] != 0 || r[1] != 0 || r[2] != 0))
        turn.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(r[0], r[1], r[2])), r[3]);
    return move * turn;
}

// One part: a primitive about Z from z0 up, placed in the object's frame.
struct Part {
    enum Kind { kFrustum, kSphere, kTorus, kBox } kind;
    double a = 0, b = 0, c = 0; // frustum: r0, r1, h; torus: R, r; box: x, y, z
    gp_Trsf local;
};

TopoDS_Shape made(const Part& p) {
    switch (p.kind) {
    case Part::kFrustum:
        if (p.a == p.b) return BRepPrimAPI_MakeCylinder(p.a, p.c).Shape();
        return BRepPrimAPI_MakeCone(p.a, p.b, p.c).Shape();
    case Part::kSphere:
        return BRepPrimAPI_MakeSphere(p.a).Shape();
    case Part::kTorus:
        return BRepPrimAPI_MakeTorus(p.a, p.b).Shape();
    case Part::kBox:
        return BRepPrimAPI_MakeBox(gp_Pnt(-p.a / 2, -p.b / 2, -p.c / 2), p.a, p.b, p.c).Shape();
    }
    return {};
}

gp_Trsf shift(double x, double y, double z) {
    gp_Trsf t;
    t.SetTranslation(gp_Vec(x, y, z));
    return t;
}
gp_Trsf aboutX(double angle) {
    gp_Trsf t;
    t.SetRotation(gp_Ax1(gp_Pnt(0, 0, 0), gp_Dir(1, 0, 0)), angle);
    return t;
}

// The parts of one object of a class that makes solids; none for others.
std::vector<Part> partsOf(QelObject* o) {
    const std::string cls = o->GetName();
    if (cls == "Cylinder") {
        const double r = number(o, "radius"), h = number(o, "height");
        return {{Part::kFrustum, r, r, h, shift(0, 0, -h / 2)}};
    }
    if (cls == "Cone") {
        const double h = number(o, "height");
        return {
            {Part::kFrustum, number(o, "radius0"), number(o, "radius1"), h, shift(0, 0, -h / 2)}};
    }
    if (cls == "Sphere") return {{Part::kSphere, number(o, "radius"), 0, 0, {}}};
    if (cls == "Torus")
        return {{Part::kTorus, number(o, "majorRadius"), number(o, "minorRadius"), 0, {}}};
    if (cls == "RectangularBox")
        return {{Part::kBox, number(o, "depth"), number(o, "width"), number(o, "height"), {}}};
    if (cls == "Valve") {
        const double rc = number(o, "coneRadius"), L = number(o, "valveLength"),
                     S = number(o, "stemLength"), W = number(o, "handwheelRadius"),
                     F = number(o, "handwheelOffset");
        QelObject* v = nested(o, "velmoraParam");
        const double stem = v ? number(v, "stemThickness") * 0.5 : 0.0001;
        const double wheel = v ? number(v, "handwheelThickness") * 0.5 : 0.0001;
        return {{Part::kFrustum, rc, 0, L / 2, shift(0, 0, -L / 2)},
                {Part::kFrustum, rc, 0, L / 2, aboutX(M_PI) * shift(0, 0, -L / 2)},
                {Part::kFrustum, stem, stem, S,
                 shift(0, S / 2, 0) * aboutX(M_PI / 2) * shift(0, 0, -S / 2)},
                {Part::kTorus, W, wheel, 0, shift(0, S - F, 0) * aboutX(M_PI / 2)}};
    }
    if (cls == "Flange") {
        const double r = number(o, "radius"), h = number(o, "height");
        const double fr = number(o, "flangeradius", r), fh = number(o, "flangeheight", h);
        const double hub = std::min((fr - r) / 3 + r, (h - fh) * 0.4 + r);
        return {{Part::kFrustum, fr, fr, fh, {}},
                {Part::kFrustum, hub, r, h - fh, shift(0, 0, fh)}};
    }
    if (cls == "Tee") {
        const double r = number(o, "radius"), h = number(o, "height");
        const double br = number(o, "branchradius"), bh = number(o, "branchheight");
        return {{Part::kFrustum, r, r, h, shift(0, 0, -h / 2)},
                {Part::kFrustum, br, br, bh, aboutX(-M_PI / 2)}};
    }
    return {};
}

double cpuSeconds() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: plant_reference PLANT.qel\n");
        return 2;
    }
    try {
        QelInit(0, 0, QelInitWords);
        // Read first: the objects' parts, with their poses.
        QelReader reader(argv[1]);
        std::vector<std::pair<Part, gp_Trsf>> parts;
        for (unsigned id = 0; id < reader.GetObjectCount(); ++id) {
            QelObject* object = reader.ReadObject(id);
            if (!object) continue;
            const gp_Trsf pose = poseOf(object);
            for (const Part& p : partsOf(object))
                parts.emplace_back(p, pose * p.local);
            object->UnRef();
        }
        // Then make and place them, keeping every one.
        const double start = cpuSeconds();
        std::vector<TopoDS_Shape> solids;
        solids.reserve(parts.size());
        for (const auto& [part, place] : parts)
            solids.push_back(made(part).Moved(TopLoc_Location(place)));
        const double spent = cpuSeconds() - start;
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("solids %zu make_cpu_s %.3f peak_rss_mb %.1f\n", solids.size(), spent,
                    double(usage.ru_maxrss) / 1024.0);
        return 0;
    } catch (const QelException& e) {
        std::fprintf(stderr, "plant_reference: %s: %s\n", argv[1], e.GetReason());
        return 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "plant_reference: %s\n", e.what());
        return 1;
    }
}
