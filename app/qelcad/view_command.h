// Pictures of the drawing: the options of `qelcad view` and the VIEW command of the command line.
#pragma once

#include <view/picture.h>

#include <string>

namespace qelcad {

struct PictureChoices {
    std::string view = "iso";
    std::string size = "800x600"; // WxH
    std::string layers;           // comma separated; all when empty
    std::string background = "white";
};

// The options checked and turned into those of the picture; false with the reason otherwise.
bool pictureOptions(const PictureChoices& choices, view::PictureOptions& options,
                    std::string& error);

// VIEW: asks for the picture's file and the view, and writes the picture of the current drawing.
void registerViewCommand();

} // namespace qelcad
