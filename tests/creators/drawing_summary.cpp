#include "drawing_summary.h"
#include "../support/model_space.h"

#include "foundation/error_report.h"
#include "records/member_record.h"
#include "records/xrecords.h"

#include <arx/arx.h>
#include <arx/dbmesh.h>
#include <arx/dbpl.h>
#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>

namespace creatorstest {
namespace {

std::string narrow(const wchar_t* text) {
    std::string out;
    for (; text && *text; ++text)
        out += *text < 128 ? char(*text) : '?';
    return out;
}

std::string number(double value) {
    if (std::fabs(value) < 1e-12) value = 0.0;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.10g", value);
    return buffer;
}

std::string point(const AcGePoint3d& p) {
    return "(" + number(p.x) + "," + number(p.y) + "," + number(p.z) + ")";
}
std::string vector(const AcGeVector3d& v) {
    return point(AcGePoint3d(v.x, v.y, v.z));
}

// Model space's entities by handle, numbered from 1 in the order of the summary: a record's
// handles name the line of the entity they point to.
std::map<Adesk::UInt64, int> g_lineOfHandle;

std::string handleRef(const AcDbHandle& handle) {
    const auto it = g_lineOfHandle.find(Adesk::UInt64(handle));
    return it == g_lineOfHandle.end() ? "?" : "#" + std::to_string(it->second);
}

std::string groupOf(const AcDbEntity* entity, std::string& name) {
    const AcDbVoidPtrArray* reactors = entity->reactors();
    for (int i = 0; reactors && i < reactors->length(); ++i) {
        if (!acdbIsPersistentReactor((*reactors)[i])) continue;
        AcDbGroup* group = nullptr;
        if (acdbOpenObject(group, acdbPersistentReactorObjectId((*reactors)[i])) != Acad::eOk)
            continue;
        name = narrow(group->name());
        std::string description = "\"" + narrow(group->description()) + "\"";
        group->close();
        return description;
    }
    return "-";
}

std::string recordOf(AcDbEntity* entity, const std::string& groupName) {
    ads_name name;
    if (acdbGetAdsName(name, entity->objectId()) != Acad::eOk) return "";
    QelMemberRecord r;
    if (!r.Load(name)) return "";
    std::string out = " rec=" + std::to_string(r.memberType) + "/" + std::to_string(r.objectIndex) +
                      "/" + std::to_string(r.partIndex) + "/" + std::to_string(r.context) + "/" +
                      std::to_string(r.groupSerial);
    const std::pair<const char*, double> fields[] = {
        {"majorRadius", r.majorRadius},
        {"minorRadius", r.minorRadius},
        {"length", r.length},
        {"width", r.width},
        {"depth", r.depth},
        {"radius0", r.radius0},
        {"radius1", r.radius1},
        {"flangeThickness", r.flangeThickness},
        {"webThickness", r.webThickness},
        {"centroid", r.centroid},
        {"handwheelThickness", r.handwheelThickness},
        {"handwheelOffset", r.handwheelOffset},
        {"handwheelRadius", r.handwheelRadius},
        {"stemThickness", r.stemThickness},
        {"stemLength", r.stemLength},
    };
    for (const auto& [field, value] : fields)
        if (value != 0.0) out += std::string(" ") + field + "=" + number(value);
    if (r.miterCount != 0) out += " miterCount=" + std::to_string(r.miterCount);
    if (r.direction[0] != 0.0 || r.direction[1] != 0.0 || r.direction[2] != 0.0)
        out += " direction=" + point(AcGePoint3d(r.direction[0], r.direction[1], r.direction[2]));
    if (!r.handle0.isNull()) out += " handle0=" + handleRef(r.handle0);
    if (!r.handle1.isNull()) out += " handle1=" + handleRef(r.handle1);
    if (narrow(r.groupName) != groupName)
        out += " rgroup=" + (r.groupName.IsEmpty() ? std::string("-") : narrow(r.groupName));
    if (narrow(r.filePath).empty()) out += " nofile";
    return out;
}

std::string xdataOf(const AcDbEntity* entity) {
    resbuf* chain = entity->xData(QEL_XDATA_APP);
    std::string out;
    for (resbuf* rb = chain; rb; rb = rb->rbnext)
        if (rb->restype == 1000)
            out += (out.empty() ? " xdata=\"" : ",\"") + narrow(rb->resval.rstring) + "\"";
    acutRelRb(chain);
    return out;
}

// The vertex count, whether closed, and the vertices of a polyline.
template <typename Vertex, typename Polyline, typename Position>
std::string polylineGeometry(const Polyline* poly, Position position) {
    std::string out;
    int count = 0;
    AcDbObjectIterator* it = poly->vertexIterator();
    for (; !it->done(); it->step())
        if (auto* vertex = Vertex::cast(it->entity())) {
            out += point(position(*vertex));
            ++count;
        }
    delete it;
    return " n=" + std::to_string(count) + " closed=" + std::to_string(poly->isClosed()) +
           " v=" + out;
}

// A polyface mesh: its counts, its box and the faces that are not three or four distinct vertices
// of the mesh; a small mesh then lists every vertex and every face (its vertex numbers, a fourth
// when it has one, and its colour index when it has one), a large one its first and last vertex.
std::string faceMeshGeometry(const AcDbPolyFaceMesh* mesh) {
    constexpr std::size_t kListedVertices = 16;
    std::vector<AcGePoint3d> vertices;
    std::string faceList;
    int faces = 0, badFaces = 0;
    AcDbObjectIterator* it = mesh->vertexIterator();
    for (; !it->done(); it->step()) {
        if (auto* vertex = AcDbPolyFaceMeshVertex::cast(it->entity())) {
            vertices.push_back(vertex->position());
            continue;
        }
        auto* face = AcDbFaceRecord::cast(it->entity());
        if (face == nullptr) continue;
        ++faces;
        // A negative number only hides the edge that starts there; a fourth of 0 makes a triangle.
        std::vector<int> corners;
        std::string numbers;
        for (Adesk::UInt16 k = 0; k < 4; ++k) {
            Adesk::Int16 v = 0;
            face->getVertexAt(k, v);
            if (v == 0 && k == 3) break;
            corners.push_back(std::abs(int(v)));
            numbers += (k ? "," : "") + std::to_string(v);
        }
        bool good = true;
        for (std::size_t i = 0; i < corners.size(); ++i) {
            good = good && corners[i] > 0 && corners[i] <= int(vertices.size());
            for (std::size_t j = 0; j < i; ++j)
                good = good && corners[i] != corners[j];
        }
        badFaces += good ? 0 : 1;
        faceList += " [" + numbers + "]";
        if (face->colorIndex() != 256) faceList += "#" + std::to_string(face->colorIndex());
    }
    delete it;
    AcDbExtents box;
    mesh->getGeomExtents(box);
    std::string out = " vertices=" + std::to_string(vertices.size()) +
                      " faces=" + std::to_string(faces) + " badfaces=" + std::to_string(badFaces) +
                      " box=" + point(box.minPoint()) + point(box.maxPoint());
    if (vertices.size() <= kListedVertices) {
        out += " v=";
        for (const AcGePoint3d& p : vertices)
            out += point(p);
        return out + faceList;
    }
    return out + " first=" + point(vertices.front()) + " last=" + point(vertices.back());
}

std::string geometryOf(const AcDbEntity* entity) {
    if (auto* solid = AcDb3dSolid::cast(entity)) {
        double volume = 0.0, moments[3], products[3], principal[3], gyration[3];
        AcGePoint3d centroid;
        AcGeVector3d axes[3];
        AcDbExtents box;
        if (solid->getMassProp(volume, centroid, moments, products, principal, axes, gyration,
                               box) != Acad::eOk)
            return " nomass";
        return " vol=" + number(volume) + " c=" + point(centroid) +
               " box=" + point(box.minPoint()) + point(box.maxPoint());
    }
    if (auto* region = AcDbRegion::cast(entity)) {
        double area = 0.0;
        AcGeVector3d normal;
        AcDbExtents box;
        region->getArea(area);
        region->getNormal(normal);
        region->getGeomExtents(box);
        return " area=" + number(area) + " n=" + vector(normal) + " box=" + point(box.minPoint()) +
               point(box.maxPoint());
    }
    if (auto* line = AcDbLine::cast(entity))
        return " from=" + point(line->startPoint()) + " to=" + point(line->endPoint());
    if (auto* circle = AcDbCircle::cast(entity))
        return " c=" + point(circle->center()) + " r=" + number(circle->radius()) +
               " n=" + vector(circle->normal()) + " th=" + number(circle->thickness());
    if (auto* ellipse = AcDbEllipse::cast(entity))
        return " c=" + point(ellipse->center()) + " major=" + vector(ellipse->majorAxis()) +
               " ratio=" + number(ellipse->radiusRatio()) + " n=" + vector(ellipse->normal()) +
               " a=" + number(ellipse->startAngle()) + ".." + number(ellipse->endAngle());
    if (auto* poly = AcDb3dPolyline::cast(entity))
        return polylineGeometry<AcDb3dPolylineVertex>(
            poly, [](const AcDb3dPolylineVertex& v) { return v.position(); });
    if (auto* dot = AcDbPoint::cast(entity)) return " at=" + point(dot->position());
    if (auto* poly = AcDb2dPolyline::cast(entity))
        return polylineGeometry<AcDb2dVertex>(
            poly, [poly](const AcDb2dVertex& v) { return poly->vertexPosition(v); });
    if (auto* spline = AcDbSpline::cast(entity)) {
        AcGePoint3d start, end;
        spline->getStartPoint(start);
        spline->getEndPoint(end);
        std::string out = " fit=" + std::to_string(spline->numFitPoints()) +
                          " ctrl=" + std::to_string(spline->numControlPoints()) +
                          " deg=" + std::to_string(spline->degree()) +
                          " closed=" + std::to_string(spline->isClosed()) +
                          " periodic=" + std::to_string(spline->isPeriodic());
        if (spline->numControlPoints() > 0) out += " start=" + point(start) + " end=" + point(end);
        return out;
    }
    if (auto* poly = AcDbPolyline::cast(entity)) {
        std::string out;
        for (unsigned i = 0; i < poly->numVerts(); ++i) {
            AcGePoint3d p;
            poly->getPointAt(i, p);
            out += point(p);
        }
        return " n=" + std::to_string(poly->numVerts()) +
               " closed=" + std::to_string(poly->isClosed()) + " v=" + out;
    }
    if (auto* mesh = AcDbPolyFaceMesh::cast(entity)) return faceMeshGeometry(mesh);
    if (auto* mesh = AcDbPolygonMesh::cast(entity)) {
        // The grid's sizes and ends, the first two pairs of vertices and the last pair.
        std::vector<AcGePoint3d> vertices;
        AcDbObjectIterator* it = mesh->vertexIterator();
        for (; !it->done(); it->step())
            if (auto* vertex = AcDbPolygonMeshVertex::cast(it->entity()))
                vertices.push_back(vertex->position());
        delete it;
        std::string out = " m=" + std::to_string(mesh->mSize()) +
                          " n=" + std::to_string(mesh->nSize()) +
                          " closed=" + std::to_string(mesh->isMClosed()) + "," +
                          std::to_string(mesh->isNClosed()) +
                          " vertices=" + std::to_string(vertices.size()) + " v=";
        for (std::size_t i = 0; i < vertices.size() && i < 4; ++i)
            out += point(vertices[i]);
        if (vertices.size() >= 2)
            out += " end=" + point(vertices[vertices.size() - 2]) + point(vertices.back());
        return out;
    }
    if (auto* text = AcDbText::cast(entity))
        return " \"" + narrow(text->textStringConst()) + "\" at=" + point(text->position()) +
               " h=" + number(text->height());
    if (auto* reference = AcDbBlockReference::cast(entity)) {
        AcDbBlockTableRecord* block = nullptr;
        std::string name = "?";
        if (acdbOpenObject(block, reference->blockTableRecord()) == Acad::eOk) {
            name = narrow(block->name().c_str());
            block->close();
        }
        const AcGeMatrix3d m = reference->blockTransform();
        AcGePoint3d origin;
        AcGeVector3d x, y, z;
        m.getCoordSystem(origin, x, y, z);
        return " block=\"" + name + "\" at=" + point(origin) + " z=" + vector(z);
    }
    return "";
}

std::string entityLine(AcDbEntity* entity) {
    std::string groupName;
    const std::string group = groupOf(entity, groupName);
    ACHAR* layer = entity->layer();
    std::string line = narrow(entity->isA()->name()) + " layer=" + narrow(layer) +
                       " colour=" + std::to_string(entity->colorIndex());
    acutDelString(layer);
    if (entity->visibility() == AcDb::kInvisible) line += " hidden";
    line += " group=" + group + recordOf(entity, groupName) + xdataOf(entity) + geometryOf(entity);
    return line;
}

void summariseRecord(AcDbBlockTableRecord* record, const std::string& prefix,
                     std::vector<std::string>& lines) {
    AcDbBlockTableRecordIterator* it = nullptr;
    record->newIterator(it);
    for (; !it->done(); it->step()) {
        AcDbEntity* entity = nullptr;
        if (it->getEntity(entity) != Acad::eOk) continue;
        lines.push_back(prefix + entityLine(entity));
        entity->close();
    }
    delete it;
}

} // namespace

std::vector<std::string> SummariseDrawing() {
    std::vector<std::string> lines;
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTable* table = nullptr;
    db->getBlockTable(table, AcDb::kForRead);
    AcDbBlockTableRecord* model = nullptr;
    if (table->getAt(ACDB_MODEL_SPACE, model, AcDb::kForRead) == Acad::eOk) {
        g_lineOfHandle.clear();
        AcDbBlockTableRecordIterator* it = nullptr;
        model->newIterator(it);
        for (int line = 1; !it->done(); it->step()) {
            AcDbEntity* entity = nullptr;
            if (it->getEntity(entity) != Acad::eOk) continue;
            g_lineOfHandle[Adesk::UInt64(entity->handle())] = line++;
            entity->close();
        }
        delete it;
        summariseRecord(model, "", lines);
        model->close();
    }
    AcDbBlockTable::Iterator* blocks = nullptr;
    table->newIterator(blocks);
    for (; !blocks->done(); blocks->step()) {
        AcDbBlockTableRecord* block = nullptr;
        if (blocks->getRecord(block) != Acad::eOk) continue;
        if (!block->isLayout())
            summariseRecord(block, "block \"" + narrow(block->name().c_str()) + "\": ", lines);
        block->close();
    }
    delete blocks;
    table->close();
    AcDbDictionary* groups = nullptr;
    if (db->getGroupDictionary(groups, AcDb::kForRead) == Acad::eOk) {
        AcDbDictionaryIterator* it = groups->newIterator();
        for (; !it->done(); it->next()) {
            AcDbGroup* group = nullptr;
            if (acdbOpenObject(group, it->objectId()) != Acad::eOk) continue;
            lines.push_back("group \"" + narrow(group->description()) +
                            "\" members=" + std::to_string(group->numEntities()));
            group->close();
        }
        delete it;
        groups->close();
    }
    unsigned errors = 0;
    QelGetErrorCount(errors);
    lines.push_back("errors " + std::to_string(errors));
    return lines;
}

namespace {

// Words, quoted texts and numbers of a line, each with its tolerance when it is a number.
struct Token {
    std::string text;
    bool isNumber = false;
    double value = 0.0;
    double tolerance = -1.0;
};

std::vector<Token> tokens(const std::string& line) {
    std::vector<Token> out;
    std::size_t i = 0;
    while (i < line.size()) {
        Token t;
        const char c = line[i];
        if (c == '"') {
            const std::size_t end = line.find('"', i + 1);
            const std::size_t stop = end == std::string::npos ? line.size() : end + 1;
            t.text = line.substr(i, stop - i);
            i = stop;
        } else if (std::isdigit(static_cast<unsigned char>(c)) ||
                   ((c == '-' || c == '+' || c == '.') && i + 1 < line.size() &&
                    (std::isdigit(static_cast<unsigned char>(line[i + 1])) ||
                     line[i + 1] == '.'))) {
            char* end = nullptr;
            t.value = std::strtod(line.c_str() + i, &end);
            const std::size_t stop = std::size_t(end - line.c_str());
            if (stop == i) { // a dot or a sign that starts no number
                out.push_back({std::string(1, c)});
                ++i;
                continue;
            }
            t.text = line.substr(i, stop - i);
            t.isNumber = true;
            i = stop;
            if (i < line.size() && line[i] == '~') {
                t.tolerance = std::strtod(line.c_str() + i + 1, &end);
                i = std::size_t(end - line.c_str());
            }
        } else {
            t.text = std::string(1, c);
            ++i;
        }
        out.push_back(t);
    }
    return out;
}

} // namespace

bool LineMatches(const std::string& expected, const std::string& actual, std::string& why) {
    // Words compare character by character; merge runs of single characters back into words
    // so that a "*" can stand for a whole word.
    const std::vector<Token> e = tokens(expected);
    const std::vector<Token> a = tokens(actual);
    std::size_t i = 0, j = 0;
    while (i < e.size() && j < a.size()) {
        if (e[i].text == "*") {
            // Skips one number, one quoted text or one run of word characters (an anonymous
            // name such as "*A1" with its star).
            if (a[j].isNumber || a[j].text[0] == '"') {
                ++j;
            } else {
                if (a[j].text == "*") ++j;
                auto wordPart = [](const Token& t) {
                    if (t.isNumber) // the digits of a name such as "A12"
                        return t.text.find_first_not_of("0123456789") == std::string::npos;
                    return t.text.size() == 1 &&
                           (std::isalnum(static_cast<unsigned char>(t.text[0])) ||
                            t.text[0] == '_');
                };
                while (j < a.size() && wordPart(a[j]))
                    ++j;
            }
            ++i;
            continue;
        }
        if (e[i].isNumber && a[j].isNumber) {
            const double tolerance = e[i].tolerance >= 0.0
                                         ? e[i].tolerance
                                         : 1e-6 * std::max(1.0, std::fabs(e[i].value));
            if (std::fabs(e[i].value - a[j].value) > tolerance) {
                why = "number " + a[j].text + " where " + e[i].text + " was expected";
                return false;
            }
        } else if (e[i].text != a[j].text || e[i].isNumber != a[j].isNumber) {
            why = "'" + a[j].text + "' where '" + e[i].text + "' was expected, at '" +
                  actual.substr(0, 60) + "...'";
            return false;
        }
        ++i;
        ++j;
    }
    if (i < e.size() || j < a.size()) {
        why = i < e.size() ? "the line ends early" : "the line goes on past the expected end";
        return false;
    }
    return true;
}

int CountModelSpace(AcDbDatabase& db, const std::function<bool(AcDbEntity&)>& test) {
    int count = 0;
    for (const AcDbObjectId& id : modelSpaceIds(db)) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) continue;
        count += test(*entity) ? 1 : 0;
        entity->close();
    }
    return count;
}

} // namespace creatorstest
