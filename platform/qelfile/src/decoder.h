// Turns stored bytes back into an object. Every length, count and nesting depth is checked
// against the bytes that are there; any fault throws QelException naming the file, the object
// number and the param.
#pragma once

#include <qel/qel.h>

#include "mapping.h"

#include <cstddef>
#include <memory>
#include <string>

namespace qel {

// Decodes the object stored in [data, data + size). Arrays are left in place and keep
// `mapping` alive. The result has one reference.
QelObject* decodeObject(const unsigned char* data, std::size_t size,
                        const std::shared_ptr<const Mapping>& mapping, const std::string& path,
                        unsigned id);

} // namespace qel
