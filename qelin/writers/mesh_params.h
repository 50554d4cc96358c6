// The params every written TriMesh carries: vertices in metres as floats, three indices a face.
#pragma once

#include <arx/gevec.h>
#include <qel/qel.h>

#include <vector>

// Sets "vertexCount", "vertices", "faceCount" (indices over 3) and "triStripIndices". No
// "triStripLens": each strip is one triangle, which a reader takes without being told.
void QelWriteMeshParams(QelObject* target, const std::vector<AcGePoint3d>& vertices,
                        const std::vector<int>& indices);
