// Single points and point clouds, as the dispatcher calls them (see creator.h).
#pragma once

#include "creators/creator.h"

#include <arx/arx.h>

QEL_CREATOR(CreateVertex3d);
QEL_CREATOR(CreatePointset);

// The cloud held in the float array param name as single points, thinned, coloured by
// intensity, tagged and grouped. False when the param is absent, or a point could not be made.
bool ReadPoints(QelObject* object, const char* name, bool convert, unsigned objIndex,
                const CString* filePath);

// Points taken from a cloud of floatCount floats: the advance in floats, the advance in
// intensities, and the floats read at most.
struct QelThinning {
    unsigned step;
    unsigned intensityStride;
    unsigned limit;
};
QelThinning QelThinningFor(unsigned floatCount);

// True when the entity's extended data marks it as the first point of a cloud.
bool IsQelPointEntity(const AcDbEntity* entity);
