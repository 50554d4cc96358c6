// The writers of meshes and points: TriMesh from polygon and polyface meshes and from a thick
// arc, Vertex3d from a point and from a text.
#pragma once

#include "writers/entity_writer.h"

#include <arx/arx.h>
#include <qel/qel.h>

#include <vector>

// A polygon mesh or a polyface mesh as triangles. False for another class or a mesh whose
// vertices can't be read.
QelEntityWriterFn QelWriteTriMesh;
// An arc with thickness as a band of 48 triangles between the arc and its top.
QelEntityWriterFn QelWriteArcPatch;
// A point's position.
QelEntityWriterFn QelWriteVertex3d;
// A text as a point at its position, its string as an annotation under the next text number.
QelEntityWriterFn QelWriteText;

// The triangles of an m by n grid of vertices, row by row, wrapping round where the grid is
// closed; a triangle whose two edges from its first corner are zero, equal or parallel is left
// out.
std::vector<int> QelGridTriangles(const std::vector<AcGePoint3d>& grid, int m, int n, bool mClosed,
                                  bool nClosed);
// The indices of one face record (numbers from 1, signed for hidden edges, 0 unused) as
// triangles from 0: a triangle, a quad as two, nothing for a record of fewer than three.
std::vector<int> QelFaceRecordTriangles(const short record[4]);
