// The full sample is what the round trip is proven on: it must hold every class of the
// catalogue, pass the checker, and be large where the import has limits.
#include "support.h"

#include "objectfile/catalogue.h"
#include "validate.h"

#include <gtest/gtest.h>

#include <set>

namespace {

// Class names of the object and of everything nested in it.
void collect(QelObject& o, std::set<std::string>& names) {
    names.insert(o.GetName());
    for (unsigned i = 0; i < o.GetParamCount(); ++i) {
        QelParam* p = o.GetParam(i);
        QelObject* child = nullptr;
        if (p && p->GetType() == QelObjectType) p->GetValue(child);
        if (child) collect(*child, names);
    }
}

} // namespace

TEST(FullSample, HoldsEveryClassOfTheCatalogueAndPassesTheChecker) {
    qeltest::initLibrary();
    QelReader reader(QEL_SAMPLE_FULL);
    for (const qeltool::Finding& f : qeltool::validate(reader))
        ADD_FAILURE() << "object " << f.object << ": " << f.text;
    std::set<std::string> names, sections;
    int meshVertices = 0;
    for (unsigned id = 0; id < reader.GetObjectCount(); ++id) {
        qeltest::Ref o(reader.ReadObject(id));
        collect(*o, names);
        const std::string cls = o->GetName();
        if (cls == "StdShapeExtrusion" || cls == "StdShape") {
            const char* section = nullptr;
            o->GetParam("sectionType", 0)->GetValue(section);
            sections.insert(cls + " " + section);
        }
        if (cls == "TriMesh") o->GetParam("vertexCount", 0)->GetValue(meshVertices);
    }
    for (const QelClassSpec& cls : QelCatalogue()) {
        if (cls.geometric) {
            EXPECT_TRUE(names.count(cls.name)) << cls.name;
        }
    }
    for (const char* kind : {"IntAnnotation", "DblAnnotation", "StrAnnotation", "FlatCap",
                             "SemiEllipticCap", "HemiSphericCap", "VelmoraParam"})
        EXPECT_TRUE(names.count(kind)) << kind;
    for (const char* section : {"SteelWideFlange", "SteelTee", "SteelChannel",
                                "SteelRectangularTube", "SteelAngle", "SteelBar"})
        EXPECT_TRUE(sections.count(std::string("StdShapeExtrusion ") + section)) << section;
    EXPECT_GT(meshVertices, 32767) << "one host mesh holds 32767 vertices: the import must cut";
}
