// The params that hold reference numbers of other objects, with the class they must lead to.
// The checker follows them; the comparison of two files maps them through its matching, since a
// file written anew numbers its objects anew.
#pragma once

#include <string_view>

namespace qeltool {

struct ReferenceRule {
    const char* owner;
    const char* param;
    const char* target; // "" for any class
};

inline constexpr ReferenceRule kReferences[] = {
    {"Header", "rootLocation", "ModelSpace"},
    {"ModelSpace", "objectList", ""},
    {"ModelSpace", "layerMgr", "LayerMgr"},
    {"ModelSpace", "modelSpaceViewList", "ModelSpaceView"},
    {"LayerMgr", "layerList", "Layer"},
    {"Layer", "objectList", ""},
    {"ModelSpaceView", "coordSysMgr", "CoordSysMgr"},
    {"ModelSpaceView", "viewpointMgr", ""},
    {"GeometricGroup", "objectList", ""},
    {"ExclusionVolume", "objectList", ""},
};

// The rule for that param of that class, or null when it holds no reference.
inline const ReferenceRule* findReference(std::string_view owner, std::string_view param) {
    for (const ReferenceRule& rule : kReferences)
        if (owner == rule.owner && param == rule.param) return &rule;
    return nullptr;
}

} // namespace qeltool
