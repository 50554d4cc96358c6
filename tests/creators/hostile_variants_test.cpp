// Hostile variants of every class the import creates: a good instance of each (the first of the
// fixtures that imports without error) is spoilt one way at a time (a param missing; a real NaN,
// infinite, negative, zero, denormal or huge; an array empty, short by one or of the wrong type;
// a scalar of the wrong type; an object param of the wrong class; its pose degenerate), and each
// variant is imported in a file beside one good line. For every variant the import ends, the line
// is in the drawing, a variant that made nothing is counted as an error, and the drawing saves and
// opens again.
//
// The normal run imports an evenly spread sample; QEL_HOSTILE_ALL=1 runs every variant, and
// QEL_HOSTILE_OFFSET=N shifts the sample.
#include "drawing_summary.h"
#include "import_fixture.h"

#include "import/class_table.h"

#include <arx/dbents.h>
#include <dxf/drawing.h>
#include <qel/qel_json.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <sstream>

namespace {

struct Variant {
    std::string label; // "Class.param: what"
    std::string json;  // the spoilt object
};

struct ObjectDeleter {
    void operator()(QelObject* object) const { object->UnRef(); }
};
using ObjectPtr = std::unique_ptr<QelObject, ObjectDeleter>;

ObjectPtr copyOf(const QelObject& object) {
    return ObjectPtr(qeljson::objectFromJson(qeljson::objectToJson(object), "copy"));
}

bool isReal(QelParamType type) {
    return type == QelDoubleType || type == QelFloatType;
}
bool isRealArray(QelParamType type) {
    return type == QelDoubleArrayType || type == QelFloatArrayType;
}
bool isArray(QelParamType type) {
    return type >= QelByteArrayType;
}

// The hostile reals, by name.
const std::pair<const char*, double> kBadReals[] = {
    {"NaN", std::numeric_limits<double>::quiet_NaN()},
    {"+inf", std::numeric_limits<double>::infinity()},
    {"-inf", -std::numeric_limits<double>::infinity()},
    {"negative", -1.5},
    {"zero", 0.0},
    {"denormal", std::numeric_limits<double>::denorm_min()},
    {"huge", 1e300},
    {"far", 1e20},
};

// The doubles of an array param (floats widened), for rewriting.
std::vector<double> realsOf(QelParam& param) {
    std::vector<double> out;
    unsigned count = 0;
    if (param.GetType() == QelDoubleArrayType) {
        double* values = nullptr;
        param.GetValue(values, count, false);
        out.assign(values, values + count);
    } else {
        float* values = nullptr;
        param.GetValue(values, count, false);
        out.assign(values, values + count);
    }
    return out;
}

QelParam* realArray(const char* name, QelParamType type, const std::vector<double>& values) {
    if (type == QelDoubleArrayType)
        return QelParam::Create(name, values.data(), unsigned(values.size()));
    std::vector<float> narrow(values.begin(), values.end());
    return QelParam::Create(name, narrow.data(), unsigned(narrow.size()));
}

// The array param with only its first `keep` elements.
QelParam* truncatedArray(QelParam& param, unsigned keep) {
    const char* name = param.GetName();
    unsigned count = 0;
    switch (param.GetType()) {
    case QelDoubleArrayType:
    case QelFloatArrayType: {
        std::vector<double> values = realsOf(param);
        values.resize(keep);
        return realArray(name, param.GetType(), values);
    }
    case QelUIntArrayType: {
        unsigned* values = nullptr;
        param.GetValue(values, count, false);
        return QelParam::Create(name, values, keep);
    }
    case QelIntArrayType: {
        int* values = nullptr;
        param.GetValue(values, count, false);
        return QelParam::Create(name, values, keep);
    }
    case QelShortArrayType: {
        short* values = nullptr;
        param.GetValue(values, count, false);
        return QelParam::Create(name, values, keep);
    }
    default: {
        unsigned char* values = nullptr;
        param.GetValue(values, count, false);
        return QelParam::Create(name, values, keep);
    }
    }
}

// A param of the same name and another type: text for numbers and objects, integers for text
// and real arrays, reals for integer arrays.
QelParam* wrongType(QelParam& param) {
    const char* name = param.GetName();
    const unsigned count = std::max(1u, param.GetArraySize());
    switch (param.GetType()) {
    case QelStringType: {
        const int one = 1;
        return QelParam::Create(name, &one, 1);
    }
    case QelDoubleArrayType:
    case QelFloatArrayType: {
        const std::vector<int> ints(count, 1);
        return QelParam::Create(name, ints.data(), count);
    }
    case QelUIntArrayType:
    case QelIntArrayType:
    case QelShortArrayType:
    case QelByteArrayType: {
        const std::vector<double> reals(count, 1.0);
        return QelParam::Create(name, reals.data(), count);
    }
    default:
        return QelParam::Create(name, "not a number");
    }
}

// Every variant of the object, nested objects (poses, sections, lists) spoilt in place through
// `at`, which finds the object to spoil in a fresh copy of the top object.
void spoil(const QelObject& top, const std::function<QelObject*(QelObject&)>& at,
           const std::string& where, std::vector<Variant>& out, int depth) {
    ObjectPtr probe = copyOf(top);
    QelObject* object = at(*probe);
    if (!object) return;
    const std::string className = object->GetName();
    auto add = [&](const std::string& what, const std::function<void(QelObject&)>& change) {
        ObjectPtr copy = copyOf(top);
        QelObject* target = at(*copy);
        change(*target);
        out.push_back({where + className + "." + what, qeljson::objectToJson(*copy)});
    };
    for (unsigned i = 0; i < object->GetParamCount(); ++i) {
        QelParam* param = object->GetParam(i);
        const std::string name = param->GetName();
        const QelParamType type = param->GetType();
        add(name + ": missing", [&](QelObject& o) { o.DeleteParam(name.c_str()); });
        add(name + ": wrong type",
            [&](QelObject& o) { o.AddOrReplaceParam(wrongType(*o.GetParam(name.c_str(), 0))); });
        if (isReal(type))
            for (const auto& [label, value] : kBadReals)
                add(name + ": " + label, [&, value](QelObject& o) {
                    o.AddOrReplaceParam(type == QelDoubleType
                                            ? QelParam::Create(name.c_str(), value)
                                            : QelParam::Create(name.c_str(), float(value)));
                });
        if (type == QelUIntType || type == QelIntType)
            add(name + ": huge", [&](QelObject& o) {
                o.AddOrReplaceParam(QelParam::Create(name.c_str(), 0xFFFFFFF0u));
            });
        if (isArray(type)) {
            const unsigned count = param->GetArraySize();
            add(name + ": empty", [&](QelObject& o) {
                o.AddOrReplaceParam(truncatedArray(*o.GetParam(name.c_str(), 0), 0));
            });
            if (count > 0)
                add(name + ": short by one", [&](QelObject& o) {
                    o.AddOrReplaceParam(truncatedArray(*o.GetParam(name.c_str(), 0), count - 1));
                });
        }
        if (isRealArray(type)) {
            const std::vector<double> values = realsOf(*param);
            for (const auto& [label, value] : kBadReals) {
                // Each of the first elements on its own, then all of them at once.
                const std::size_t each = std::min<std::size_t>(values.size(), 4);
                for (std::size_t k = 0; k <= each; ++k) {
                    std::vector<double> spoilt = values;
                    if (k < each)
                        spoilt[k] = value;
                    else
                        std::fill(spoilt.begin(), spoilt.end(), value);
                    const std::string element = k < each ? "[" + std::to_string(k) + "]" : "[*]";
                    add(name + element + ": " + label, [&, spoilt](QelObject& o) {
                        o.AddOrReplaceParam(realArray(name.c_str(), type, spoilt));
                    });
                }
            }
        }
        if (type == QelObjectType) {
            QelObject* nested = nullptr;
            param->GetValue(nested);
            if (!nested) continue;
            add(name + ": object of the wrong class", [&](QelObject& o) {
                QelObject* other = QelObject::Create(
                    std::string(nested->GetName()) == "Layer" ? "Appearance" : "Layer");
                other->AddOrReplaceParam(QelParam::Create("name", "stray"));
                o.AddOrReplaceParam(QelParam::Create(name.c_str(), other));
                other->UnRef();
            });
            if (depth < 2)
                spoil(
                    top,
                    [at, name](QelObject& root) -> QelObject* {
                        QelObject* parent = at(root);
                        QelParam* p = parent ? parent->GetParam(name.c_str(), 0) : nullptr;
                        QelObject* child = nullptr;
                        if (p) p->GetValue(child);
                        return child;
                    },
                    where + className + "." + name + "/", out, depth + 1);
        }
    }
    // A pose whose rotation has no axis and whose scale is nothing.
    if (depth == 0 && object->GetParam("pose", 0))
        add("pose: degenerate", [](QelObject& o) {
            QelObject* pose = QelObject::Create("Transformation");
            const double rotation[4] = {0, 0, 0, 1};
            const double scale[3] = {0, 0, 0};
            pose->AddOrReplaceParam(QelParam::Create("rotation", rotation, 4));
            pose->AddOrReplaceParam(QelParam::Create("scale", scale, 3));
            o.AddOrReplaceParam(QelParam::Create("pose", pose));
            pose->UnRef();
        });
}

bool created(const char* className) {
    for (const QelClassRow& row : QelClassRows())
        if (row.className && std::string(row.className) == className)
            return row.creator && row.creator != QelCreateNothing;
    return false;
}

const std::string kGoodLine =
    R"({"class": "Line3d", "params": [["startPoint", "double[]", [0, 0, 0]], ["endPoint", "double[]", [1, 0, 0]]]})";
// Object 2 of every file, on no layer: what a group lists.
const std::string kMember =
    R"({"class": "Line3d", "params": [["startPoint", "double[]", [5, 5, 5]], ["endPoint", "double[]", [6, 5, 5]]]})";
const std::string kGroup =
    R"({"class": "GeometricGroup", "params": [["objectList", "uint[]", [2]]]})";

class HostileVariants : public qelintest::ImportTest {
protected:
    // A fresh drawing with the bad object beside the good line, imported.
    void importBeside(const std::string& bad) {
        qelhost::closeDocument(m_document);
        m_document = qelhost::newDocument();
        ASSERT_TRUE(WriteNumber(QEL_SETTINGS_KEY, L"ImportErrorCount", 0));
        QelDocData().importPoints = 1; // point sets are imported only when asked for
        qelintest::FileLayout layout;
        layout.objects = {kGoodLine, bad, kMember};
        layout.layers = {{R"("Plant")", "[0, 1]", ""}};
        const std::wstring file = build(layout.json());
        // Groups and exclusion volumes open the run's file again by this name.
        ASSERT_TRUE(WriteString(QEL_SETTINGS_KEY, L"LastOpenDir", file.c_str()));
        run(file);
    }

    static int goodLines(AcDbDatabase& db) {
        return creatorstest::CountModelSpace(db, [](AcDbEntity& entity) {
            auto* line = AcDbLine::cast(&entity);
            return line && line->startPoint() == AcGePoint3d(0, 0, 0) &&
                   line->endPoint() == AcGePoint3d(1, 0, 0);
        });
    }
    static int entities(AcDbDatabase& db) {
        return creatorstest::CountModelSpace(db, [](AcDbEntity&) { return true; });
    }

    // What a file makes whose second object makes nothing.
    int m_baseline = 0;

    // The first instance of each created class in the fixtures that imports cleanly.
    std::map<std::string, std::string> goodInstances() {
        importBeside(qelintest::object("Transformation"));
        m_baseline = entities(*acdbHostApplicationServices()->workingDatabase());
        std::map<std::string, std::string> found;
        std::vector<std::filesystem::path> fixtures;
        for (const auto& entry : std::filesystem::directory_iterator(QEL_CREATOR_FIXTURE_DIR))
            if (entry.path().extension() == ".json") fixtures.push_back(entry.path());
        std::sort(fixtures.begin(), fixtures.end());
        // Groups list objects by number: the fixtures' refer to objects of their own files.
        importBeside(kGroup);
        if (errorCount() == 0) found["GeometricGroup"] = kGroup;
        for (const std::filesystem::path& fixture : fixtures) {
            std::ifstream in(fixture);
            std::ostringstream text;
            text << in.rdbuf();
            const std::wstring file = build(text.str(), "fixture.qel");
            QelReader reader(std::filesystem::path(file).string().c_str());
            for (unsigned id = 0; id < reader.GetObjectCount(); ++id) {
                ObjectPtr object(reader.ReadObject(id));
                if (!object || !created(object->GetName()) || found.count(object->GetName()))
                    continue;
                const std::string json = qeljson::objectToJson(*object);
                importBeside(json);
                AcDbDatabase& db = *acdbHostApplicationServices()->workingDatabase();
                if (errorCount() == 0 && entities(db) > m_baseline) found[object->GetName()] = json;
            }
        }
        return found;
    }
};

TEST_F(HostileVariants, FailOneObjectAndLeaveADrawingThatSavesAndReopens) {
    const std::map<std::string, std::string> instances = goodInstances();
    // Every class with a creator has a good instance among the fixtures.
    for (const QelClassRow& row : QelClassRows())
        if (row.className && created(row.className)) {
            EXPECT_TRUE(instances.count(row.className))
                << "no fixture imports a " << row.className << " cleanly";
        }

    std::vector<Variant> variants;
    for (const auto& [className, json] : instances) {
        ObjectPtr object(qeljson::objectFromJson(json, className));
        spoil(
            *object, [](QelObject& root) { return &root; }, "", variants, 0);
    }
    const bool all = std::getenv("QEL_HOSTILE_ALL") != nullptr;
    const char* offsetText = std::getenv("QEL_HOSTILE_OFFSET");
    const std::size_t sample = 160;
    const std::size_t stride = all ? 1 : std::max<std::size_t>(1, variants.size() / sample);
    const std::size_t offset = offsetText ? std::strtoul(offsetText, nullptr, 10) % stride : 0;
    std::cout << variants.size() << " variants, every " << stride << "th from " << offset
              << " imported\n";

    int checked = 0;
    for (std::size_t i = offset; i < variants.size(); i += stride) {
        const Variant& variant = variants[i];
        SCOPED_TRACE(variant.label);
        if (all) std::cout << variant.label << std::endl;
        m_mark = win::Transcript::instance().size();
        importBeside(variant.json);
        AcDbDatabase& db = *acdbHostApplicationServices()->workingDatabase();
        EXPECT_EQ(goodLines(db), 1) << "the good object is lost";
        if (entities(db) == m_baseline) {
            const bool told = errorCount() > 0 || !boxes().empty() || !printed().empty();
            EXPECT_TRUE(told) << "nothing made and nothing said";
        }
        const std::string path = (m_folder / "saved.dxf").string();
        std::string message;
        if (!dxf::saveDrawing(db, path, message)) {
            ADD_FAILURE() << "the drawing does not save: " << message;
            continue;
        }
        std::unique_ptr<AcDbDatabase> reopened = dxf::openDrawing(path, message);
        if (!reopened) {
            ADD_FAILURE() << "the saved drawing does not reopen: " << message;
            continue;
        }
        EXPECT_EQ(goodLines(*reopened), 1);
        ++checked;
    }
    EXPECT_GT(checked, 0);
}

} // namespace
