// The creators of flat outlines: PlanarPatch, a region with its holes cut out or a face, and
// PlanarPolylineExtrusion, the outline swept into a solid and cut at its height.
#pragma once

#include <qel/qel.h>
#include <win/win.h>

int CreatePlanarPatch(QelObject* object, void* parent, int subtype, unsigned char acisMode,
                      unsigned objIndex, const CString* filePath);
int CreatePlanarPolylineExtrusion(QelObject* object, void* parent, int subtype,
                                  unsigned char acisMode, unsigned objIndex,
                                  const CString* filePath);
