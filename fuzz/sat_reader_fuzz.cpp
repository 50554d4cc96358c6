// Fuzzes the SAT reader: any text gives a body, a kept raw text or a message, never a crash.
// A body that reads must write and read again.
#include <acis/sat.h>
#include <arx/dbregion.h>
#include <arx/dbsol3d.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

template <typename Entity>
void readBack(const std::string& sat) {
    Entity entity;
    std::string message, again;
    if (acis::entityFromSat(sat, &entity, message) != Acad::eOk) {
        if (message.empty()) std::abort(); // a refusal always says why
        return;
    }
    if (!entity.rawSat().empty()) {
        if (acis::satFromEntity(&entity, again, message) != Acad::eOk || again != sat)
            std::abort(); // kept text comes back unchanged
        return;
    }
    if (acis::satFromEntity(&entity, again, message) != Acad::eOk) return; // e.g. an empty body
    Entity copy;
    if (acis::entityFromSat(again, &copy, message) != Acad::eOk) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string sat(reinterpret_cast<const char*>(data), size);
    readBack<AcDb3dSolid>(sat);
    readBack<AcDbRegion>(sat);
    return 0;
}
