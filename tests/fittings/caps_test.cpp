// The caps on their own: each kind on each end, where it stands, its record and its text; which
// caps are drawn for solids, for blocks and for subtype 1.
#include "fittings_support.h"

#include "creators/caps.h"
#include "creators/helpers/group_tag.h"

#include <cmath>

namespace {

using namespace fittingstest;

constexpr double kPi = 3.14159265358979323846;

class Caps : public qelintest::ImportTest {
protected:
    // The caps of an object with the given params, into a group of their own; the ids made.
    std::vector<AcDbObjectId> draw(const std::string& params, double radius, double height,
                                   int subtype, bool solidCaps,
                                   const AcGeMatrix3d& translation = AcGeMatrix3d::kIdentity,
                                   const AcGeMatrix3d& rotation = AcGeMatrix3d::kIdentity) {
        ObjectPtr object = objectFrom(R"({"class": "Cylinder", "params": [)" + params + "]}");
        CString name;
        AcDbGroup* group = QelMakeObjectGroup(L"CylinderGroup", L"CYLINDER_GROUP", name);
        const CString file = L"/data/plant.qel";
        m_drawn = DrawCaps(object.get(), radius, height, translation, rotation, subtype, 7, &file,
                           group, solidCaps);
        QelCloseGroup(group);
        m_groupName = name.GetString();
        return modelSpaceIds();
    }
    static std::string cap(const char* end, const char* className) {
        return std::string(R"([")") + end + R"(", "object", {"class": ")" + className +
               R"(", "params": []}])";
    }
    bool m_drawn = false;
    std::wstring m_groupName;
};

struct CapCase {
    const char* className;
    int end;
    int memberType;
    const wchar_t* xdata;
};

// Each kind on each end: the entity, where it stands (its dome pointing out of the end), its
// record and text, all in the object's group.
TEST_F(Caps, EachKindStandsOnItsEndWithItsRecord) {
    const double r = 0.4, h = 3.0;
    const CapCase cases[] = {
        {"FlatCap", 0, 25, L"Flat Cap"},
        {"FlatCap", 1, 25, L"Flat Cap"},
        {"HemiSphericCap", 0, 26, L"Hemispheric Cap"},
        {"HemiSphericCap", 1, 26, L"Hemispheric Cap"},
        {"SemiEllipticCap", 0, 27, L"SemiEllipticCap Cap"},
        {"semiellipticcap", 1, 27, L"SemiEllipticCap Cap"},
    };
    for (const CapCase& c : cases) {
        SCOPED_TRACE(std::string(c.className) + " end " + std::to_string(c.end));
        const std::vector<AcDbObjectId> before = modelSpaceIds();
        const std::vector<AcDbObjectId> all =
            draw(cap(c.end == 0 ? "cap0" : "cap1", c.className), r, h, 0, false);
        ASSERT_TRUE(m_drawn);
        ASSERT_EQ(all.size(), before.size() + 1);
        const AcDbObjectId id = all.back();
        const double out = c.end == 1 ? 1.0 : -1.0; // the outward direction along Z
        if (c.memberType == 25) {
            Open<AcDbCircle> circle(id);
            ASSERT_TRUE(bool(circle));
            // The flat cap of end 1 stands half-way up: kept as it is.
            const double z = c.end == 1 ? h * 0.5 : 0.0;
            expectNear(circle->center(), AcGePoint3d(0, 0, z), 1e-9 * h, "centre");
            EXPECT_NEAR(circle->radius(), r, 1e-9 * r);
            EXPECT_NEAR(circle->normal().z, out, 1e-9);
        } else {
            const double z = c.end == 1 ? h : 0.0;
            const MassProps mass = massOf(id);
            const double dome = c.memberType == 26 ? r : r * 0.5; // height of the dome
            EXPECT_NEAR(mass.volume, 2.0 / 3.0 * kPi * r * r * dome, 1e-3 * r * r * r);
            expectNear(mass.centroid, AcGePoint3d(0, 0, z + out * 3.0 / 8.0 * dome), 1e-3 * r,
                       "centroid");
        }
        const QelMemberRecord record = recordOf(id);
        EXPECT_EQ(record.memberType, c.memberType);
        EXPECT_EQ(record.partIndex, c.end);
        EXPECT_DOUBLE_EQ(record.length, r);
        EXPECT_EQ(record.objectIndex, 7);
        EXPECT_EQ(std::wstring(record.filePath.GetString()), L"/data/plant.qel");
        EXPECT_EQ(std::wstring(record.groupName.GetString()), m_groupName);
        EXPECT_EQ(xdataOf(id), std::vector<std::wstring>{c.xdata});
        EXPECT_EQ(groupMembersOf(id), std::vector<AcDbObjectId>{id});
    }
}

// The pose moves a cap with its object: the far dome of an object lying along X.
TEST_F(Caps, ThePoseCarriesTheCap) {
    const double r = 0.5, h = 2.0;
    const AcGeMatrix3d translation = AcGeMatrix3d::translation(AcGeVector3d(10, 20, 30));
    // A quarter turn about Y through the object's origin turns its Z into X.
    const AcGeMatrix3d rotation =
        AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kYAxis, AcGePoint3d(10, 20, 30));
    const std::vector<AcDbObjectId> ids =
        draw(cap("cap1", "HemiSphericCap"), r, h, 0, true, translation, rotation);
    ASSERT_EQ(ids.size(), 1u);
    const MassProps mass = massOf(ids[0]);
    expectNear(mass.centroid, AcGePoint3d(10 + h + 3.0 / 8.0 * r, 20, 30), 1e-3 * r, "centroid");
}

// Solids close their own flat ends: only the exact class name "FlatCap" is left out then, and a
// cap of another class is drawn as a flat one. Subtype 1 puts flat caps on both ends of blocks
// and nothing on solids, whatever the caps of the object say.
TEST_F(Caps, WhichCapsAreDrawn) {
    const double r = 1.0, h = 4.0;
    auto kinds = [](const std::vector<AcDbObjectId>& ids) {
        std::vector<std::string> out;
        for (const AcDbObjectId& id : ids) {
            Open<AcDbEntity> entity(id);
            out.push_back(entity ? AcDbCircle::cast(entity.get()) ? "circle" : "solid" : "?");
        }
        return out;
    };
    using Kinds = std::vector<std::string>;
    const std::string both = cap("cap0", "FlatCap") + ", " + cap("cap1", "FlatCap");
    EXPECT_EQ(kinds(draw(both, r, h, 0, true)), Kinds{});
    EXPECT_TRUE(m_drawn);
    EXPECT_EQ(kinds(draw(both, r, h, 0, false)), (Kinds{"circle", "circle"}));

    qelhost::closeDocument(m_document);
    m_document = qelhost::newDocument();
    const std::vector<AcDbObjectId> odd =
        draw(cap("cap0", "flatcap") + ", " + cap("cap1", "ConicalCap"), r, h, 0, true);
    ASSERT_EQ(kinds(odd), (Kinds{"circle", "circle"}));
    EXPECT_EQ(recordOf(odd[1]).memberType, 25);
    EXPECT_NEAR(Open<AcDbCircle>(odd[1])->center().z, h * 0.5, 1e-9 * h);

    qelhost::closeDocument(m_document);
    m_document = qelhost::newDocument();
    const std::string hemi = cap("cap0", "HemiSphericCap");
    EXPECT_EQ(kinds(draw(hemi, r, h, 1, true)), Kinds{});
    const std::vector<AcDbObjectId> blocks = draw(hemi, r, h, 1, false);
    EXPECT_EQ(kinds(blocks), (Kinds{"circle", "circle"}));
    EXPECT_EQ(recordOf(blocks[0]).partIndex, 0);
    EXPECT_EQ(recordOf(blocks[1]).partIndex, 1);
}

} // namespace

// Sizes of drawings in millimetres: the quarter ellipse ends a hair across the axis.
TEST_F(Caps, DomesOfMillimetreSizes) {
    for (const char* kind : {"SemiEllipticCap", "HemiSphericCap"}) {
        SCOPED_TRACE(kind);
        qelhost::closeDocument(m_document);
        m_document = qelhost::newDocument();
        const double r = 150.0, h = 3000.0;
        const std::vector<AcDbObjectId> ids = draw(cap("cap1", kind), r, h, 0, true);
        EXPECT_TRUE(m_drawn);
        ASSERT_EQ(ids.size(), 1u);
        const double dome = std::string(kind) == "HemiSphericCap" ? r : r / 2;
        const MassProps mass = massOf(ids[0]);
        EXPECT_NEAR(mass.volume, 2.0 / 3.0 * kPi * r * r * dome, 1e-3 * r * r * r);
        expectNear(mass.centroid, AcGePoint3d(0, 0, h + 3.0 / 8.0 * dome), 1e-3 * r, "centroid");
    }
    EXPECT_TRUE(boxes().empty());
}
