// The UCS command and acedTrans. Points given to the command are in the UCS current when it
// starts, as at the host's prompt.
#include "processor.h"
#include "wildcard.h"

#include <arx/acdb.h>
#include <win/transcript.h>

#include <cmath>
#include <numbers>

namespace qelhost {

namespace {

struct Frame {
    AcGePoint3d origin;
    AcGeVector3d x = AcGeVector3d::kXAxis, y = AcGeVector3d::kYAxis;
};

AcDbDatabase* working() {
    return acdbHostApplicationServices()->workingDatabase();
}

Frame currentFrame() {
    AcDbDatabase* db = working();
    return {db->ucsorg(), db->ucsxdir(), db->ucsydir()};
}

int setFrame(const Frame& frame) {
    return working()->setUcs(frame.origin, frame.x, frame.y) == Acad::eOk ? RTNORM : RTERROR;
}

// A frame from an origin, a point on the positive X axis and one in the positive half of the
// XY plane, all in world coordinates. False when the points give no plane.
bool frameFromPoints(const AcGePoint3d& o, const AcGePoint3d& px, const AcGePoint3d& py,
                     Frame& frame) {
    AcGeVector3d x = px - o;
    if (x.isZeroLength()) return false;
    x.normalize();
    AcGeVector3d z = x.crossProduct(py - o);
    if (z.length() <= 1.0e-10 * std::max(1.0, (py - o).length())) return false;
    z.normalize();
    frame = {o, x, z.crossProduct(x)};
    return true;
}

int invalidPoints(CommandContext& ctx) {
    ctx.invalid(L"Invalid point: the points do not define a coordinate system.");
    return RTERROR;
}

int world(CommandContext&) {
    return setFrame(Frame{});
}

int origin(CommandContext& ctx) {
    AcGePoint3d p;
    std::wstring word;
    const auto got = ctx.point(L"Specify new origin point <0,0,0>: ", p, word);
    if (got == CommandContext::Got::kCancel) return RTCAN;
    if (got == CommandContext::Got::kEnter)
        p = AcGePoint3d::kOrigin;
    else if (got != CommandContext::Got::kValue)
        return invalidPoints(ctx);
    Frame frame = currentFrame();
    frame.origin = toWorld(p);
    return setFrame(frame);
}

int zAxis(CommandContext& ctx) {
    const AcGeMatrix3d toW = ucsToWorld();
    AcGePoint3d o, pz;
    std::wstring word;
    auto got = ctx.point(L"Specify new origin point <0,0,0>: ", o, word);
    if (got == CommandContext::Got::kCancel) return RTCAN;
    if (got == CommandContext::Got::kEnter)
        o = AcGePoint3d::kOrigin;
    else if (got != CommandContext::Got::kValue)
        return invalidPoints(ctx);
    got = ctx.point(L"Specify point on positive portion of Z-axis: ", pz, word);
    if (got == CommandContext::Got::kCancel) return RTCAN;
    if (got == CommandContext::Got::kEnter)
        pz = o + AcGeVector3d::kZAxis;
    else if (got != CommandContext::Got::kValue)
        return invalidPoints(ctx);
    const AcGePoint3d wo = toW * o;
    AcGeVector3d z = toW * pz - wo;
    if (z.isZeroLength()) return invalidPoints(ctx);
    z.normalize();
    // The new X axis follows the arbitrary-axis rule on the new Z axis.
    AcGeVector3d x = z.perpVector().normalize();
    return setFrame({wo, x, z.crossProduct(x)});
}

int threePoints(CommandContext& ctx) {
    const Frame old = currentFrame();
    const AcGeMatrix3d toW = ucsToWorld();
    AcGePoint3d p[3] = {AcGePoint3d::kOrigin, AcGePoint3d(1, 0, 0), AcGePoint3d(0, 1, 0)};
    const wchar_t* prompts[3] = {L"Specify new origin point <0,0,0>: ",
                                 L"Specify point on positive portion of X-axis: ",
                                 L"Specify point on positive-Y portion of the UCS XY plane: "};
    for (int i = 0; i < 3; ++i) {
        std::wstring word;
        AcGePoint3d given;
        const auto got = ctx.point(prompts[i], given, word);
        if (got == CommandContext::Got::kCancel) return RTCAN;
        if (got == CommandContext::Got::kValue)
            p[i] = given;
        else if (got == CommandContext::Got::kEnter && i > 0)
            p[i] = p[0] + (p[i] - AcGePoint3d::kOrigin);
        else if (got != CommandContext::Got::kEnter)
            return invalidPoints(ctx);
    }
    Frame frame;
    if (!frameFromPoints(toW * p[0], toW * p[1], toW * p[2], frame)) {
        setFrame(old);
        return invalidPoints(ctx);
    }
    return setFrame(frame);
}

int rotateAbout(CommandContext& ctx, bool aboutX) {
    double degrees = 90.0;
    const auto got = ctx.number(aboutX ? L"Specify rotation angle about X axis <90>: "
                                       : L"Specify rotation angle about Y axis <90>: ",
                                degrees);
    if (got == CommandContext::Got::kCancel) return RTCAN;
    if (got == CommandContext::Got::kEnter)
        degrees = 90.0;
    else if (got != CommandContext::Got::kValue)
        return invalidPoints(ctx);
    Frame frame = currentFrame();
    const AcGeVector3d axis = aboutX ? frame.x : frame.y;
    const double angle = degrees * std::numbers::pi / 180.0;
    frame.x.rotateBy(angle, axis);
    frame.y.rotateBy(angle, axis);
    return setFrame(frame);
}

int aboutX(CommandContext& ctx) {
    return rotateAbout(ctx, true);
}
int aboutY(CommandContext& ctx) {
    return rotateAbout(ctx, false);
}

std::optional<std::wstring> askName(CommandContext& ctx, const std::wstring& prompt) {
    std::optional<std::wstring> name = ctx.word(prompt);
    return name;
}

int save(CommandContext& ctx) {
    std::optional<std::wstring> name = askName(ctx, L"Enter name to save current UCS or [?]: ");
    if (!name) return RTCAN;
    if (name->empty()) return RTNORM;
    AcDbUCSTable* table = nullptr;
    if (working()->getUCSTable(table, AcDb::kForWrite) != Acad::eOk) return RTERROR;
    const Frame frame = currentFrame();
    AcDbUCSTableRecord* record = nullptr;
    if (table->getAt(name->c_str(), record, AcDb::kForWrite) == Acad::eOk) {
        table->close();
        std::optional<std::wstring> yes =
            ctx.word(L"UCS " + *name + L" already exists. Replace it? [Yes/No] <N>: ");
        const Option yesNo[] = {{L"Y", L"YES"}, {L"N", L"NO"}};
        const bool replace = yes && matchOption(*yes, yesNo) == 0;
        if (replace) {
            record->setOrigin(frame.origin);
            record->setXAxis(frame.x);
            record->setYAxis(frame.y);
        }
        record->close();
        return yes ? RTNORM : RTCAN;
    }
    record = new AcDbUCSTableRecord;
    if (record->setName(name->c_str()) != Acad::eOk) {
        delete record;
        table->close();
        ctx.invalid(L"Invalid UCS name.");
        return RTERROR;
    }
    record->setOrigin(frame.origin);
    record->setXAxis(frame.x);
    record->setYAxis(frame.y);
    const Acad::ErrorStatus es = table->add(record);
    table->close();
    if (es != Acad::eOk) {
        delete record;
        return RTERROR;
    }
    record->close();
    return RTNORM;
}

int remove(CommandContext& ctx) {
    std::optional<std::wstring> pattern = askName(ctx, L"Enter UCS name(s) to delete: ");
    if (!pattern) return RTCAN;
    AcDbUCSTable* table = nullptr;
    if (working()->getUCSTable(table, AcDb::kForRead) != Acad::eOk) return RTERROR;
    AcDbUCSTableIterator* it = nullptr;
    table->newIterator(it);
    int deleted = 0;
    for (; !it->done(); it->step()) {
        AcDbUCSTableRecord* record = nullptr;
        if (it->getRecord(record, AcDb::kForWrite) != Acad::eOk) continue;
        if (wildcardMatch(record->name(), *pattern)) {
            record->erase();
            ++deleted;
        }
        record->close();
    }
    delete it;
    table->close();
    win::Transcript::instance().print(deleted == 0
                                          ? L"No matching UCS names found.\n"
                                          : std::to_wstring(deleted) + L" UCS name(s) deleted.\n");
    return RTNORM;
}

int restore(CommandContext& ctx) {
    std::optional<std::wstring> name = askName(ctx, L"Enter name of UCS to restore or [?]: ");
    if (!name) return RTCAN;
    AcDbUCSTable* table = nullptr;
    if (working()->getUCSTable(table, AcDb::kForRead) != Acad::eOk) return RTERROR;
    AcDbUCSTableRecord* record = nullptr;
    const Acad::ErrorStatus es = table->getAt(name->c_str(), record, AcDb::kForRead);
    table->close();
    if (es != Acad::eOk) {
        ctx.invalid(L"Cannot find UCS " + *name + L".");
        return RTERROR;
    }
    const Frame frame{record->origin(), record->xAxis(), record->yAxis()};
    record->close();
    return setFrame(frame);
}

int ucs(CommandContext& ctx) {
    using Action = int (*)(CommandContext&);
    static const Option kOptions[] = {
        {L"W", L"WORLD"}, {L"O", L"ORIGIN"}, {L"ZA", L"ZAXIS"}, {L"3", L"3POINT"},  {L"X", L"X"},
        {L"Y", L"Y"},     {L"S", L"SAVE"},   {L"D", L"DELETE"}, {L"R", L"RESTORE"},
    };
    static const Action kActions[] = {world,  origin, zAxis,  threePoints, aboutX,
                                      aboutY, save,   remove, restore};
    AcGePoint3d p;
    std::wstring word;
    const auto got = ctx.point(
        L"Specify origin of UCS or [Origin/ZAxis/3point/X/Y/Save/Delete/Restore/World] <World>: ",
        p, word);
    if (got == CommandContext::Got::kCancel) return RTCAN;
    if (got == CommandContext::Got::kEnter) return world(ctx);
    if (got == CommandContext::Got::kValue) {
        Frame frame = currentFrame();
        frame.origin = toWorld(p);
        return setFrame(frame);
    }
    const int index = got == CommandContext::Got::kWord ? matchOption(word, kOptions) : -1;
    if (index < 0) {
        ctx.invalid(L"Invalid option keyword.");
        return RTERROR;
    }
    if (working() == nullptr) return RTERROR;
    return kActions[index](ctx);
}

const ProcessorCommand kCommands[] = {
    {L"UCS", ucs},
};

} // namespace

std::span<const ProcessorCommand> ucsCommands() {
    return kCommands;
}

} // namespace qelhost

int acedTrans(const ads_point pt, const resbuf* from, const resbuf* to, int disp,
              ads_point result) {
    using namespace qelhost;
    auto systemOf = [](const resbuf* rb) {
        if (rb == nullptr || rb->restype != RTSHORT) return -1;
        return rb->resval.rint == 0 || rb->resval.rint == 1 ? int(rb->resval.rint) : -1;
    };
    const int a = systemOf(from), b = systemOf(to);
    if (a < 0 || b < 0) return RTERROR;
    AcGeMatrix3d m;
    if (a == 1) m = ucsToWorld();
    if (b == 1) m = ucsToWorld().inverse() * m;
    AcGePoint3d p(pt[0], pt[1], pt[2]);
    if (disp) {
        const AcGeVector3d v = m * AcGeVector3d(p.x, p.y, p.z);
        p.set(v.x, v.y, v.z);
    } else {
        p = m * p;
    }
    result[0] = p.x;
    result[1] = p.y;
    result[2] = p.z;
    return RTNORM;
}
