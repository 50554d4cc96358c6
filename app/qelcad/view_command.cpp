#include "view_command.h"

#include <arx/accmd.h>
#include <arx/aced.h>
#include <arx/arx.h>
#include <win/strings.h>

#include <sstream>

namespace qelcad {

namespace {

// Pictures larger than this are refused: a typing slip must not ask for gigabytes.
constexpr int kMaxSide = 16384;

void say(const std::wstring& text) {
    acutPrintf(L"%ls", text.c_str());
}

void viewCommand() {
    ACHAR file[512] = {};
    if (acedGetString(1, L"\nPicture file (.png or .svg): ", file, 512) != RTNORM) return;
    std::wstring name = file;
    if (name.size() >= 2 && name.front() == L'"' && name.back() == L'"')
        name = name.substr(1, name.size() - 2);
    acedInitGet(0, L"Iso Top Front Right Back Left Bottom");
    ACHAR word[64] = {};
    const int asked =
        acedGetKword(L"\nView [Iso/Top/Front/Right/Back/Left/Bottom] <Iso>: ", word, 64);
    if (asked == RTCAN) return;
    view::PictureOptions options;
    if (asked == RTNORM && word[0] != 0) {
        options.view = win::toUtf8(word);
        for (char& c : options.view)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    const view::PictureResult result = view::writePicture(
        *acdbHostApplicationServices()->workingDatabase(), win::toUtf8(name), options);
    say(win::fromUtf8(result.written ? win::toUtf8(name) + ": " + result.message
                                     : "No picture: " + result.message) +
        L"\n");
}

} // namespace

bool pictureOptions(const PictureChoices& choices, view::PictureOptions& options,
                    std::string& error) {
    if (!view::namedView(choices.view)) {
        error = "--view " + choices.view + ": one of";
        for (const std::string& name : view::viewNames())
            error += " " + name;
        return false;
    }
    options.view = choices.view;
    std::istringstream size(choices.size);
    char x = 0;
    std::string rest;
    if (!(size >> options.width >> x >> options.height) || (x != 'x' && x != 'X') ||
        (size >> rest) || options.width < 1 || options.height < 1 || options.width > kMaxSide ||
        options.height > kMaxSide) {
        error = "--size " + choices.size + ": give WIDTHxHEIGHT in pixels, 1 to " +
                std::to_string(kMaxSide) + " each (800x600)";
        return false;
    }
    if (choices.background != "white" && choices.background != "black") {
        error = "--background " + choices.background + ": white or black";
        return false;
    }
    options.blackBackground = choices.background == "black";
    std::istringstream layers(choices.layers);
    for (std::string layer; std::getline(layers, layer, ',');)
        if (!layer.empty()) options.layers.push_back(win::fromUtf8(layer));
    return true;
}

void registerViewCommand() {
    acedRegCmds()->addCommand(L"QELCAD", L"VIEW", L"VIEW", ACRX_CMD_MODAL, viewCommand);
}

} // namespace qelcad
