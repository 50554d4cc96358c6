// What an exported object takes from the entities around it: its group's annotation texts, and a
// pipe's caps. Objects imported by the driver give the texts, records and caps as a user has them.
#include "export_fixture.h"

#include "creators/helpers/group_tag.h"
#include "export/entity_annotations.h"
#include "export/qel_out_object.h"
#include "objectfile/type_codes.h"

#include <arx/dbsol3d.h>
#include <qel/qel_json.h>

#include <map>
#include <string>

namespace {

struct Unref {
    void operator()(QelObject* object) const { object->UnRef(); }
};
using ObjectPtr = std::unique_ptr<QelObject, Unref>;

// Each param of the object's "annotations": its class and value as text.
std::map<std::string, std::string> annotationsOf(QelObject* object) {
    std::map<std::string, std::string> out;
    QelParam* param = object->GetParam("annotations", 0);
    if (!param) return out;
    QelObject* annotations = nullptr;
    param->GetValue(annotations);
    for (unsigned i = 0; i < annotations->GetParamCount(); ++i) {
        QelParam* item = annotations->GetParam(i);
        QelObject* annotation = nullptr;
        item->GetValue(annotation);
        QelParam* value = annotation->GetParam("value", 0);
        std::string text;
        switch (value->GetType()) {
        case QelIntType: {
            int v = 0;
            value->GetValue(v);
            text = std::to_string(v);
            break;
        }
        case QelDoubleType: {
            double v = 0;
            value->GetValue(v);
            text = std::to_string(v);
            break;
        }
        default: {
            const char* v = nullptr;
            value->GetValue(v);
            text = v ? v : "";
        }
        }
        out[item->GetName()] = std::string(annotation->GetName()) + " " + text;
    }
    return out;
}

// The class names of the object's cap params.
std::map<std::string, std::string> capsOf(QelObject* object) {
    std::map<std::string, std::string> out;
    for (const char* name : {"cap0", "cap1"})
        if (QelParam* param = object->GetParam(name, 0)) {
            QelObject* cap = nullptr;
            param->GetValue(cap);
            out[name] = cap->GetName();
        }
    return out;
}

std::string cylinder(const std::string& extra) {
    return R"({"class": "Cylinder", "params": [["radius", "double", 0.5], ["height", "double", 2.0],
        ["pose", "object", {"class": "Transformation", "params": [
            ["translation", "double[]", [1, 2, 3]]]}])" +
           extra + "]}";
}

class ObjectExtras : public qelintest::ExportTest {
protected:
    // The first solid the import of the object adds to model space.
    AcDbObjectId importedSolid(const std::string& object) {
        const std::size_t before = modelSpace().size();
        answer("");
        run(qelintest::oneLayer({object}));
        const std::vector<AcDbObjectId> ids = modelSpace();
        for (std::size_t i = before; i < ids.size(); ++i)
            if (is<AcDb3dSolid>(ids[i])) return ids[i];
        ADD_FAILURE() << "no solid imported";
        return AcDbObjectId::kNull;
    }
    void annotate(QelObject* object, AcDbObjectId id) {
        writeAnnotationsOfEntity(m_out, object, m_writer, id);
    }
    void caps(QelObject* object, AcDbObjectId id) { writeCaps(m_out, object, m_writer, id); }

    QelOutObject m_out;
    QelWriter m_writer;
};

} // namespace

// Each kind of value comes back as its kind, named by its record; a real is read as a whole
// number, as it always has been. Texts the user added: without a colon nothing, with one a
// string named by what stands before the colon.
TEST_F(ObjectExtras, AnnotationTextsComeBackByTheirRecords) {
    const AcDbObjectId id = importedSolid(cylinder(R"(, ["annotations", "object", {"class": "A",
        "params": [
          ["Count", "object", {"class": "IntAnnotation", "params": [["value", "int", -42]]}],
          ["Weight", "object", {"class": "DblAnnotation", "params": [["value", "double", 12.75]]}],
          ["Tag", "object", {"class": "StrAnnotation", "params": [["value", "string", "V-101: main"]]}]]}])"));
    ASSERT_FALSE(id.isNull());
    // The user's own texts in the group.
    AcDbObjectIdArray members;
    {
        AcDbGroup* group = nullptr;
        ASSERT_EQ(acdbOpenObject(group, groupOf(id), AcDb::kForWrite), Acad::eOk);
        group->append(add(new AcDbText(AcGePoint3d(), L"no colon here")));
        group->append(add(new AcDbText(AcGePoint3d(), L"Owner: plant team")));
        group->close();
    }
    ObjectPtr object(QelObject::Create("Cylinder"));
    annotate(object.get(), id);
    EXPECT_EQ(annotationsOf(object.get()),
              (std::map<std::string, std::string>{{"Count", "IntAnnotation -42"},
                                                  {"Weight", "DblAnnotation 12.000000"},
                                                  {"Tag", "StrAnnotation V-101: main"},
                                                  {"Owner", "StrAnnotation plant team"}}));

    // An object read from the reference gets the drawing's annotations in place of its own.
    ObjectPtr fromReference(qeljson::objectFromJson(R"({"class": "Cylinder", "params": [
        ["annotations", "object", {"class": "Annotations", "params": [["Old", "object",
            {"class": "StrAnnotation", "params": [["value", "string", "gone"]]}]]}]]})",
                                                    "reference"));
    annotate(fromReference.get(), id);
    EXPECT_EQ(annotationsOf(fromReference.get()).count("Old"), 0u);
    EXPECT_EQ(annotationsOf(fromReference.get()).size(), 4u);

    // Outside a group there is nothing to take.
    ObjectPtr lone(QelObject::Create("Cylinder"));
    annotate(lone.get(), frustum(2, 1, 1));
    EXPECT_EQ(lone->GetParam("annotations", 0), nullptr);
}

// A lone solid pipe has flat ends; an imported one has the caps drawn in its group, at the ends
// their roles name.
TEST_F(ObjectExtras, CapsOfAPipeByItsGroupOrFlat) {
    ObjectPtr lone(QelObject::Create("Cylinder"));
    caps(lone.get(), frustum(2, 1, 1));
    EXPECT_EQ(capsOf(lone.get()),
              (std::map<std::string, std::string>{{"cap0", "FlatCap"}, {"cap1", "FlatCap"}}));

    ObjectPtr circle(QelObject::Create("Cylinder"));
    caps(circle.get(), add(new AcDbCircle(AcGePoint3d(), AcGeVector3d::kZAxis, 1.0)));
    EXPECT_TRUE(capsOf(circle.get()).empty()) << "a thick circle alone has no caps";

    // A solid's flat end is the solid's own: the import draws no flat cap for it.
    const std::pair<std::string, std::string> imported[] = {{"FlatCap", "HemisphericCap"},
                                                            {"SemiEllipticCap", "FlatCap"}};
    const std::map<std::string, std::string> expected[] = {{{"cap1", "HemisphericCap"}},
                                                           {{"cap0", "SemiEllipticCap"}}};
    for (int i = 0; i < 2; ++i) {
        const auto& [cap0, cap1] = imported[i];
        SCOPED_TRACE(cap0 + " " + cap1);
        const AcDbObjectId id = importedSolid(cylinder(R"(, ["cap0", "object", {"class": ")" +
                                                       cap0 + R"(", "params": []}],
                          ["cap1", "object", {"class": ")" +
                                                       cap1 + R"(", "params": []}])"));
        ObjectPtr object(QelObject::Create("Cylinder"));
        caps(object.get(), id);
        EXPECT_EQ(capsOf(object.get()), expected[i]);
    }

    // Flat caps drawn as circles count by their tag; an untagged circle is no cap.
    CString groupName;
    AcDbGroup* group = QelMakeObjectGroup(L"Pipe", L"QelPipe", groupName);
    ASSERT_NE(group, nullptr);
    const AcDbObjectId pipe = frustum(2, 1, 1);
    const AcDbObjectId flat = add(new AcDbCircle(AcGePoint3d(), AcGeVector3d::kZAxis, 1.0));
    const AcDbObjectId loose = add(new AcDbCircle(AcGePoint3d(), AcGeVector3d::kZAxis, 1.0));
    for (const AcDbObjectId& member : {pipe, flat, loose})
        QelGroupAppend(group, member);
    QelCloseGroup(group);
    tag(flat, QelCode::FlatCap, 1);
    ObjectPtr object(QelObject::Create("Cylinder"));
    caps(object.get(), pipe);
    EXPECT_EQ(capsOf(object.get()), (std::map<std::string, std::string>{{"cap1", "FlatCap"}}));
}
