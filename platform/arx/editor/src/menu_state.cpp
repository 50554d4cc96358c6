// MENUGROUPS: what the menus of the session are, for a person or a script to read back.
#include "processor.h"

#include <arx/edhost.h>
#include <win/transcript.h>

namespace qelhost {

namespace {

std::wstring joined(const std::vector<std::wstring>& items) {
    if (items.empty()) return L" none";
    std::wstring text;
    for (const std::wstring& item : items)
        text += L" " + item;
    return text;
}

int list(CommandContext&) {
    win::Transcript::instance().print(L"Menu groups:" + joined(loadedMenuGroups()) +
                                      L"\nPull-downs:" + joined(insertedMenus()) + L"\n");
    return RTNORM;
}

const ProcessorCommand kCommands[] = {
    {L"MENUGROUPS", list},
};

} // namespace

std::span<const ProcessorCommand> menuStateCommands() {
    return kCommands;
}

} // namespace qelhost
