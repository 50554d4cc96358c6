// Prompts of the drawing and editing commands, and the few things every such command does:
// appending, copying and changing entities.
#include "prompts.h"

#include <arx/dbdict.h>
#include <win/transcript.h>

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <numbers>

namespace qelhost {

namespace {

AcGePoint3d& last() {
    static AcGePoint3d point;
    return point;
}

// A point typed as text, absolute or "@" relative to the last point, in the world.
bool readPoint(const std::wstring& text, AcGePoint3d& world) {
    const bool relative = !text.empty() && text.front() == L'@';
    AcGePoint3d p;
    if (relative && text.size() == 1) {
        world = last();
        return true;
    }
    if (!parsePoint(relative ? std::wstring_view(text).substr(1) : std::wstring_view(text), p))
        return false;
    if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) return false;
    // A point of two coordinates stands at the current elevation.
    if (!relative && std::count(text.begin(), text.end(), L',') == 1)
        p.z = realVariable(L"ELEVATION");
    world = relative ? last() + ucsVector(AcGeVector3d(p.x, p.y, p.z)) : toWorld(p);
    return true;
}

// The next token as a point, a number, Enter or an option. Tokens of a caller's list may be
// points (in the UCS) or numbers.
struct Raw {
    enum Kind { kPoint, kNumber, kEnter, kOption, kCancel, kBad } kind = kBad;
    AcGePoint3d point;
    double number = 0.0;
    int option = -1;
};

Raw readRaw(CommandContext& ctx, const std::wstring& prompt, std::span<const Option> options) {
    Raw raw;
    std::optional<Token> token = ctx.next(prompt);
    if (!token) {
        raw.kind = Raw::kCancel;
        return raw;
    }
    switch (token->kind) {
    case Token::kPoint:
        raw.kind = Raw::kPoint;
        raw.point = toWorld(token->point);
        return raw;
    case Token::kInteger:
        raw.kind = Raw::kNumber, raw.number = double(token->integer);
        return raw;
    case Token::kReal:
        raw.kind = Raw::kNumber, raw.number = token->real;
        return raw;
    case Token::kText:
        break;
    default:
        return raw;
    }
    const std::wstring& text = token->text;
    if (text.empty()) {
        raw.kind = Raw::kEnter;
        return raw;
    }
    if (readPoint(text, raw.point)) {
        raw.kind = Raw::kPoint;
        return raw;
    }
    wchar_t* end = nullptr;
    raw.number = std::wcstod(text.c_str(), &end);
    if (*end == L'\0' && std::isfinite(raw.number)) {
        raw.kind = Raw::kNumber;
        return raw;
    }
    raw.option = matchOption(text, options);
    raw.kind = raw.option >= 0 ? Raw::kOption : Raw::kBad;
    return raw;
}

Answer answer(Answer::Kind kind, int option = -1) {
    Answer a;
    a.kind = kind;
    a.option = option;
    return a;
}

} // namespace

void tell(const std::wstring& text) {
    win::Transcript::instance().print(text);
}

std::wstring number(double value) {
    wchar_t text[64];
    std::swprintf(text, 64, L"%.4f", std::abs(value) < 5e-5 ? 0.0 : value);
    return text;
}

std::wstring pointText(const AcGePoint3d& p) {
    return number(p.x) + L"," + number(p.y) + L"," + number(p.z);
}

AcGePoint3d lastPoint() {
    return last();
}

void setLastPoint(const AcGePoint3d& world) {
    last() = world;
}

AcGeVector3d ucsVector(const AcGeVector3d& v) {
    return ucsToWorld() * v;
}

AcGeVector3d ucsZ() {
    return ucsVector(AcGeVector3d::kZAxis).normal();
}

Answer askPoint(CommandContext& ctx, const std::wstring& prompt, AcGePoint3d& world,
                std::span<const Option> options, bool enterOk) {
    for (;;) {
        const Raw raw = readRaw(ctx, prompt, options);
        switch (raw.kind) {
        case Raw::kCancel:
            return answer(Answer::kCancel);
        case Raw::kPoint:
            world = raw.point;
            setLastPoint(world);
            return answer(Answer::kValue);
        case Raw::kOption:
            return answer(Answer::kOption, raw.option);
        case Raw::kEnter:
            if (enterOk) return answer(Answer::kEnter);
            break;
        default:
            break;
        }
        ctx.invalid(options.empty() ? L"Point required." : L"Point or option keyword required.");
    }
}

const wchar_t* positive(double value) {
    return value > 0.0 ? nullptr : L"Value must be positive and nonzero.";
}

const wchar_t* nonZero(double value) {
    return value != 0.0 ? nullptr : L"Value must be nonzero.";
}

Answer askDistance(CommandContext& ctx, const std::wstring& prompt, double& value,
                   const AcGePoint3d* from, std::span<const Option> options, const Check& check,
                   const double* fallback) {
    for (;;) {
        const Raw raw = readRaw(ctx, prompt, options);
        double got = 0.0;
        switch (raw.kind) {
        case Raw::kCancel:
            return answer(Answer::kCancel);
        case Raw::kOption:
            return answer(Answer::kOption, raw.option);
        case Raw::kNumber:
            got = raw.number;
            break;
        case Raw::kPoint:
            if (from == nullptr) {
                ctx.invalid(L"Requires a distance.");
                continue;
            }
            got = raw.point.distanceTo(*from);
            break;
        case Raw::kEnter:
            if (fallback != nullptr) {
                value = *fallback;
                return answer(Answer::kEnter);
            }
            ctx.invalid(L"Requires a distance.");
            continue;
        default:
            ctx.invalid(options.empty() ? L"Requires numeric distance or two points."
                                        : L"Requires numeric distance, second point or option "
                                          L"keyword.");
            continue;
        }
        if (const wchar_t* refused = check ? check(got) : nullptr) {
            ctx.invalid(refused);
            continue;
        }
        value = got;
        return answer(Answer::kValue);
    }
}

Answer askAngle(CommandContext& ctx, const std::wstring& prompt, double& radians,
                const AcGePoint3d* from, std::span<const Option> options,
                const double* fallbackDegrees) {
    constexpr double kDegree = std::numbers::pi / 180.0;
    for (;;) {
        const Raw raw = readRaw(ctx, prompt, options);
        switch (raw.kind) {
        case Raw::kCancel:
            return answer(Answer::kCancel);
        case Raw::kOption:
            return answer(Answer::kOption, raw.option);
        case Raw::kNumber:
            radians = raw.number * kDegree;
            return answer(Answer::kValue);
        case Raw::kPoint:
            if (from != nullptr && !raw.point.isEqualTo(*from)) {
                const AcGeVector3d d = ucsToWorld().inverse() * (raw.point - *from);
                radians = std::atan2(d.y, d.x);
                return answer(Answer::kValue);
            }
            break;
        case Raw::kEnter:
            if (fallbackDegrees != nullptr) {
                radians = *fallbackDegrees * kDegree;
                return answer(Answer::kEnter);
            }
            break;
        default:
            break;
        }
        ctx.invalid(L"Requires valid numeric angle or second point.");
    }
}

Answer askOption(CommandContext& ctx, const std::wstring& prompt, std::span<const Option> options,
                 int fallback) {
    for (;;) {
        std::optional<std::wstring> word = ctx.word(prompt);
        if (!word) return answer(Answer::kCancel);
        if (word->empty() && fallback >= 0) return answer(Answer::kOption, fallback);
        const int index = matchOption(*word, options);
        if (index >= 0) return answer(Answer::kOption, index);
        ctx.invalid(L"Invalid option keyword.");
    }
}

double realVariable(const wchar_t* name) {
    resbuf value;
    if (acedGetVar(name, &value) != RTNORM || value.restype != RTREAL) return 0.0;
    return value.resval.rreal;
}

AcDbObjectId appendEntity(AcDbEntity* entity) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTableRecord* space = nullptr;
    if (db == nullptr || acdbOpenObject(space, db->modelSpaceId(), AcDb::kForWrite) != Acad::eOk) {
        delete entity;
        return AcDbObjectId::kNull;
    }
    if (entity->isNewObject()) entity->setDatabaseDefaults(db);
    AcDbObjectId id;
    const Acad::ErrorStatus es = space->appendAcDbEntity(id, entity);
    space->close();
    if (es != Acad::eOk) {
        delete entity;
        return AcDbObjectId::kNull;
    }
    entity->close();
    return id;
}

int forEachEntity(const SelectionSet& set, const std::function<bool(AcDbEntity&)>& change) {
    int changed = 0;
    for (AcDbObjectId id : set) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenObject(entity, id, AcDb::kForWrite) != Acad::eOk) continue;
        if (change(*entity)) ++changed;
        entity->close();
    }
    return changed;
}

namespace {

// The X-records of one extension dictionary copied into another's owner.
void copyRecords(const AcDbEntity& from, AcDbEntity& to) {
    AcDbDictionary* source = nullptr;
    if (from.extensionDictionary().isNull() ||
        acdbOpenObject(source, from.extensionDictionary(), AcDb::kForRead) != Acad::eOk)
        return;
    to.createExtensionDictionary();
    AcDbDictionary* target = nullptr;
    if (acdbOpenObject(target, to.extensionDictionary(), AcDb::kForWrite) == Acad::eOk) {
        AcDbDictionaryIterator* it = source->newIterator();
        for (; !it->done(); it->next()) {
            AcDbXrecord* record = nullptr;
            if (acdbOpenObject(record, it->objectId(), AcDb::kForRead) != Acad::eOk) continue;
            resbuf* chain = nullptr;
            record->rbChain(&chain);
            record->close();
            auto* copy = new AcDbXrecord;
            copy->setFromRbChain(*chain);
            acutRelRb(chain);
            AcDbObjectId id;
            if (target->setAt(it->name(), copy, id) == Acad::eOk)
                copy->close();
            else
                delete copy;
        }
        delete it;
        target->close();
    }
    source->close();
}

} // namespace

Acad::ErrorStatus eraseEntity(AcDbEntity& entity) {
    // Its extension dictionary and X-records go with it: the database erases what an object owns.
    // Groups the entity belongs to, read before it goes.
    std::vector<AcDbObjectId> groups;
    if (const AcDbVoidPtrArray* reactors = entity.reactors())
        for (int i = 0; i < reactors->length(); ++i)
            if (acdbIsPersistentReactor((*reactors)[i]))
                groups.push_back(acdbPersistentReactorObjectId((*reactors)[i]));
    const Acad::ErrorStatus es = entity.erase();
    if (es != Acad::eOk) return es;
    // An unnamed group left with no member goes too, as drawings don't keep empty ones.
    for (AcDbObjectId id : groups) {
        AcDbGroup* group = nullptr;
        if (acdbOpenObject(group, id, AcDb::kForWrite) != Acad::eOk) continue;
        if (group->isAnonymous() && group->numEntities() == 0) group->erase();
        group->close();
    }
    return es;
}

AcDbObjectId copyEntity(const AcDbEntity& entity) {
    auto* copy = static_cast<AcDbEntity*>(entity.clone());
    if (copy == nullptr) return AcDbObjectId::kNull;
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTableRecord* space = nullptr;
    if (acdbOpenObject(space, db->modelSpaceId(), AcDb::kForWrite) != Acad::eOk) {
        delete copy;
        return AcDbObjectId::kNull;
    }
    AcDbObjectId id;
    const Acad::ErrorStatus es = space->appendAcDbEntity(id, copy);
    space->close();
    if (es != Acad::eOk) {
        delete copy;
        return AcDbObjectId::kNull;
    }
    copyRecords(entity, *copy);
    copy->close();
    return id;
}

} // namespace qelhost
