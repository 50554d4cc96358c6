// The host's own commands: documents, variables and listing an entity.
#include "prompts.h"

#include <filesystem>

#include <arx/acdb.h>
#include <arx/dbdict.h>
#include <arx/edhost.h>
#include <win/transcript.h>

#include "ads/rbkind.h"

namespace qelhost {

namespace {

void say(const std::wstring& text) {
    win::Transcript::instance().print(text);
}

int newDrawing(CommandContext&) {
    newDocument();
    say(L"New drawing " + std::wstring(currentDocument()->docTitle()) + L".\n");
    return RTNORM;
}

std::wstring wide(const std::string& text) {
    return std::filesystem::path(text).wstring();
}

// A file name answered at a prompt; drawings go to DXF files, so a name without an extension
// gets ".dxf" and another extension is refused.
std::optional<std::filesystem::path> drawingName(CommandContext& ctx, const std::wstring& prompt,
                                                 const std::wstring& fallback) {
    std::optional<std::wstring> answer = ctx.word(prompt, true);
    if (!answer) return std::nullopt;
    std::wstring name = answer->empty() ? fallback : *answer;
    if (name.size() >= 2 && name.front() == L'"' && name.back() == L'"')
        name = name.substr(1, name.size() - 2);
    if (name.empty()) {
        ctx.invalid(L"No file name given.");
        return std::filesystem::path();
    }
    std::filesystem::path path(name);
    if (!path.has_extension()) path += ".dxf";
    if (upper(path.extension().wstring()) != L".DXF") {
        ctx.invalid(L"Drawings are read and saved as DXF: give a name ending in .dxf.");
        return std::filesystem::path();
    }
    return path;
}

int openDrawing(CommandContext& ctx) {
    const auto path = drawingName(ctx, L"Enter name of drawing to open: ", L"");
    if (!path) return RTCAN;
    if (path->empty()) return RTERROR;
    std::string message;
    if (openDocument(*path, message) == nullptr) {
        ctx.invalid(wide(message));
        return RTERROR;
    }
    say(L"Opened " + std::wstring(currentDocument()->fileName()) + L".\n");
    return RTNORM;
}

int saveTo(CommandContext& ctx, const std::filesystem::path& path) {
    std::string message;
    if (!saveDocument(currentDocument(), path, message)) {
        ctx.invalid(wide(message));
        return RTERROR;
    }
    say(L"Saved " + std::wstring(currentDocument()->fileName()) + L".\n");
    return RTNORM;
}

int saveDrawingAs(CommandContext& ctx) {
    Document* doc = currentDocument();
    if (doc == nullptr) return RTERROR;
    const std::wstring current = hasFile(doc) ? doc->path : L"";
    const auto path = drawingName(
        ctx, L"Save drawing as" + (current.empty() ? L"" : L" <" + current + L">") + L": ",
        current);
    if (!path) return RTCAN;
    if (path->empty()) return RTERROR;
    return saveTo(ctx, *path);
}

// A drawing from a file goes back there; a new one is asked its name.
int saveDrawing(CommandContext& ctx) {
    Document* doc = currentDocument();
    if (doc == nullptr) return RTERROR;
    if (!hasFile(doc)) return saveDrawingAs(ctx);
    return saveTo(ctx, doc->path);
}

// A changed drawing is offered to be saved before it goes: RTNORM when it may go (saved or
// not wanted), RTCAN when the operator keeps it open or its save failed. With nothing left to
// answer (a script that ends there), the drawing goes as the run leaves it.
int offerToSave(CommandContext& ctx, Document* doc) {
    if (!doc->changed() || input().ended()) return RTNORM;
    const Option kAnswers[] = {{L"Y", L"YES"}, {L"N", L"NO"}, {L"C", L"CANCEL"}};
    const Answer answer = askOption(
        ctx, L"Save changes to " + doc->title + L"? [Yes/No/Cancel] <Yes>: ", kAnswers, 0);
    if (answer == Answer::kCancel || answer.option == 2) return RTCAN;
    if (answer.option == 1) return RTNORM;
    if (currentDocument() != doc) return RTCAN;
    return saveDrawing(ctx) == RTNORM ? RTNORM : RTCAN;
}

int closeDrawing(CommandContext& ctx) {
    Document* doc = currentDocument();
    if (doc == nullptr) return RTERROR;
    if (const int status = offerToSave(ctx, doc); status != RTNORM) return status;
    closeDocument(doc);
    return RTNORM;
}

// The current drawing, when changed, is offered to be saved first; a cancel keeps it open.
int quit(CommandContext& ctx) {
    if (Document* doc = currentDocument(); doc && offerToSave(ctx, doc) != RTNORM) return RTCAN;
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
    if (isReadOnlyVariable(upper(*name))) {
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
    // "#" before a handle, as selections take it.
    if (which->starts_with(L"#")) which->erase(0, 1);
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
    describeBody(*entity);
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

int help(CommandContext&) {
    std::wstring line;
    for (const std::wstring& name : commandNames()) {
        if (line.size() + name.size() > 76) {
            say(line + L"\n");
            line.clear();
        }
        line += (line.empty() ? L"" : L" ") + name;
    }
    say(line + L"\n");
    return RTNORM;
}

const ProcessorCommand kCommands[] = {
    {L"NEW", newDrawing},     {L"OPEN", openDrawing},
    {L"SAVE", saveDrawing},   {L"SAVEAS", saveDrawingAs},
    {L"CLOSE", closeDrawing}, {L"QUIT", quit},
    {L"LIST", list},          {L"HELP", help},
    {L"SETVAR", setvar},
};

} // namespace

std::span<const ProcessorCommand> hostCommands() {
    return kCommands;
}

} // namespace qelhost
