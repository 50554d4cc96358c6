// What a drawing holds, in brief: entities by kind and layer, layers and their state, groups,
// user coordinate systems, and the entities that carry the module's records and extended data.
// `qelcad info` prints it; the tests compare it with what other readers find in a file.
#pragma once

#include <arx/dbdatabase.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace dxf {

struct DrawingSummary {
    struct Layer {
        std::string name;
        int color = 7;
        std::optional<unsigned> trueColor; // 0xRRGGBB
        bool on = true, frozen = false, locked = false;
        bool current = false;
    };
    struct Group {
        std::string name, description;
        bool anonymous = false, selectable = true;
        std::vector<std::string> members; // handles
    };
    struct Ucs {
        std::string name; // "" for the current one
        AcGePoint3d origin;
        AcGeVector3d xAxis, yAxis;
    };
    // An entity that carries the module's X-records or extended data.
    struct Tagged {
        std::string handle, kind, layer;
        std::vector<std::string> records; // keys of its extension dictionary
        std::vector<std::string> xdata;   // strings (1000) of the module's application
    };
    // Kind ("LINE", "3DSOLID", ...) to layer to count, for model and paper space.
    std::map<std::string, std::map<std::string, int>> entities;
    std::vector<Layer> layers;
    std::vector<Group> groups;
    Ucs current;
    std::vector<Ucs> ucss;
    std::vector<Tagged> tagged;
};

// The registered application of the module's extended data and the keys of its X-records.
inline constexpr const char* kModuleApplication = "Tovi_Technologies";
inline constexpr const char* kModuleRecordKeys[] = {"MemberRec", "AnnotateRecord"};

DrawingSummary summarize(AcDbDatabase& db);
std::string summaryText(const DrawingSummary& summary);
std::string summaryJson(const DrawingSummary& summary);

} // namespace dxf
