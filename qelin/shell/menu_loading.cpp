#include "menu_loading.h"

#include <arx/aced.h>

#include <cwchar>

namespace {

// From this version the host takes packed customisation files; below it, menu source files.
constexpr double kPackedMenus = 19.0;
// From this version the pull-down goes to place 12 and the menu bar has a switch.
constexpr double kMenuBarSwitch = 18.0;

// The variable's value when it is a short.
bool readShort(const wchar_t* name, short& value) {
    resbuf buffer;
    buffer.restype = RTNONE;
    if (acedGetVar(name, &buffer) != RTNORM || buffer.restype != RTSHORT) return false;
    value = buffer.resval.rint;
    return true;
}

// The short variable set to the value unless it holds it already.
void setShort(const wchar_t* name, short to) {
    short now = 0;
    if (!readShort(name, now) || now == to) return;
    resbuf value;
    value.restype = RTSHORT;
    value.resval.rint = to;
    acedSetVar(name, &value);
}

// A switch variable turned off for the command, its value kept: 0 when it isn't a short.
short switchOff(const wchar_t* name) {
    short kept = 0;
    if (!readShort(name, kept) || kept == 0) return 0;
    setShort(name, 0);
    return kept;
}

void unloadMenu(double version) {
    acedCommand(RTSTR, version < kPackedMenus ? L"_menuunload" : L"_cuiunload", RTSTR,
                QEL_MENU_GROUP, RTNONE);
}

void loadMenu(double version) {
    if (version >= kPackedMenus) {
        acedCommand(RTSTR, L"_cuiload", RTSTR, QEL_MENU_FILE_NEW, RTNONE);
        acedMenuCmd(QEL_MENU_INSERT_NEW);
        return;
    }
    acedCommand(RTSTR, L"_menuload", RTSTR, QEL_MENU_FILE_OLD, RTNONE);
    if (version < kMenuBarSwitch) {
        acedMenuCmd(QEL_MENU_INSERT_OLD);
        return;
    }
    acedMenuCmd(QEL_MENU_INSERT_NEW);
    // The pull-down can only be seen with the menu bar on.
    setShort(L"MENUBAR", 1);
}

} // namespace

double QelHostVersion() {
    resbuf value;
    value.restype = RTNONE;
    if (acedGetVar(L"ACADVER", &value) != RTNORM || value.restype != RTSTR) return 0.0;
    const double version = std::wcstod(value.resval.rstring, nullptr);
    acutDelString(value.resval.rstring);
    return (int)(version * 100.0) / 100.0;
}

void QelMenuCommand() {
    const double version = QelHostVersion();
    const short cmdecho = switchOff(L"CMDECHO");
    const short filedia = switchOff(L"FILEDIA");
    if (acedIsMenuGroupLoaded(QEL_MENU_GROUP))
        unloadMenu(version);
    else
        loadMenu(version);
    setShort(L"FILEDIA", filedia);
    setShort(L"CMDECHO", cmdecho);
}
