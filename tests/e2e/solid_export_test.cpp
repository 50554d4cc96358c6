// Solids and pipe work from the user's side: a file of every solid and fitting, imported and
// exported again, gives back the same objects with and without the file as reference, in metres
// and in millimetres; a tagged cylinder edited by the host's commands leaves with its new sizes.
#include "objectfile/param_read.h"

#include <qel/qel.h>

#include "export_params.h"
#include "qelcad_fixture.h"

#include <cmath>
#include <limits>
#include <set>

namespace {

// Where a pose puts the object: its origin and axes, in metres.
struct Frame {
    AcGePoint3d origin;
    AcGeVector3d x = AcGeVector3d::kXAxis, y = AcGeVector3d::kYAxis, z = AcGeVector3d::kZAxis;
};

Frame frameOf(QelObject* object) {
    const qelintest::Placement p = qelintest::placementOf(object);
    Frame frame;
    frame.origin.set(p.t[0], p.t[1], p.t[2]);
    frame.x.set(p.r[0], p.r[3], p.r[6]);
    frame.y.set(p.r[1], p.r[4], p.r[7]);
    frame.z.set(p.r[2], p.r[5], p.r[8]);
    return frame;
}

// Which axes of the pose a class fixes: a solid of revolution may turn about its axis, a torus,
// valve or tee may also turn end for end, a sphere any way.
struct Fixed {
    bool z, zEitherWay, x, y;
};

Fixed fixedOf(const std::string& cls) {
    if (cls == "Sphere") return {false, false, false, false};
    if (cls == "Cylinder" || cls == "Cone" || cls == "Flange") return {true, false, false, false};
    if (cls == "Torus") return {false, true, false, false};
    if (cls == "Tee") return {false, true, true, false};
    if (cls == "Valve") return {false, true, false, true};
    return {true, false, true, true};
}

// Lengths come back through the kernel in doubles, but the file's single-precision 4 pi (sphere),
// 4 pi squared (torus) and pi (a cone's height from its volume) leave their own relative error,
// below a float's epsilon.
const double kSingle = std::numeric_limits<float>::epsilon();
// The reducing elbow's mesh holds its vertices in single precision: each is off by up to 2^-24
// of its distance from the origin, under 8 m here; sizes and the bend centre read from rings of
// such vertices hold to a few of those.
const double kRingVertex = 4.0 * 8.0 * std::ldexp(1.0, -24);

// The import draws a cone's point as a top of 1e-5 drawing units, at most 1e-5 m.
const double kConePoint = 1e-5;

double toleranceOf(const std::string& cls, const std::string& name, double value) {
    if (cls == "ReducingElbow") return kRingVertex;
    if (cls == "Cone" && name == "radius1" && value == 0.0) return kConePoint;
    return kSingle * (1.0 + std::fabs(value));
}

std::vector<std::string> frameFaults(const std::string& cls, const Frame& a, const Frame& b) {
    const double tol = cls == "ReducingElbow" ? kRingVertex : kSingle * 10.0;
    AcGeTol axisTol;
    axisTol.setEqualVector(tol);
    const auto same = [&](const AcGeVector3d& u, const AcGeVector3d& v) {
        return u.isEqualTo(v, axisTol);
    };
    std::vector<std::string> faults;
    if (a.origin.distanceTo(b.origin) > tol * (1.0 + a.origin.asVector().length()))
        faults.push_back("origin moved");
    const Fixed fixed = fixedOf(cls);
    if ((fixed.z && !same(a.z, b.z)) || (fixed.zEitherWay && !same(a.z, b.z) && !same(a.z, -b.z)))
        faults.push_back("axis turned");
    if ((fixed.x && !same(a.x, b.x)) || (fixed.y && !same(a.y, b.y)))
        faults.push_back("turned about the axis");
    return faults;
}

// A number or an array of doubles as reals.
std::vector<double> realsOf(QelParam* param) {
    if (param->GetType() == QelDoubleArrayType) {
        double* values = nullptr;
        unsigned count = 0;
        param->GetValue(values, count, false);
        return std::vector<double>(values, values + count);
    }
    double value = 0;
    param->GetValue(value);
    return {value};
}

// Every real and integer param of the input object against the export's, and the pose; "kept"
// names the param no writer knows, which stays only with the reference.
std::vector<std::string> objectFaults(QelObject* in, QelObject* out, bool reference) {
    const std::string cls = in->GetName();
    std::vector<std::string> faults;
    if (cls != out->GetName()) return {cls + " left as " + out->GetName()};
    for (const std::string& f : frameFaults(cls, frameOf(in), frameOf(out)))
        faults.push_back(cls + " pose: " + f);
    for (unsigned i = 0; i < in->GetParamCount(); ++i) {
        QelParam* p = in->GetParam(i);
        const std::string name = p->GetName();
        QelParam* q = out->GetParam(name.c_str(), 0);
        if (name == "pose" || name == "appearance") continue;
        if (name == "designNote") {
            if (reference != (q != nullptr)) faults.push_back(cls + ".designNote kept wrongly");
            continue;
        }
        if (!q) {
            faults.push_back(cls + "." + name + " lost");
            continue;
        }
        if (name == "velmoraParam") {
            QelObject *a = nullptr, *b = nullptr;
            p->GetValue(a);
            q->GetValue(b);
            for (const std::string& f : objectFaults(a, b, true))
                faults.push_back(cls + "." + f);
            continue;
        }
        if (p->GetType() != q->GetType()) {
            faults.push_back(cls + "." + name + " changed its type");
            continue;
        }
        std::vector<double> va = realsOf(p);
        const std::vector<double> vb = realsOf(q);
        // A flange of type 0 is drawn as its disc alone, as one of type 1 is, and the disc
        // alone leaves as type 1.
        if (cls == "Flange" && name == "type" && va == std::vector<double>{0.0}) va = {1.0};
        bool near = va.size() == vb.size() && !va.empty();
        for (std::size_t k = 0; near && k < va.size(); ++k)
            near = std::fabs(va[k] - vb[k]) <= toleranceOf(cls, name, va[k]);
        if (!near)
            faults.push_back(cls + "." + name + ": " + ::testing::PrintToString(va) + " -> " +
                             ::testing::PrintToString(vb));
    }
    return faults;
}

} // namespace

class SolidExport : public QelcadEndToEnd {
protected:
    std::string path(const std::string& name) const { return (dir / name).string(); }
    std::string source() {
        const Outcome built =
            runCommand(std::string(QELTOOL) + " build " + QEL_EXPORT_FIXTURE_DIR +
                       "/solids_and_fittings.json -o " + path("solids.qel") + " 2>&1");
        EXPECT_EQ(built.status, 0) << built.out;
        QelInit(0, 0, QelInitWords);
        return path("solids.qel");
    }
    // Object by object, the input against the export: the export writes the entities in the
    // order the import drew them, one object each.
    std::vector<std::string> compare(const std::string& in, const std::string& out, bool reference,
                                     const std::set<std::string>& only = {}) {
        QelReader a, b;
        a.Open(in.c_str());
        b.Open(out.c_str());
        std::vector<std::string> faults;
        unsigned next = 0;
        for (unsigned i = 0; i < a.GetObjectCount(); ++i) {
            QelObjectRef original(a.ReadObject(i));
            const std::string cls = original->GetName();
            if (cls == "Layer" || cls == "LayerMgr" || cls == "ModelSpace" || cls == "Header")
                continue;
            if (!only.empty() && !only.count(cls)) continue;
            if (next >= b.GetObjectCount()) {
                faults.push_back(cls + " not exported");
                continue;
            }
            QelObjectRef back(b.ReadObject(next++));
            for (const std::string& f : objectFaults(original.get(), back.get(), reference))
                faults.push_back(std::to_string(i) + " " + f);
        }
        return faults;
    }
};

TEST_F(SolidExport, EverySolidAndFittingComesBackInEveryUnitWithAndWithoutReference) {
    const std::string in = source();
    for (const std::string units : {"Meters", "Millimeters"}) {
        const Outcome imported =
            qelcad("import " + in + " -o s.dxf --solids --no-log --units " + units);
        ASSERT_EQ(imported.status, 0) << imported.out;
        for (const bool reference : {true, false}) {
            SCOPED_TRACE(units + (reference ? " with reference" : " without reference"));
            const Outcome exported = qelcad("export s.dxf -o back.qel --units " + units +
                                            (reference ? " --reference" : " --no-reference"));
            ASSERT_EQ(exported.status, 0) << exported.out;
            EXPECT_FALSE(has(exported.out, "Unknown object type!")) << exported.out;
            const std::vector<std::string> faults = compare(in, path("back.qel"), reference);
            EXPECT_TRUE(faults.empty()) << ::testing::PrintToString(faults);
        }
    }
}

// The block form of a cylinder is a reference to a block of one thick circle.
TEST_F(SolidExport, ACylinderInBlockFormComesBackAsTheCylinder) {
    const std::string in = source();
    ASSERT_EQ(qelcad("import " + in + " -o b.dxf --blocks --no-log --units Millimeters").status, 0);
    const Outcome exported = qelcad("export b.dxf -o back.qel --units Millimeters --no-reference");
    ASSERT_EQ(exported.status, 0) << exported.out;
    const std::vector<std::string> faults = compare(in, path("back.qel"), false, {"Cylinder"});
    EXPECT_TRUE(faults.empty()) << ::testing::PrintToString(faults);
}

// Moved 1000 mm along X, then scaled by 2 about the origin: the tag still says Cylinder, the
// sizes and the place come from the solid.
TEST_F(SolidExport, AMovedAndStretchedCylinderLeavesWithItsNewSizes) {
    const std::string in = source();
    ASSERT_EQ(qelcad("import " + in + " -o s.dxf --solids --no-log --units Millimeters").status, 0);
    const Outcome edited =
        qelcad("run s.dxf --script " +
               write("edit.scr", "MOVE\nALL\n\n0,0,0\n1000,0,0\nSCALE\nALL\n\n0,0,0\n2\nQUIT\n") +
               " --save e.dxf");
    ASSERT_EQ(edited.status, 0) << edited.out;
    ASSERT_EQ(qelcad("export e.dxf -o back.qel --units Millimeters --reference").status, 0);
    QelReader reader;
    reader.Open(path("back.qel").c_str());
    QelObjectRef cylinder(reader.ReadObject("Cylinder", 0));
    ASSERT_TRUE(cylinder);
    double radius = 0, height = 0;
    cylinder->GetParam("radius", 0)->GetValue(radius);
    cylinder->GetParam("height", 0)->GetValue(height);
    EXPECT_NEAR(radius, 0.5, kSingle);
    EXPECT_NEAR(height, 3.0, kSingle);
    const Frame frame = frameOf(cylinder.get());
    EXPECT_TRUE(frame.origin.isEqualTo(AcGePoint3d(4, 4, 1), AcGeTol())) << frame.origin.x;
    EXPECT_NEAR(frame.z.y, -std::sin(0.5), kSingle) << "still turned about X by 0.5";
    EXPECT_NE(cylinder->GetParam("designNote", 0), nullptr);
}

// Solids modelled by hand in millimetres, and a thick circle, leave as their classes with their
// sizes in metres; the cone drawn to its point has its height from its volume, through the file's
// single-precision pi.
TEST_F(SolidExport, HandModelledSolidsLeaveAsTheirClassesWithTheirSizes) {
    const std::string script = "CYLINDER\n0,0,0\n500\n2000\nCONE\n3000,0,0\n400\n1000\n"
                               "SPHERE\n0,5000,0\n700\nTORUS\n5000,5000,0\n1500\n100\n"
                               "SETVAR THICKNESS 1500\nCIRCLE\n9000,0,0\n250\nQUIT\n";
    ASSERT_EQ(qelcad("run --script " + write("hand.scr", script) + " --save hand.dxf").status, 0);
    const Outcome exported = qelcad("export hand.dxf -o hand.qel --units Millimeters");
    ASSERT_EQ(exported.status, 0) << exported.out;
    QelInit(0, 0, QelInitWords);
    QelReader reader;
    reader.Open(path("hand.qel").c_str());
    const auto size = [&](const char* cls, const char* name, unsigned nth = 0) {
        QelObjectRef object(reader.ReadObject(cls, nth));
        double value = -1;
        if (QelParam* p = object ? object->GetParam(name, 0) : nullptr) p->GetValue(value);
        return value;
    };
    EXPECT_NEAR(size("Cylinder", "radius"), 0.5, kSingle);
    EXPECT_NEAR(size("Cylinder", "height"), 2.0, kSingle);
    EXPECT_EQ(size("Cone", "radius1"), 0.0);
    EXPECT_NEAR(size("Cone", "radius0"), 0.4, kSingle);
    EXPECT_NEAR(size("Cone", "height"), 1.0, kSingle);
    EXPECT_NEAR(size("Sphere", "radius"), 0.7, kSingle);
    EXPECT_NEAR(size("Torus", "majorRadius"), 1.5, 2 * kSingle);
    EXPECT_NEAR(size("Torus", "minorRadius"), 0.1, kSingle);
    // A thick circle is a pipe, written as a cylinder standing on the circle.
    EXPECT_NEAR(size("Cylinder", "radius", 1), 0.25, kSingle);
    EXPECT_NEAR(size("Cylinder", "height", 1), 1.5, kSingle);
}
