// The host's own commands: documents, variables and listing an entity.
#include "processor.h"

#include <arx/acdb.h>
#include <arx/dbdict.h>
#include <win/transcript.h>

#include "ads/rbkind.h"

namespace qelhost {

std::wstring variableText(const std::wstring& name, bool& known);
void requestQuit();

namespace {

void say(const std::wstring& text) {
    win::Transcript::instance().print(text);
}

int newDrawing(CommandContext&) {
    newDocument();
    say(L"New drawing " + std::wstring(currentDocument()->docTitle()) + L".\n");
    return RTNORM;
}

int noFiles(CommandContext& ctx) {
    ctx.invalid(L"Drawing files are not supported yet in this build.");
    return RTERROR;
}

int closeDrawing(CommandContext&) {
    Document* doc = currentDocument();
    if (doc == nullptr) return RTERROR;
    closeDocument(doc);
    return RTNORM;
}

int quit(CommandContext&) {
    requestQuit();
    return RTNORM;
}

int setvar(CommandContext& ctx) {
    std::optional<std::wstring> name = ctx.word(L"Enter variable name: ");
    if (!name) return RTCAN;
    bool known = false;
    const std::wstring shown = variableText(upper(*name), known);
    if (!known) {
        ctx.invalid(L"Unknown variable name.");
        return RTERROR;
    }
    if (setSystemVariable(upper(*name), L"", false) == RTREJ) {
        say(upper(*name) + L" = " + shown + L" (read only)\n");
        return RTNORM;
    }
    std::optional<std::wstring> value =
        ctx.word(L"Enter new value for " + upper(*name) + L" <" + shown + L">: ", true);
    if (!value) return RTCAN;
    if (value->empty()) return RTNORM;
    std::wstring text = *value;
    if (text.size() >= 2 && text.front() == L'"' && text.back() == L'"')
        text = text.substr(1, text.size() - 2);
    const int status = setSystemVariable(upper(*name), text, false);
    if (status == RTREJ)
        ctx.invalid(upper(*name) + L" is read only.");
    else if (status != RTNORM)
        ctx.invalid(L"Value refused: " + *value);
    return status == RTNORM ? RTNORM : RTERROR;
}

// One item of a result-buffer list as LIST shows it.
std::wstring itemText(const resbuf* rb) {
    std::wstring out = L"  (" + std::to_wstring(rb->restype) + L") ";
    switch (acutRbKind(rb->restype)) {
    case RbKind::kReal:
        return out + std::to_wstring(rb->resval.rreal);
    case RbKind::kPoint:
        return out + std::to_wstring(rb->resval.rpoint[0]) + L"," +
               std::to_wstring(rb->resval.rpoint[1]) + L"," + std::to_wstring(rb->resval.rpoint[2]);
    case RbKind::kShort:
        return out + std::to_wstring(rb->resval.rint);
    case RbKind::kLong:
        return out + std::to_wstring(rb->resval.rlong);
    case RbKind::kInt64:
        return out + std::to_wstring(rb->resval.mnInt64);
    case RbKind::kString:
        return out + L"\"" + (rb->resval.rstring ? rb->resval.rstring : L"") + L"\"";
    case RbKind::kName: {
        ads_name name = {rb->resval.rlname[0], rb->resval.rlname[1]};
        AcDbObjectId id;
        if (acdbGetObjectId(id, name) != Acad::eOk) return out + L"<entity>";
        ACHAR handle[17];
        id.handle().getIntoAsciiBuffer(handle);
        return out + L"<" + handle + L">";
    }
    case RbKind::kBinary:
        return out + L"<" + std::to_wstring(rb->resval.rbinary.clen) + L" bytes>";
    default:
        return out;
    }
}

void listChain(const resbuf* chain) {
    for (const resbuf* rb = chain; rb != nullptr; rb = rb->rbnext)
        say(itemText(rb) + L"\n");
}

void listRecords(AcDbEntity& entity) {
    AcDbDictionary* dictionary = nullptr;
    if (entity.extensionDictionary().isNull() ||
        acdbOpenObject(dictionary, entity.extensionDictionary(), AcDb::kForRead) != Acad::eOk)
        return;
    AcDbDictionaryIterator* it = dictionary->newIterator();
    for (; !it->done(); it->next()) {
        AcDbXrecord* record = nullptr;
        if (acdbOpenObject(record, it->objectId(), AcDb::kForRead) != Acad::eOk) continue;
        resbuf* chain = nullptr;
        record->rbChain(&chain);
        say(L"X-record \"" + std::wstring(it->name()) + L"\":\n");
        listChain(chain);
        acutRelRb(chain);
        record->close();
    }
    delete it;
    dictionary->close();
}

void listGroups(AcDbEntity& entity) {
    const AcDbVoidPtrArray* reactors = entity.reactors();
    if (reactors == nullptr) return;
    for (int i = 0; i < reactors->length(); ++i) {
        void* r = (*reactors)[i];
        if (!acdbIsPersistentReactor(r)) continue;
        AcDbGroup* group = nullptr;
        if (acdbOpenObject(group, acdbPersistentReactorObjectId(r), AcDb::kForRead) != Acad::eOk)
            continue;
        say(L"Group: \"" + std::wstring(group->name() ? group->name() : L"") + L"\"\n");
        group->close();
    }
}

int list(CommandContext& ctx) {
    std::optional<std::wstring> which = ctx.word(L"Entity handle <last>: ");
    if (!which) return RTCAN;
    ads_name name;
    const int found = which->empty() ? acdbEntLast(name) : acdbHandEnt(which->c_str(), name);
    AcDbObjectId id;
    AcDbEntity* entity = nullptr;
    if (found != RTNORM || acdbGetObjectId(id, name) != Acad::eOk ||
        acdbOpenObject(entity, id, AcDb::kForRead) != Acad::eOk) {
        ctx.invalid(which->empty() ? L"The drawing has no entity."
                                   : L"No entity with handle " + *which + L".");
        return RTERROR;
    }
    ACHAR handle[17];
    id.handle().getIntoAsciiBuffer(handle);
    ACHAR* layer = entity->layer();
    say(entityKind(entity) + L"  Layer: \"" + (layer ? layer : L"") + L"\"  Handle: " + handle +
        L"\n");
    acutDelString(layer);
    resbuf* groups = acdbEntGet(name);
    say(L"Geometry and properties:\n");
    listChain(groups);
    acutRelRb(groups);
    if (resbuf* xdata = entity->xData()) {
        say(L"Extended data:\n");
        listChain(xdata);
        acutRelRb(xdata);
    }
    listRecords(*entity);
    listGroups(*entity);
    entity->close();
    return RTNORM;
}

const ProcessorCommand kCommands[] = {
    {L"NEW", newDrawing},     {L"OPEN", noFiles}, {L"SAVE", noFiles}, {L"SAVEAS", noFiles},
    {L"CLOSE", closeDrawing}, {L"QUIT", quit},    {L"LIST", list},    {L"SETVAR", setvar},
};

} // namespace

std::span<const ProcessorCommand> hostCommands() {
    return kCommands;
}

} // namespace qelhost
