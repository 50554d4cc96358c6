// Menus and the status-bar progress meter. A menu file names its group in a line
// "***MENUGROUP=NAME"; a file without one (a packed customisation file) takes its file stem.
#include "processor.h"

#include <win/presenter.h>
#include <win/strings.h>
#include <win/transcript.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace qelhost {

namespace {

struct Menus {
    std::vector<std::wstring> groups; // upper case
    std::vector<std::wstring> inserted;
    std::vector<std::filesystem::path> support;
    int meterLow = 0, meterHigh = 100;
    std::wstring meterLabel;
};

Menus& menus() {
    static Menus instance;
    return instance;
}

std::optional<std::filesystem::path> findMenuFile(const std::wstring& name) {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path given(win::toUtf8(name));
    if (given.is_absolute())
        return fs::is_regular_file(given, ec) ? std::optional(given) : std::nullopt;
    std::vector<fs::path> folders;
    if (Document* doc = currentDocument()) folders.emplace_back(win::toUtf8(doc->prefix));
    folders.insert(folders.end(), menus().support.begin(), menus().support.end());
    folders.push_back(moduleFolder());
    for (const fs::path& folder : folders)
        if (fs::is_regular_file(folder / given, ec)) return folder / given;
    return std::nullopt;
}

std::wstring groupOf(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::string line;
    const std::string key = "***MENUGROUP=";
    for (int n = 0; n < 200 && std::getline(in, line); ++n)
        if (line.starts_with(key)) {
            std::string group = line.substr(key.size());
            while (!group.empty() && (group.back() == '\r' || group.back() == ' '))
                group.pop_back();
            return upper(win::fromUtf8(group));
        }
    return upper(file.stem().wstring());
}

// With FILEDIA on, a person at the keyboard picks the file in a dialog; scripts and programs
// give the name at the prompt, as with FILEDIA off.
std::optional<std::wstring> askMenuFile(CommandContext& ctx) {
    resbuf filedia;
    filedia.restype = RTNONE;
    const bool dialog = !ctx.fromCaller() && input().interactive() &&
                        acedGetVar(L"FILEDIA", &filedia) == RTNORM && filedia.resval.rint == 1;
    if (!dialog) return ctx.word(L"Enter name of customization file to load: ", true);
    win::FileRequest request;
    request.title = L"Select Customization File";
    request.filter = L"Customization files (*.cuix;*.mns)|*.cuix;*.mns||";
    win::AnswerSource source = win::AnswerSource::User;
    return win::presenter().chooseFile(request, source);
}

int load(CommandContext& ctx) {
    std::optional<std::wstring> name = askMenuFile(ctx);
    if (!name) return RTCAN;
    std::optional<std::filesystem::path> file = findMenuFile(*name);
    if (!file) {
        ctx.invalid(L"Unable to find customization file " + *name + L".");
        return RTERROR;
    }
    const std::wstring group = groupOf(*file);
    if (std::find(menus().groups.begin(), menus().groups.end(), group) != menus().groups.end()) {
        ctx.invalid(L"Customization group " + group + L" is already loaded.");
        return RTERROR;
    }
    menus().groups.push_back(group);
    win::Transcript::instance().print(
        L"Customization file loaded successfully. Customization Group: " + group + L"\n");
    return RTNORM;
}

int unload(CommandContext& ctx) {
    std::optional<std::wstring> name =
        ctx.word(L"Enter the name of a customization group to unload: ", true);
    if (!name) return RTCAN;
    const std::wstring group = upper(*name);
    auto it = std::find(menus().groups.begin(), menus().groups.end(), group);
    if (it == menus().groups.end()) {
        ctx.invalid(L"Customization group " + group + L" not found.");
        return RTERROR;
    }
    menus().groups.erase(it);
    std::erase_if(menus().inserted, [&](const std::wstring& m) {
        return m.find(L"+" + group + L".") != std::wstring::npos;
    });
    win::Transcript::instance().print(L"Customization Group " + group + L" unloaded.\n");
    return RTNORM;
}

const ProcessorCommand kCommands[] = {
    {L"MENULOAD", load},
    {L"CUILOAD", load},
    {L"MENUUNLOAD", unload},
    {L"CUIUNLOAD", unload},
};

} // namespace

std::span<const ProcessorCommand> menuCommands() {
    return kCommands;
}

std::vector<std::wstring> loadedMenuGroups() {
    return menus().groups;
}

std::vector<std::wstring> insertedMenus() {
    return menus().inserted;
}

void setSupportFolders(std::vector<std::filesystem::path> folders) {
    menus().support = std::move(folders);
}

void resetMenus() {
    menus().groups.clear();
    menus().inserted.clear();
}

} // namespace qelhost

using namespace qelhost;

bool acedIsMenuGroupLoaded(const ACHAR* pszGroupName) {
    if (pszGroupName == nullptr) return false;
    const std::wstring group = upper(pszGroupName);
    return std::find(menus().groups.begin(), menus().groups.end(), group) != menus().groups.end();
}

// "Pn=+GROUP.MENU" inserts the pull-down MENU of GROUP at place n; "Pn=-" removes place n.
int acedMenuCmd(const ACHAR* str) {
    if (str == nullptr) return RTERROR;
    const std::wstring text = upper(str);
    const auto eq = text.find(L"=");
    if (text.size() < 3 || text[0] != L'P' || eq == std::wstring::npos) return RTERROR;
    const std::wstring place = text.substr(0, eq);
    const std::wstring what = text.substr(eq + 1);
    if (what == L"-") {
        std::erase_if(menus().inserted,
                      [&](const std::wstring& m) { return m.starts_with(place + L"="); });
        return RTNORM;
    }
    const auto dot = what.find(L'.');
    if (what.size() < 2 || what[0] != L'+' || dot == std::wstring::npos) return RTERROR;
    if (!acedIsMenuGroupLoaded(what.substr(1, dot - 1).c_str())) return RTERROR;
    menus().inserted.push_back(text);
    return RTNORM;
}

int acedSetStatusBarProgressMeter(const ACHAR* pszLabel, int nMinPos, int nMaxPos) {
    if (nMaxPos <= nMinPos) return -1;
    menus().meterLabel = pszLabel ? pszLabel : L"";
    menus().meterLow = nMinPos;
    menus().meterHigh = nMaxPos;
    win::Event event;
    event.kind = win::EventKind::Progress;
    event.text = menus().meterLabel;
    event.pos = nMinPos;
    event.lower = nMinPos;
    event.upper = nMaxPos;
    win::Transcript::instance().add(event);
    return 0;
}

int acedSetStatusBarProgressMeterPos(int nPos) {
    const Menus& m = menus();
    const int pos = std::clamp(nPos, m.meterLow, m.meterHigh);
    win::Transcript::instance().progress(0, pos, m.meterLow, m.meterHigh,
                                         (pos - m.meterLow) * 100 / (m.meterHigh - m.meterLow));
    return 0;
}

void acedRestoreStatusBar() {
    win::Event event;
    event.kind = win::EventKind::Progress;
    event.what = L"closed";
    win::Transcript::instance().add(event);
}
