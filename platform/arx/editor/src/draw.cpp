// Commands that draw: POINT, SPLINE by fit points, PFACE. Points are in the current UCS and the
// entities go to model space on the current layer.
#include "processor.h"

#include <arx/acdb.h>
#include <arx/dbmesh.h>
#include <arx/dbspline.h>

namespace qelhost {

namespace {

using Got = CommandContext::Got;

// Appends to model space; the entity is deleted when that fails.
bool append(AcDbEntity* entity) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTableRecord* space = nullptr;
    if (acdbOpenObject(space, db->modelSpaceId(), AcDb::kForWrite) != Acad::eOk) {
        delete entity;
        return false;
    }
    entity->setDatabaseDefaults(db);
    const Acad::ErrorStatus es = space->appendAcDbEntity(entity);
    space->close();
    if (es != Acad::eOk) {
        delete entity;
        return false;
    }
    entity->close();
    return true;
}

int point(CommandContext& ctx) {
    AcGePoint3d p;
    std::wstring word;
    const Got got = ctx.point(L"Specify a point: ", p, word);
    if (got == Got::kCancel) return RTCAN;
    if (got != Got::kValue) {
        ctx.invalid(L"Requires a point.");
        return RTERROR;
    }
    return append(new AcDbPoint(toWorld(p))) ? RTNORM : RTERROR;
}

// A tangent prompt: Enter takes the default, a point gives the direction from the fit point.
int tangent(CommandContext& ctx, const wchar_t* prompt, const AcGePoint3d& at,
            AcGeVector3d& direction) {
    AcGePoint3d p;
    std::wstring word;
    const Got got = ctx.point(prompt, p, word);
    if (got == Got::kCancel) return RTCAN;
    if (got == Got::kEnter) return RTNORM;
    if (got != Got::kValue) return RTERROR;
    direction = toWorld(p) - at;
    return RTNORM;
}

int spline(CommandContext& ctx) {
    AcGePoint3dArray fit;
    bool closed = false;
    for (;;) {
        AcGePoint3d p;
        std::wstring word;
        const Got got = ctx.point(
            fit.isEmpty() ? L"Specify first point: "
                          : L"Specify next point or [Close/Fit tolerance] <start tangent>: ",
            p, word);
        if (got == Got::kCancel) return RTCAN;
        if (got == Got::kValue) {
            fit.append(toWorld(p));
            continue;
        }
        const Option kClose[] = {{L"C", L"CLOSE"}};
        if (got == Got::kWord && fit.length() >= 2 && matchOption(word, kClose) == 0) {
            closed = true;
            break;
        }
        if (got == Got::kEnter && fit.length() >= 2) break;
        ctx.invalid(fit.length() < 2 ? L"A spline needs at least two points."
                                     : L"Invalid point or option keyword.");
        return RTERROR;
    }
    AcGeVector3d start, end;
    int status = RTNORM;
    if (closed) {
        // A closed spline comes back to its first point with one tangent for both ends.
        fit.append(fit[0]);
        status = tangent(ctx, L"Specify tangent: ", fit[0], start);
        end = start;
    } else {
        status = tangent(ctx, L"Specify start tangent: ", fit[0], start);
        if (status == RTNORM)
            status = tangent(ctx, L"Specify end tangent: ", fit[fit.length() - 1], end);
    }
    if (status != RTNORM) return status;
    return append(new AcDbSpline(fit, start, end)) ? RTNORM : RTERROR;
}

// A face of more than four vertices becomes several records whose inner edges are hidden.
void addFace(AcDbPolyFaceMesh& mesh, const std::vector<int>& face) {
    const int n = int(face.size());
    auto record = [&mesh](int a, int b, int c, int d) {
        mesh.appendFaceRecord(
            new AcDbFaceRecord(Adesk::Int16(a), Adesk::Int16(b), Adesk::Int16(c), Adesk::Int16(d)));
    };
    if (n <= 4) {
        record(face[0], face[1], face[2], n == 4 ? face[3] : 0);
        return;
    }
    // A fan of quadrilaterals from the first vertex; a negative number hides the edge that
    // starts at that vertex, so the seams between the records don't show.
    for (int k = 1; k < n - 1; k += 2) {
        const int a = k > 1 ? -std::abs(face[0]) : face[0];
        const bool last = k + 2 >= n - 1;
        int d = k + 2 < n ? face[k + 2] : 0;
        if (!last) d = -std::abs(d);
        record(a, face[k], face[k + 1], d);
    }
}

int pface(CommandContext& ctx) {
    std::vector<AcGePoint3d> vertices;
    for (;;) {
        AcGePoint3d p;
        std::wstring word;
        const Got got = ctx.point(L"Specify location for vertex " +
                                      std::to_wstring(vertices.size() + 1) + L": ",
                                  p, word);
        if (got == Got::kCancel) return RTCAN;
        if (got == Got::kEnter && vertices.size() >= 3) break;
        if (got != Got::kValue) {
            ctx.invalid(L"A face mesh needs at least three vertices.");
            return RTERROR;
        }
        vertices.push_back(toWorld(p));
    }
    std::vector<std::vector<int>> faces;
    for (;;) {
        std::vector<int> face;
        for (;;) {
            double value = 0;
            const Got got = ctx.number(L"Face " + std::to_wstring(faces.size() + 1) + L", vertex " +
                                           std::to_wstring(face.size() + 1) + L": ",
                                       value);
            if (got == Got::kCancel) return RTCAN;
            if (got == Got::kEnter) break;
            const int index = int(value);
            if (got != Got::kValue || index == 0 || std::abs(index) > int(vertices.size())) {
                ctx.invalid(L"Vertex number out of range.");
                return RTERROR;
            }
            face.push_back(index);
        }
        if (face.empty()) break;
        if (face.size() < 3) {
            ctx.invalid(L"A face needs at least three vertices.");
            return RTERROR;
        }
        faces.push_back(std::move(face));
    }
    auto* mesh = new AcDbPolyFaceMesh;
    for (const AcGePoint3d& v : vertices)
        mesh->appendVertex(new AcDbPolyFaceMeshVertex(v));
    for (const auto& face : faces)
        addFace(*mesh, face);
    return append(mesh) ? RTNORM : RTERROR;
}

const ProcessorCommand kCommands[] = {
    {L"POINT", point},
    {L"SPLINE", spline},
    {L"PFACE", pface},
};

} // namespace

std::span<const ProcessorCommand> drawCommands() {
    return kCommands;
}

} // namespace qelhost
