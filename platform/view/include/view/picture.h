// Pictures of a drawing: a shaded raster (PNG) or the visible edges as vector lines (SVG).
#pragma once

#include <view/camera.h>
#include <view/scene.h>

#include <string>

namespace view {

struct PictureOptions {
    std::string view = "iso";
    int width = 800, height = 600;
    std::vector<std::wstring> layers;
    bool blackBackground = false;
};

struct PictureResult {
    bool written = false;
    std::string message; // why not written, or what the picture holds
    int entities = 0;
};

// True for the names that pictures can be written to (.png, .svg, any case).
bool isPictureName(const std::string& path);

// Writes the picture of the drawing's model space to path. The file appears only when complete.
// A drawing with nothing visible gives a picture of the background alone, and says so.
PictureResult writePicture(AcDbDatabase& db, const std::string& path, const PictureOptions& o);

// The camera that writePicture uses for the scene: where a point of the model lands.
Camera fittedCamera(const Scene& scene, const PictureOptions& o);

} // namespace view
