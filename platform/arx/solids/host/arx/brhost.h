// Host side of the solids: what the host does at its start so that modules find the solid
// classes and the boundary walk. The module never includes this header.
#pragma once

namespace qelhost {

// Enters AcDb3dSolid, AcDbRegion, AcDbSurface and the boundary walk's classes (AcBrEntity and
// those derived from it, AcBrTraverser and its kinds) in "ClassDictionary" of the system
// registry, and sets the C allocator for the kernel's many small blocks (no fast bins). Calling
// it again changes nothing.
void registerSolidClasses();

} // namespace qelhost
