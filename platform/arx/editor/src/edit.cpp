// Commands that move entities or copies of them: MOVE, COPY, ROTATE, 3DROTATE, SCALE, MIRROR.
// Entities change in place, so that their handles, extended data, extension dictionaries and
// groups stay; copies take the extended data and X-records of their originals.
#include "prompts.h"

#include <cmath>

namespace qelhost {

namespace {

// Transforms the entities of the set, or copies of them; says how many took it.
int transformSet(const SelectionSet& set, const AcGeMatrix3d& m, bool copies) {
    int refused = 0, done = 0;
    for (AcDbObjectId id : set) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) continue;
        if (copies) {
            const AcDbObjectId copyId = copyEntity(*entity);
            entity->close();
            AcDbEntity* copy = nullptr;
            if (copyId.isNull() || acdbOpenObject(copy, copyId, AcDb::kForWrite) != Acad::eOk) {
                ++refused;
                continue;
            }
            // A copy that cannot take the change goes again, with nothing left behind.
            const bool ok = copy->transformBy(m) == Acad::eOk;
            if (!ok) eraseEntity(*copy);
            copy->close();
            ok ? ++done : ++refused;
            continue;
        }
        const bool ok = entity->upgradeOpen() == Acad::eOk && entity->transformBy(m) == Acad::eOk;
        entity->close();
        ok ? ++done : ++refused;
    }
    if (refused > 0)
        tell(std::to_wstring(refused) + L" object(s) could not take the change and stayed as they "
                                        L"were.\n");
    return done > 0 || refused == 0 ? RTNORM : RTERROR;
}

// A base point and a second point, or a displacement: the vector between them.
int displacement(CommandContext& ctx, AcGeVector3d& move, bool& wasBase, AcGePoint3d& base) {
    const Option kDisplacement[] = {{L"D", L"DISPLACEMENT"}};
    const Answer got = askPoint(ctx, L"Specify base point or [Displacement] <Displacement>: ", base,
                                kDisplacement, true);
    if (got == Answer::kCancel) return RTCAN;
    wasBase = got == Answer::kValue;
    if (!wasBase) {
        AcGePoint3d d;
        const Answer given = askPoint(ctx, L"Specify displacement <0,0,0>: ", d, {}, true);
        if (given == Answer::kCancel) return RTCAN;
        const AcGePoint3d local =
            given == Answer::kEnter ? AcGePoint3d::kOrigin : ucsToWorld().inverse() * d;
        move = ucsVector(AcGeVector3d(local.x, local.y, local.z));
    }
    return RTNORM;
}

// The base point's own UCS coordinates as a vector: the host's answer to Enter at the second
// point.
AcGeVector3d asVector(const AcGePoint3d& world) {
    const AcGePoint3d local = ucsToWorld().inverse() * world;
    return ucsVector(AcGeVector3d(local.x, local.y, local.z));
}

int move(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    AcGeVector3d v;
    AcGePoint3d base;
    bool wasBase = false;
    if ((status = displacement(ctx, v, wasBase, base)) != RTNORM) return status;
    if (wasBase) {
        AcGePoint3d to;
        const Answer got = askPoint(
            ctx, L"Specify second point or <use first point as displacement>: ", to, {}, true);
        if (got == Answer::kCancel) return RTCAN;
        v = got == Answer::kEnter ? asVector(base) : to - base;
    }
    return transformSet(*set, AcGeMatrix3d::translation(v), false);
}

int copy(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    AcGeVector3d v;
    AcGePoint3d base;
    bool wasBase = false;
    if ((status = displacement(ctx, v, wasBase, base)) != RTNORM) return status;
    if (!wasBase) return transformSet(*set, AcGeMatrix3d::translation(v), true);
    const Option kExit[] = {{L"E", L"EXIT"}};
    for (bool first = true;; first = false) {
        AcGePoint3d to;
        const Answer got =
            askPoint(ctx,
                     first ? L"Specify second point or <use first point as displacement>: "
                           : L"Specify second point or [Exit] <Exit>: ",
                     to, kExit, true);
        if (got == Answer::kCancel) return first ? RTCAN : RTNORM;
        if (got == Answer::kOption || (got == Answer::kEnter && !first)) return RTNORM;
        if (got == Answer::kEnter)
            return transformSet(*set, AcGeMatrix3d::translation(asVector(base)), true);
        if ((status = transformSet(*set, AcGeMatrix3d::translation(to - base), true)) != RTNORM)
            return status;
    }
}

// A rotation or scale about a base point, with the Copy and Reference options of both.
struct AboutBase {
    bool copies = false;
    AcGePoint3d base;
};

int rotate(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    AboutBase about;
    if (askPoint(ctx, L"Specify base point: ", about.base) == Answer::kCancel) return RTCAN;
    const Option kOptions[] = {{L"C", L"COPY"}, {L"R", L"REFERENCE"}};
    const double none = 0.0;
    double angle = 0.0;
    for (;;) {
        const Answer got = askAngle(ctx, L"Specify rotation angle or [Copy/Reference] <0>: ", angle,
                                    &about.base, kOptions, &none);
        if (got == Answer::kCancel) return RTCAN;
        if (got != Answer::kOption) break;
        if (got.option == 0) {
            about.copies = true;
            tell(L"Rotating a copy of the selected objects.\n");
            continue;
        }
        double from = 0.0, to = 0.0;
        if (askAngle(ctx, L"Specify the reference angle <0>: ", from, nullptr, {}, &none) ==
                Answer::kCancel ||
            askAngle(ctx, L"Specify the new angle: ", to, &about.base) == Answer::kCancel)
            return RTCAN;
        angle = to - from;
        break;
    }
    return transformSet(*set, AcGeMatrix3d::rotation(angle, ucsZ(), about.base), about.copies);
}

int rotate3d(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    enum { kX, kY, kZ, kTwo };
    const Option kAxes[] = {
        {L"X", L"XAXIS"}, {L"Y", L"YAXIS"}, {L"Z", L"ZAXIS"}, {L"2", L"2POINTS"}};
    AcGePoint3d a, b;
    AcGeVector3d axis;
    for (;;) {
        const Answer got = askPoint(
            ctx, L"Specify first point on axis or define axis by [Xaxis/Yaxis/Zaxis/2points]: ", a,
            kAxes);
        if (got == Answer::kCancel) return RTCAN;
        if (got == Answer::kOption && got.option != kTwo) {
            const wchar_t* names[] = {L"X", L"Y", L"Z"};
            const AcGeVector3d local[] = {AcGeVector3d::kXAxis, AcGeVector3d::kYAxis,
                                          AcGeVector3d::kZAxis};
            const Answer on = askPoint(ctx,
                                       std::wstring(L"Specify a point on the ") +
                                           names[got.option] + L" axis <0,0,0>: ",
                                       a, {}, true);
            if (on == Answer::kCancel) return RTCAN;
            if (on == Answer::kEnter) a = toWorld(AcGePoint3d::kOrigin);
            axis = ucsVector(local[got.option]).normal();
            break;
        }
        if (got == Answer::kOption &&
            askPoint(ctx, L"Specify first point on axis: ", a) == Answer::kCancel)
            return RTCAN;
        if (askPoint(ctx, L"Specify second point on axis: ", b) == Answer::kCancel) return RTCAN;
        if (!a.isEqualTo(b)) {
            axis = (b - a).normal();
            break;
        }
        ctx.invalid(L"The two points are the same: no axis.");
    }
    double angle = 0.0;
    if (askAngle(ctx, L"Specify rotation angle: ", angle, nullptr) == Answer::kCancel) return RTCAN;
    return transformSet(*set, AcGeMatrix3d::rotation(angle, axis, a), false);
}

int scale(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    AboutBase about;
    if (askPoint(ctx, L"Specify base point: ", about.base) == Answer::kCancel) return RTCAN;
    const Option kOptions[] = {{L"C", L"COPY"}, {L"R", L"REFERENCE"}};
    const double one = 1.0;
    double factor = 1.0;
    for (;;) {
        const Answer got = askDistance(ctx, L"Specify scale factor or [Copy/Reference] <1.0000>: ",
                                       factor, &about.base, kOptions, positive, &one);
        if (got == Answer::kCancel) return RTCAN;
        if (got != Answer::kOption) break;
        if (got.option == 0) {
            about.copies = true;
            tell(L"Scaling a copy of the selected objects.\n");
            continue;
        }
        double from = 1.0, to = 1.0;
        if (askDistance(ctx, L"Specify reference length <1.0000>: ", from, &about.base, {},
                        positive, &one) == Answer::kCancel ||
            askDistance(ctx, L"Specify new length: ", to, &about.base, {}, positive) ==
                Answer::kCancel)
            return RTCAN;
        factor = to / from;
        break;
    }
    return transformSet(*set, AcGeMatrix3d::scaling(factor, about.base), about.copies);
}

// The reflection in the plane through the point with the unit normal.
AcGeMatrix3d reflection(const AcGePoint3d& on, const AcGeVector3d& n) {
    AcGeMatrix3d m;
    const double v[3] = {n.x, n.y, n.z};
    const double d = n.x * on.x + n.y * on.y + n.z * on.z;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j)
            m.entry[i][j] = (i == j ? 1.0 : 0.0) - 2.0 * v[i] * v[j];
        m.entry[i][3] = 2.0 * d * v[i];
    }
    return m;
}

int mirror(CommandContext& ctx) {
    int status = RTNORM;
    const auto set = objectsToWork(ctx, status);
    if (!set) return status;
    AcGePoint3d a, b;
    for (;;) {
        if (askPoint(ctx, L"Specify first point of mirror line: ", a) == Answer::kCancel ||
            askPoint(ctx, L"Specify second point of mirror line: ", b) == Answer::kCancel)
            return RTCAN;
        const AcGeVector3d n = (b - a).crossProduct(ucsZ());
        if (!n.isZeroLength()) break;
        ctx.invalid(L"The mirror line needs two points apart in the XY plane.");
    }
    const Option kYesNo[] = {{L"Y", L"YES"}, {L"N", L"NO"}};
    const Answer erase = askOption(ctx, L"Erase source objects? [Yes/No] <No>: ", kYesNo, 1);
    if (erase == Answer::kCancel) return RTCAN;
    const AcGeMatrix3d m = reflection(a, (b - a).crossProduct(ucsZ()).normal());
    // Erasing the sources is mirroring them in place.
    return transformSet(*set, m, erase.option != 0);
}

const ProcessorCommand kCommands[] = {
    {L"MOVE", move},         {L"COPY", copy},   {L"ROTATE", rotate}, {L"3DROTATE", rotate3d},
    {L"ROTATE3D", rotate3d}, {L"SCALE", scale}, {L"MIRROR", mirror},
};

} // namespace

std::span<const ProcessorCommand> editCommands() {
    return kCommands;
}

} // namespace qelhost
