// Commands that make solids and regions from others, through the solid kernel: REGION, EXTRUDE,
// REVOLVE, UNION, SUBTRACT, INTERSECT, SLICE, and EXPLODE of any entity that breaks up. A
// command that cannot finish leaves the drawing as it was: results are made aside first and
// only then appended, and the sources erased.
#include "prompts.h"

#include <arx/dbpl.h>
#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include <cmath>
#include <memory>

namespace qelhost {

namespace {

// Why the kernel refused, in the operator's words.
std::wstring reason(Acad::ErrorStatus es) {
    switch (es) {
    case Acad::eOpenLoop:
        return L"the curves do not form a closed loop";
    case Acad::eSelfIntersecting:
        return L"a loop crosses itself";
    case Acad::eNonPlanarEntity:
        return L"a loop does not lie in one plane";
    case Acad::eNonCoplanarGeometry:
        return L"the regions do not lie in one plane";
    default:
        return acadErrorStatusText(es);
    }
}

// Runs a kernel call; a thrown status is the status.
template <class F>
Acad::ErrorStatus kernel(F&& call) {
    try {
        return call();
    } catch (int thrown) {
        return Acad::ErrorStatus(thrown);
    }
}

// Entities opened for read for the length of a command, closed at its end.
template <class T>
struct Opened {
    std::vector<T*> items;
    std::vector<AcDbObjectId> ids;
    Opened() = default;
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    ~Opened() { close(); }
    void close() {
        for (T* item : items)
            item->close();
        items.clear();
    }
    // Opens those of the set that are of kind T; the others are counted.
    int take(const SelectionSet& set) {
        int others = 0;
        for (AcDbObjectId id : set) {
            AcDbEntity* entity = nullptr;
            if (acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) continue;
            if (T* item = T::cast(entity)) {
                items.push_back(item);
                ids.push_back(id);
            } else {
                entity->close();
                ++others;
            }
        }
        return others;
    }
};

void eraseAll(const std::vector<AcDbObjectId>& ids) {
    forEachEntity(ids, [](AcDbEntity& e) { return eraseEntity(e) == Acad::eOk; });
}

// Appends made entities, each with the layer and colour of its source.
void appendLike(const std::vector<AcDbEntity*>& made, const AcDbEntity& source) {
    for (AcDbEntity* entity : made) {
        entity->setPropertiesFrom(&source);
        appendEntity(entity);
    }
}

// ---- REGION ----

int region(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    Opened<AcDbCurve> curves;
    const int others = curves.take(*set);
    if (others > 0) tell(std::to_wstring(others) + L" object(s) are not curves and were left.\n");
    if (curves.items.empty()) {
        tell(L"0 Regions created.\n");
        return RTNORM;
    }
    AcDbVoidPtrArray segments, regions;
    for (AcDbCurve* curve : curves.items)
        segments.append(curve);
    const Acad::ErrorStatus es =
        kernel([&] { return AcDbRegion::createFromCurves(segments, regions); });
    if (es != Acad::eOk) {
        ctx.invalid(L"No region made: " + reason(es) + L".");
        return RTERROR;
    }
    tell(std::to_wstring(regions.length()) + L" loop(s) extracted.\n" +
         std::to_wstring(regions.length()) + L" Region(s) created.\n");
    std::vector<AcDbEntity*> made;
    for (int i = 0; i < regions.length(); ++i)
        made.push_back(static_cast<AcDbEntity*>(regions[i]));
    appendLike(made, *curves.items.front());
    curves.close();
    eraseAll(curves.ids);
    return RTNORM;
}

// ---- EXTRUDE and REVOLVE ----

// A profile: a region of the drawing, or one made from a closed curve. The normal it is swept
// along is the curve's own (a circle's, a polyline's), else the region's.
struct Profile {
    AcDbRegion region;
    AcGeVector3d normal;
    AcDbObjectId source;
    const AcDbEntity* entity = nullptr;
};

AcGeVector3d curveNormal(const AcDbCurve& curve, const AcGeVector3d& fallback) {
    if (auto* c = AcDbCircle::cast(&curve)) return c->normal();
    if (auto* a = AcDbArc::cast(&curve)) return a->normal();
    if (auto* p = AcDbPolyline::cast(&curve)) return p->normal();
    return fallback;
}

// The profiles among the set; those that are neither regions nor closed curves are told.
std::vector<std::unique_ptr<Profile>> profiles(const SelectionSet& set, Opened<AcDbEntity>& open) {
    std::vector<std::unique_ptr<Profile>> out;
    open.take(set);
    int skipped = 0;
    for (std::size_t i = 0; i < open.items.size(); ++i) {
        AcDbEntity* entity = open.items[i];
        auto profile = std::make_unique<Profile>();
        profile->source = open.ids[i];
        profile->entity = entity;
        AcGeVector3d n;
        if (auto* r = AcDbRegion::cast(entity)) {
            profile->region.setBody(r->body());
            r->getNormal(n);
            profile->normal = n;
            out.push_back(std::move(profile));
            continue;
        }
        auto* curve = AcDbCurve::cast(entity);
        AcDbVoidPtrArray one, made;
        if (curve != nullptr) one.append(curve);
        if (curve == nullptr || !curve->isClosed() ||
            kernel([&] { return AcDbRegion::createFromCurves(one, made); }) != Acad::eOk ||
            made.length() != 1) {
            for (int k = 0; k < made.length(); ++k)
                delete static_cast<AcDbRegion*>(made[k]);
            ++skipped;
            continue;
        }
        auto* r = static_cast<AcDbRegion*>(made[0]);
        profile->region.setBody(r->body());
        r->getNormal(n);
        delete r;
        profile->normal = curveNormal(*curve, n);
        out.push_back(std::move(profile));
    }
    if (skipped > 0)
        tell(std::to_wstring(skipped) +
             L" object(s) are neither regions nor closed curves and were left.\n");
    return out;
}

// Sweeps every profile; appends the solids and erases the profiles only when all succeeded.
int sweepAll(CommandContext& ctx, std::vector<std::unique_ptr<Profile>>& list,
             Opened<AcDbEntity>& open,
             const std::function<Acad::ErrorStatus(AcDb3dSolid&, Profile&)>& sweep) {
    if (list.empty()) return RTNORM;
    std::vector<AcDbEntity*> made;
    for (auto& profile : list) {
        auto* solid = new AcDb3dSolid;
        const Acad::ErrorStatus es = kernel([&] { return sweep(*solid, *profile); });
        if (es != Acad::eOk || solid->isNull()) {
            delete solid;
            for (AcDbEntity* m : made)
                delete m;
            ctx.invalid(L"The solid could not be modelled: " + reason(es) + L".");
            return RTERROR;
        }
        solid->setPropertiesFrom(profile->entity);
        made.push_back(solid);
    }
    std::vector<AcDbObjectId> used;
    for (auto& profile : list)
        used.push_back(profile->source);
    open.close();
    for (AcDbEntity* m : made)
        appendEntity(m);
    eraseAll(used);
    return RTNORM;
}

int extrude(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    Opened<AcDbEntity> open;
    auto list = profiles(*set, open);
    if (list.empty()) return RTNORM;
    enum { kPath, kTaper };
    const Option kOptions[] = {{L"P", L"PATH"}, {L"T", L"TAPER"}};
    double taper = 0.0;
    for (;;) {
        double height = 0.0;
        const Answer got = askDistance(ctx, L"Specify height of extrusion or [Path/Taper angle]: ",
                                       height, nullptr, kOptions, nonZero);
        if (got == Answer::kCancel) return RTCAN;
        if (got == Answer::kValue)
            return sweepAll(ctx, list, open, [&](AcDb3dSolid& s, Profile& p) {
                // Along the profile's own normal: the region may face the other way.
                AcGeVector3d n;
                p.region.getNormal(n);
                return s.extrude(&p.region, n.dotProduct(p.normal) < 0 ? -height : height, taper);
            });
        if (got.option == kTaper) {
            const double none = 0.0;
            for (;;) {
                if (askAngle(ctx, L"Specify angle of taper for extrusion <0>: ", taper, nullptr, {},
                             &none) == Answer::kCancel)
                    return RTCAN;
                if (std::abs(taper) < std::acos(0.0)) break;
                ctx.invalid(L"The taper angle must lie between -90 and +90 degrees.");
            }
            continue;
        }
        AcDbObjectId pathId;
        if (pickOne(ctx, L"Select extrusion path: ", pathId) == Answer::kCancel) return RTCAN;
        AcDbEntity* opened = nullptr;
        if (acdbOpenObject(opened, pathId, AcDb::kForRead) != Acad::eOk) {
            ctx.invalid(L"The path cannot be opened.");
            continue;
        }
        AcDbCurve* path = AcDbCurve::cast(opened);
        if (path == nullptr) {
            opened->close();
            ctx.invalid(L"The path must be a line, arc, circle, ellipse, polyline or spline.");
            continue;
        }
        const int result = sweepAll(ctx, list, open, [&](AcDb3dSolid& s, Profile& p) {
            return s.extrudeAlongPath(&p.region, path, 0.0);
        });
        path->close();
        return result;
    }
}

int revolve(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    Opened<AcDbEntity> open;
    auto list = profiles(*set, open);
    if (list.empty()) return RTNORM;
    enum { kObject, kX, kY, kZ };
    const Option kOptions[] = {{L"O", L"OBJECT"}, {L"X", L"X"}, {L"Y", L"Y"}, {L"Z", L"Z"}};
    AcGePoint3d a, b;
    for (;;) {
        const Answer got =
            askPoint(ctx, L"Specify axis start point or define axis by [Object/X/Y/Z] <Object>: ",
                     a, kOptions, true);
        if (got == Answer::kCancel) return RTCAN;
        if (got == Answer::kOption && got.option != kObject) {
            const AcGeVector3d axes[] = {AcGeVector3d::kXAxis, AcGeVector3d::kYAxis,
                                         AcGeVector3d::kZAxis};
            a = toWorld(AcGePoint3d::kOrigin);
            b = a + ucsVector(axes[got.option - kX]);
            break;
        }
        if (got == Answer::kValue) {
            if (askPoint(ctx, L"Specify axis endpoint: ", b) == Answer::kCancel) return RTCAN;
        } else {
            AcDbObjectId axisId;
            if (pickOne(ctx, L"Select an object to define the axis of revolution: ", axisId) ==
                Answer::kCancel)
                return RTCAN;
            AcDbLine* line = nullptr;
            if (acdbOpenObject(line, axisId, AcDb::kForRead) != Acad::eOk) {
                ctx.invalid(L"The axis must be a line.");
                continue;
            }
            a = line->startPoint(), b = line->endPoint();
            line->close();
        }
        if (!a.isEqualTo(b)) break;
        ctx.invalid(L"The two points are the same: no axis.");
    }
    double angle = 0.0;
    const double full = 360.0;
    for (;;) {
        if (askAngle(ctx, L"Specify angle of revolution <360>: ", angle, nullptr, {}, &full) ==
            Answer::kCancel)
            return RTCAN;
        if (std::abs(angle) > 1e-9) break;
        ctx.invalid(L"Value must be nonzero.");
    }
    // A negative angle turns the other way about the same axis.
    const AcGeVector3d dir = angle < 0 ? a - b : b - a;
    return sweepAll(ctx, list, open, [&](AcDb3dSolid& s, Profile& p) {
        return s.revolve(&p.region, a, dir, std::min(std::abs(angle), 2 * std::acos(-1.0)));
    });
}

// ---- UNION, SUBTRACT, INTERSECT ----

// Working copies, outside the drawing, of the solids or regions of a set.
template <class Entity>
struct Operands {
    std::vector<AcDbObjectId> ids;
    std::vector<std::unique_ptr<Entity>> copies;
};

template <class Entity>
Operands<Entity> operandsOf(const SelectionSet& set) {
    Operands<Entity> out;
    for (AcDbObjectId id : set) {
        AcDbEntity* opened = nullptr;
        if (acdbOpenObject(opened, id, AcDb::kForRead) != Acad::eOk) continue;
        Entity* e = Entity::cast(opened);
        if (e != nullptr && !e->isNull()) {
            out.ids.push_back(id);
            auto copy = std::make_unique<Entity>();
            copy->setBody(e->body());
            out.copies.push_back(std::move(copy));
        }
        opened->close();
    }
    return out;
}

// Unites the copies into the first.
template <class Entity>
Acad::ErrorStatus uniteAll(std::vector<std::unique_ptr<Entity>>& copies) {
    for (std::size_t i = 1; i < copies.size(); ++i) {
        const auto es =
            kernel([&] { return copies[0]->booleanOper(AcDb::kBoolUnite, copies[i].get()); });
        if (es != Acad::eOk) return es;
    }
    return Acad::eOk;
}

double measure(const AcDb3dSolid& solid) {
    return measureVolume(solid);
}

double measure(const AcDbRegion& region) {
    double area = 0.0;
    region.getArea(area);
    return area;
}

// One boolean over the solids of the sets; nothing when they hold too few of them. The result
// goes to the first entity and the others are erased, once the whole operation has succeeded.
template <class Entity>
std::optional<int> combine(CommandContext& ctx, const SelectionSet& set, const SelectionSet& tools,
                           AcDb::BoolOperType op) {
    Operands<Entity> a = operandsOf<Entity>(set), b = operandsOf<Entity>(tools);
    const bool subtract = op == AcDb::kBoolSubtract;
    if (a.ids.empty() || (subtract ? b.ids.empty() : a.ids.size() < 2)) return std::nullopt;
    Entity& result = *a.copies.front();
    Acad::ErrorStatus es = Acad::eOk;
    if (op == AcDb::kBoolUnite) {
        es = uniteAll(a.copies);
    } else if (subtract) {
        es = uniteAll(a.copies);
        if (es == Acad::eOk) es = uniteAll(b.copies);
        const double before = measure(result);
        if (es == Acad::eOk)
            es = kernel([&] { return result.booleanOper(op, b.copies.front().get()); });
        if (es == Acad::eOk && result.isNull()) {
            ctx.invalid(L"Subtracting would leave nothing: nothing changed.");
            return RTERROR;
        }
        if (es == Acad::eOk && std::abs(measure(result) - before) <= 1e-9 * before) {
            ctx.invalid(L"The objects to subtract do not meet the others: nothing changed.");
            return RTERROR;
        }
    } else {
        for (std::size_t i = 1; es == Acad::eOk && i < a.copies.size(); ++i)
            es = kernel([&] { return result.booleanOper(op, a.copies[i].get()); });
        if (es == Acad::eOk && result.isNull()) {
            ctx.invalid(L"The objects do not overlap: nothing to intersect, nothing changed.");
            return RTERROR;
        }
    }
    if (es != Acad::eOk) {
        ctx.invalid(L"The operation failed: " + reason(es) + L". Nothing changed.");
        return RTERROR;
    }
    Entity* first = nullptr;
    if (acdbOpenObject(first, a.ids.front(), AcDb::kForWrite) != Acad::eOk) return RTERROR;
    es = first->setBody(result.body());
    first->close();
    if (es != Acad::eOk) return RTERROR;
    std::vector<AcDbObjectId> gone(a.ids.begin() + 1, a.ids.end());
    gone.insert(gone.end(), b.ids.begin(), b.ids.end());
    eraseAll(gone);
    return RTNORM;
}

int boolean(CommandContext& ctx, AcDb::BoolOperType op) {
    const bool subtract = op == AcDb::kBoolSubtract;
    if (subtract) tell(L"Select solids and regions to subtract from ..\n");
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    SelectionSet tools;
    if (subtract) {
        tell(L"Select solids and regions to subtract ..\n");
        bool cancelled = false;
        tools = selectObjects(ctx, cancelled);
        if (cancelled) return RTCAN;
        for (AcDbObjectId id : tools)
            if (std::find(set->begin(), set->end(), id) != set->end()) {
                ctx.invalid(L"An object cannot be subtracted from itself.");
                return RTERROR;
            }
    }
    std::optional<int> result = combine<AcDb3dSolid>(ctx, *set, tools, op);
    if (!result) result = combine<AcDbRegion>(ctx, *set, tools, op);
    if (!result) {
        ctx.invalid(subtract ? L"Select a solid or region to subtract from and one to subtract."
                             : L"At least 2 solids or coplanar regions must be selected.");
        return RTERROR;
    }
    return *result;
}

int unite(CommandContext& ctx) {
    return boolean(ctx, AcDb::kBoolUnite);
}
int subtract(CommandContext& ctx) {
    return boolean(ctx, AcDb::kBoolSubtract);
}
int intersect(CommandContext& ctx) {
    return boolean(ctx, AcDb::kBoolIntersect);
}

// ---- SLICE ----

int slice(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    Operands<AcDb3dSolid> solids = operandsOf<AcDb3dSolid>(*set);
    if (solids.ids.empty()) {
        ctx.invalid(L"No solid selected.");
        return RTERROR;
    }
    enum { kThree, kXY, kYZ, kZX };
    const Option kPlanes[] = {{L"3", L"3POINTS"}, {L"XY", L"XY"}, {L"YZ", L"YZ"}, {L"ZX", L"ZX"}};
    AcGePoint3d p[3];
    AcGeVector3d normal;
    for (;;) {
        const Answer got =
            askPoint(ctx, L"Specify first point on slicing plane or [XY/YZ/ZX/3points] <3points>: ",
                     p[0], kPlanes, true);
        if (got == Answer::kCancel) return RTCAN;
        if (got == Answer::kOption && got.option != kThree) {
            const AcGeVector3d normals[] = {AcGeVector3d::kZAxis, AcGeVector3d::kXAxis,
                                            AcGeVector3d::kYAxis};
            const Answer on = askPoint(ctx,
                                       std::wstring(L"Specify a point on the ") +
                                           kPlanes[got.option].full + L"-plane <0,0,0>: ",
                                       p[0], {}, true);
            if (on == Answer::kCancel) return RTCAN;
            if (on == Answer::kEnter) p[0] = toWorld(AcGePoint3d::kOrigin);
            normal = ucsVector(normals[got.option - kXY]).normal();
            break;
        }
        if (got != Answer::kValue &&
            askPoint(ctx, L"Specify first point on plane: ", p[0]) == Answer::kCancel)
            return RTCAN;
        if (askPoint(ctx, L"Specify second point on plane: ", p[1]) == Answer::kCancel ||
            askPoint(ctx, L"Specify third point on plane: ", p[2]) == Answer::kCancel)
            return RTCAN;
        normal = (p[1] - p[0]).crossProduct(p[2] - p[0]);
        if (!normal.isZeroLength()) {
            normal = normal.normal();
            break;
        }
        ctx.invalid(L"The three points lie on one line: no plane.");
    }
    AcGePoint3d side;
    const Option kBoth[] = {{L"B", L"BOTH"}};
    const Answer keepSide = askPoint(
        ctx, L"Specify a point on desired side or [keep Both sides] <Both>: ", side, kBoth, true);
    if (keepSide == Answer::kCancel) return RTCAN;
    const bool both = keepSide != Answer::kValue;
    if (!both && (side - p[0]).dotProduct(normal) < 0) normal = -normal;
    const AcGePlane plane(p[0], normal);
    // Every solid is cut aside first; nothing changes unless the plane cuts them all.
    std::vector<std::unique_ptr<AcDb3dSolid>> others;
    for (auto& kept : solids.copies) {
        AcDb3dSolid* other = nullptr;
        const auto es = kernel([&] { return kept->getSlice(plane, true, other); });
        others.emplace_back(other);
        if (es != Acad::eOk) {
            ctx.invalid(L"The slice failed: " + reason(es) + L". Nothing changed.");
            return RTERROR;
        }
        if (kept->isNull() || other == nullptr || other->isNull()) {
            ctx.invalid(L"The plane does not cut every selected solid: nothing changed.");
            return RTERROR;
        }
    }
    for (std::size_t i = 0; i < others.size(); ++i) {
        AcDb3dSolid* solid = nullptr;
        if (acdbOpenObject(solid, solids.ids[i], AcDb::kForWrite) != Acad::eOk) continue;
        solid->setBody(solids.copies[i]->body());
        if (both) {
            auto* other = new AcDb3dSolid;
            other->setBody(others[i]->body());
            other->setPropertiesFrom(solid);
            appendEntity(other);
        }
        solid->close();
    }
    return RTNORM;
}

// ---- EXPLODE ----

int explode(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    int exploded = 0, refused = 0;
    for (AcDbObjectId id : *set) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) continue;
        AcDbVoidPtrArray pieces;
        const Acad::ErrorStatus es = kernel([&] { return entity->explode(pieces); });
        if (es != Acad::eOk || pieces.isEmpty()) {
            for (int i = 0; i < pieces.length(); ++i)
                delete static_cast<AcDbEntity*>(pieces[i]);
            entity->close();
            ++refused;
            continue;
        }
        for (int i = 0; i < pieces.length(); ++i)
            appendEntity(static_cast<AcDbEntity*>(pieces[i]));
        entity->upgradeOpen();
        eraseEntity(*entity);
        entity->close();
        ++exploded;
    }
    if (refused > 0) tell(std::to_wstring(refused) + L" object(s) cannot be exploded.\n");
    return RTNORM;
}

const ProcessorCommand kCommands[] = {
    {L"REGION", region}, {L"EXTRUDE", extrude},   {L"REVOLVE", revolve},
    {L"UNION", unite},   {L"SUBTRACT", subtract}, {L"INTERSECT", intersect},
    {L"SLICE", slice},   {L"EXPLODE", explode},
};

} // namespace

std::span<const ProcessorCommand> solidEditCommands() {
    return kCommands;
}

} // namespace qelhost
