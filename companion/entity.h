// The entity that a caller of the module's functions names by its handle.
#pragma once

#include <arx/arx.h>

namespace toviqelout {

// Opens for read the entity whose handle (hexadecimal text) is the first argument of the
// call, and closes it again when it goes. Null when the argument is missing, is no text, or
// names no entity of the working drawing.
class EntityByHandle {
public:
    explicit EntityByHandle(const resbuf* args);
    ~EntityByHandle();
    EntityByHandle(const EntityByHandle&) = delete;
    EntityByHandle& operator=(const EntityByHandle&) = delete;

    AcDbEntity* get() const { return entity_; }
    explicit operator bool() const { return entity_ != nullptr; }

private:
    AcDbEntity* entity_ = nullptr;
};

} // namespace toviqelout
