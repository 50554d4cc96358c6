// The writers of steel outlines and of flat entities with thickness, on entities made in a host
// drawing: what each leaves in its object, and what the self-writing ones write.
#include "export/qel_out_object.h"
#include "export_params.h"
#include "host_fixture.h"
#include "objectfile/param_read.h"
#include "records/member_record.h"
#include "shell/doc_data.h"
#include "writers/curve_writers.h"
#include "writers/patch_writers.h"

#include <arx/dbpl.h>
#include <arx/dbpoly.h>

#include <cmath>
#include <initializer_list>

using qelintest::HostTest;

namespace {

using namespace qelintest;

// Twice the signed area of the x y pairs, closing point included.
double twiceArea(const std::vector<double>& v) {
    double sum = 0;
    for (std::size_t i = 0; i + 3 < v.size(); i += 2)
        sum += v[i] * v[i + 3] - v[i + 2] * v[i + 1];
    return sum;
}

class FlatWriters : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        QelInit(0, 0, QelInitWords);
        m_file = (m_folder / "written.qel").string();
        QelDocData().lastObjectRef = -1;
    }
    AcDbObjectId outline(std::initializer_list<AcGePoint2d> points, int taggedSection = -1) {
        auto* polyline = new AcDbPolyline();
        unsigned i = 0;
        for (const AcGePoint2d& p : points)
            polyline->addVertexAt(i++, p);
        polyline->setClosed(true);
        const AcDbObjectId id = add(polyline);
        if (taggedSection >= 0) {
            QelMemberRecord tag; // stored on the closed entity, as the creators do
            tag.memberType = 4;
            tag.partIndex = taggedSection;
            EXPECT_TRUE(tag.Store(polyline));
        }
        return id;
    }
    // The objects the writers wrote themselves, read back.
    std::vector<QelObjectRef> written() {
        writer().Close();
        m_writer.reset();
        QelReader reader;
        reader.Open(m_file.c_str());
        std::vector<QelObjectRef> objects;
        for (unsigned i = 0; i < reader.GetObjectCount(); ++i)
            objects.emplace_back(reader.ReadObject(i));
        return objects;
    }
    QelWriter& writer() {
        if (!m_writer) m_writer = std::make_unique<QelWriter>(m_file.c_str());
        return *m_writer;
    }

    std::string m_file;
    std::unique_ptr<QelWriter> m_writer;
    QelOutObject m_out;
    const AcGeMatrix3d m_identity;
};

} // namespace

// Without a tag an outline's section goes by its count of corners: 12 (13 with the first again)
// is a wide flange measured in full, 4 is the tube whose thicknesses only a tag could give.
TEST_F(FlatWriters, AnUntaggedOutlineIsTakenByItsCornerCount) {
    const double w = 0.2, d = 0.3, tf = 0.015, tw = 0.01;
    const AcDbObjectId flange = outline({{0, 0},
                                         {0, tf},
                                         {w / 2 - tw / 2, tf},
                                         {w / 2 - tw / 2, d - tf},
                                         {0, d - tf},
                                         {0, d},
                                         {w, d},
                                         {w, d - tf},
                                         {w / 2 + tw / 2, d - tf},
                                         {w / 2 + tw / 2, tf},
                                         {w, tf},
                                         {w, 0}});
    QelObjectRef shape(QelObject::Create("StdShape"));
    ASSERT_TRUE(QelWriteStdShape(m_identity, shape.get(), writer(), flange));
    EXPECT_EQ(text(shape.get(), "sectionType"), "SteelWideFlange");
    const std::pair<const char*, double> sizes[] = {
        {"depth", d}, {"width", w}, {"flangeThickness", tf}, {"webThickness", tw}};
    for (const auto& [name, value] : sizes)
        EXPECT_NEAR(reals(shape.get(), name).at(0), value, 1e-12) << name;

    const AcDbObjectId tube = outline({{1, 1}, {1, 1.5}, {3, 1.5}, {3, 1}});
    QelObjectRef tubeShape(QelObject::Create("StdShape"));
    ASSERT_TRUE(QelWriteStdShape(m_identity, tubeShape.get(), writer(), tube));
    EXPECT_EQ(text(tubeShape.get(), "sectionType"), "SteelRectangularTube");
    EXPECT_NEAR(reals(tubeShape.get(), "depth").at(0), 0.5, 1e-12);
    EXPECT_NEAR(reals(tubeShape.get(), "width").at(0), 2.0, 1e-12);
    EXPECT_EQ(reals(tubeShape.get(), "flangeThickness"), std::vector<double>{0.0});
    EXPECT_EQ(reals(tubeShape.get(), "webThickness"), std::vector<double>{0.0});
}

// A tag that names a section the outline hasn't the corners for leaves the object untouched.
TEST_F(FlatWriters, ATaggedSectionWithTooFewCornersWritesNothing) {
    for (int section : {0, 1, 2}) {
        const AcDbObjectId id = outline({{0, 0}, {0, 1}, {2, 1}, {2, 0}}, section);
        QelObjectRef shape(QelObject::Create("StdShape"));
        EXPECT_FALSE(QelWriteStdShape(m_identity, shape.get(), writer(), id)) << section;
        EXPECT_EQ(shape->GetParamCount(), 0u) << section;
    }
}

// A trace runs round its corners 0, 1, 3, 2; it is placed through the export's matrix, and
// only a thick one gets a height.
TEST_F(FlatWriters, TracesRunRoundTheirCornersThroughTheMatrix) {
    auto* thin = new AcDbTrace(AcGePoint3d(0, 0, 0), AcGePoint3d(4, 0, 0), AcGePoint3d(0, 1, 0),
                               AcGePoint3d(4, 1, 0));
    auto* thick = new AcDbTrace(AcGePoint3d(0, 0, 0), AcGePoint3d(4, 0, 0), AcGePoint3d(0, 1, 0),
                                AcGePoint3d(4, 1, 0));
    thick->setThickness(0.5);
    const AcDbObjectId ids[] = {add(thin), add(thick)};
    const AcGeMatrix3d moved = AcGeMatrix3d::translation(AcGeVector3d(10, 0, 0));
    for (const AcDbObjectId& id : ids) {
        QelObjectRef patch(QelObject::Create("PlanarPatch"));
        ASSERT_TRUE(QelWriteTrace(moved, patch.get(), writer(), id));
        const std::vector<double> v = reals(patch.get(), "vertices");
        ASSERT_EQ(v.size(), 10u);
        EXPECT_NEAR(std::fabs(twiceArea(v)), 8.0, 1e-12) << "a rectangle, not a bow tie";
        QelObject* pose = nullptr;
        patch->GetParam("pose", 0)->GetValue(pose);
        EXPECT_EQ(reals(pose, "translation"), (std::vector<double>{10, 0, 0}));
        const bool isThick = id == ids[1];
        EXPECT_EQ(reals(patch.get(), "height"),
                  isThick ? std::vector<double>{0.5} : std::vector<double>{});
    }
    auto* flat = new AcDbTrace(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0), AcGePoint3d(2, 0, 0),
                               AcGePoint3d(3, 0, 0));
    QelObjectRef patch(QelObject::Create("PlanarPatch"));
    EXPECT_FALSE(QelWriteTrace(m_identity, patch.get(), writer(), add(flat)));
    EXPECT_NE(win::Transcript::instance().printed().find(L"skipping degenerate object"),
              std::wstring::npos);
}

// A 2-D solid writes its own object: a triangle as a patch of three corners, a thick quad as an
// extrusion of four with its height.
TEST_F(FlatWriters, TwoDimensionalSolidsWriteTheirOwnObjects) {
    auto* triangle =
        new AcDbSolid(AcGePoint3d(0, 0, 0), AcGePoint3d(2, 0, 0), AcGePoint3d(0, 2, 0));
    auto* quad = new AcDbSolid(AcGePoint3d(0, 0, 1), AcGePoint3d(3, 0, 1), AcGePoint3d(0, 2, 1),
                               AcGePoint3d(3, 2, 1));
    quad->setThickness(0.25);
    EXPECT_TRUE(QelWriteSolid2d(m_out, writer(), add(triangle)));
    EXPECT_TRUE(QelWriteSolid2d(m_out, writer(), add(quad)));
    EXPECT_EQ(QelDocData().lastObjectRef, 1);
    const std::vector<QelObjectRef> objects = written();
    ASSERT_EQ(objects.size(), 2u);
    EXPECT_STREQ(objects[0]->GetName(), "PlanarPatch");
    EXPECT_EQ(reals(objects[0].get(), "vertices").size(), 8u);
    EXPECT_NEAR(std::fabs(twiceArea(reals(objects[0].get(), "vertices"))), 4.0, 1e-12);
    EXPECT_STREQ(objects[1]->GetName(), "PlanarPolylineExtrusion");
    EXPECT_NEAR(std::fabs(twiceArea(reals(objects[1].get(), "vertices"))), 12.0, 1e-12);
    EXPECT_EQ(reals(objects[1].get(), "height"), std::vector<double>{0.25});
    EXPECT_NE(objects[1]->GetParam("appearance", 0), nullptr);
}

// A 2-D polyline leaves its vertices in world coordinates, its own plane placed by its normal
// and elevation, the spline frame left out and the first vertex again when closed; with
// thickness it leaves one wall per segment like a lightweight one.
TEST_F(FlatWriters, TwoDimensionalPolylinesLeaveInTheWorldWithoutTheirSplineFrame) {
    auto make = [&](double thickness) {
        auto* polyline = new AcDb2dPolyline();
        polyline->setNormal(AcGeVector3d::kXAxis);
        polyline->setElevation(2.0);
        polyline->setThickness(thickness);
        const AcDbObjectId id = add(polyline);
        AcDb2dPolyline* open = nullptr;
        EXPECT_EQ(acdbOpenObject(open, id, AcDb::kForWrite), Acad::eOk);
        const double corners[][2] = {{0, 0}, {1, 0}, {5, 5}, {1, 1}};
        for (const auto& c : corners) {
            auto* vertex = new AcDb2dVertex(AcGePoint3d(c[0], c[1], 2.0));
            if (c[0] == 5) vertex->setVertexType(AcDb::k2dSplineCtlVertex);
            EXPECT_EQ(open->appendVertex(vertex), Acad::eOk);
            vertex->close();
        }
        open->makeClosed();
        open->close();
        return id;
    };
    QelObjectRef line(QelObject::Create("Polyline3d"));
    ASSERT_TRUE(QelWritePolyline3d(m_identity, line.get(), writer(), make(0.0)));
    const std::vector<double> v = reals(line.get(), "vertices");
    ASSERT_EQ(v.size(), 3u * 4);
    for (std::size_t i = 0; i < v.size(); i += 3)
        EXPECT_NEAR(v[i], 2.0, 1e-12) << "on the plane x = 2, point " << i / 3;
    EXPECT_EQ(std::vector<double>(v.begin(), v.begin() + 3),
              std::vector<double>(v.end() - 3, v.end()));

    EXPECT_EQ(QelWritePolylinePatches(m_out, writer(), make(0.5)).size(), 3u);
    const std::vector<QelObjectRef> walls = written();
    const double lengths[] = {1.0, 1.0, std::sqrt(2.0)}; // the closing edge too
    ASSERT_EQ(walls.size(), 3u);
    for (std::size_t k = 0; k < walls.size(); ++k)
        EXPECT_NEAR(std::fabs(twiceArea(reals(walls[k].get(), "vertices"))) / 2, lengths[k] * 0.5,
                    1e-12)
            << k;
}
