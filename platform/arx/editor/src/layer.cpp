// The -LAYER command at the command line: thaw, set, off (with its question for the current
// layer), on, freeze, make and new.
#include "processor.h"
#include "wildcard.h"

#include <arx/acdb.h>
#include <win/transcript.h>

#include <functional>

namespace qelhost {

namespace {

void say(const std::wstring& text) {
    win::Transcript::instance().print(text);
}

AcDbDatabase* working() {
    return acdbHostApplicationServices()->workingDatabase();
}

// Applies a change to every layer the pattern names; the count of layers matched.
int forLayers(const std::wstring& pattern,
              const std::function<void(AcDbLayerTableRecord&, bool current)>& change) {
    AcDbDatabase* db = working();
    AcDbLayerTable* table = nullptr;
    if (db->getLayerTable(table, AcDb::kForRead) != Acad::eOk) return 0;
    AcDbLayerTableIterator* it = nullptr;
    table->newIterator(it);
    int matched = 0;
    for (; !it->done(); it->step()) {
        AcDbLayerTableRecord* layer = nullptr;
        if (it->getRecord(layer, AcDb::kForWrite) != Acad::eOk) continue;
        if (wildcardMatch(layer->name(), pattern)) {
            ++matched;
            change(*layer, layer->objectId() == db->clayer());
        }
        layer->close();
    }
    delete it;
    table->close();
    if (matched == 0) say(L"No matching layer(s) found for \"" + pattern + L"\".\n");
    return matched;
}

bool askYes(CommandContext& ctx, const std::wstring& prompt, bool& cancelled) {
    std::optional<std::wstring> answer = ctx.word(prompt);
    cancelled = !answer;
    const Option yesNo[] = {{L"Y", L"YES"}, {L"N", L"NO"}};
    return answer && matchOption(*answer, yesNo) == 0;
}

int thaw(CommandContext&, const std::wstring& names) {
    forLayers(names, [](AcDbLayerTableRecord& layer, bool) { layer.setIsFrozen(false); });
    return RTNORM;
}

int freeze(CommandContext&, const std::wstring& names) {
    forLayers(names, [](AcDbLayerTableRecord& layer, bool current) {
        if (current)
            say(L"Cannot freeze layer \"" + layer.name() + L"\". It is the CURRENT layer.\n");
        else
            layer.setIsFrozen(true);
    });
    return RTNORM;
}

int turnOn(CommandContext&, const std::wstring& names) {
    forLayers(names, [](AcDbLayerTableRecord& layer, bool) { layer.setIsOff(false); });
    return RTNORM;
}

int turnOff(CommandContext& ctx, const std::wstring& names) {
    bool cancelled = false;
    forLayers(names, [&](AcDbLayerTableRecord& layer, bool current) {
        if (current && !askYes(ctx,
                               L"Really want layer " + layer.name() +
                                   L" (the CURRENT layer) off? [Yes/No] <N>: ",
                               cancelled))
            return;
        layer.setIsOff(true);
    });
    return cancelled ? RTCAN : RTNORM;
}

// A layer is made current only when it exists and is not frozen.
int setCurrent(CommandContext& ctx, const std::wstring& name) {
    resbuf value;
    value.restype = RTSTR;
    value.resval.rstring = const_cast<ACHAR*>(name.c_str());
    if (acedSetVar(L"CLAYER", &value) != RTNORM) {
        ctx.invalid(L"Cannot find an unfrozen layer \"" + name + L"\".");
    }
    return RTNORM;
}

AcDbObjectId addLayer(const std::wstring& name) {
    AcDbLayerTable* table = nullptr;
    AcDbObjectId id;
    if (working()->getLayerTable(table, AcDb::kForWrite) != Acad::eOk) return id;
    if (table->getAt(name.c_str(), id) != Acad::eOk) {
        auto* layer = new AcDbLayerTableRecord;
        if (layer->setName(name.c_str()) == Acad::eOk && table->add(id, layer) == Acad::eOk)
            layer->close();
        else
            delete layer, say(L"Invalid layer name \"" + name + L"\".\n");
    }
    table->close();
    return id;
}

int make(CommandContext& ctx, const std::wstring& name) {
    const AcDbObjectId id = addLayer(name);
    if (!id.isNull()) working()->setClayer(id);
    (void)ctx;
    return RTNORM;
}

int create(CommandContext&, const std::wstring& names) {
    std::size_t start = 0;
    for (std::size_t i = 0; i <= names.size(); ++i)
        if (i == names.size() || names[i] == L',') {
            if (i > start) addLayer(names.substr(start, i - start));
            start = i + 1;
        }
    return RTNORM;
}

using Action = int (*)(CommandContext&, const std::wstring&);
struct LayerOption {
    Option option;
    const wchar_t* prompt;
    Action action;
};

const LayerOption kLayerOptions[] = {
    {{L"T", L"THAW"}, L"Enter name list of layer(s) to thaw: ", thaw},
    {{L"S", L"SET"}, L"Enter layer name to make current or <select object>: ", setCurrent},
    {{L"OFF", L"OFF"}, L"Enter name list of layer(s) to turn off: ", turnOff},
    {{L"ON", L"ON"}, L"Enter name list of layer(s) to turn on: ", turnOn},
    {{L"F", L"FREEZE"}, L"Enter name list of layer(s) to freeze: ", freeze},
    {{L"M", L"MAKE"}, L"Enter name for new layer (becomes the current layer): ", make},
    {{L"N", L"NEW"}, L"Enter name list for new layer(s): ", create},
};

int layer(CommandContext& ctx) {
    Option options[std::size(kLayerOptions)];
    for (std::size_t i = 0; i < std::size(kLayerOptions); ++i)
        options[i] = kLayerOptions[i].option;
    for (;;) {
        std::optional<std::wstring> word =
            ctx.word(L"Enter an option [Make/Set/New/ON/OFF/Freeze/Thaw]: ");
        if (!word) return RTCAN;
        if (word->empty()) return RTNORM;
        const int index = matchOption(*word, options);
        if (index < 0) {
            ctx.invalid(L"Invalid option keyword.");
            return RTERROR;
        }
        std::optional<std::wstring> names = ctx.word(kLayerOptions[index].prompt);
        if (!names) return RTCAN;
        if (names->empty()) continue;
        const int status = kLayerOptions[index].action(ctx, *names);
        if (status != RTNORM) return status;
    }
}

const ProcessorCommand kCommands[] = {
    {L"-LAYER", layer},
};

} // namespace

std::span<const ProcessorCommand> layerCommands() {
    return kCommands;
}

} // namespace qelhost
