// The creators of bulk data, as the dispatcher calls them (see creators/creator.h): triangle
// meshes and contours.
#pragma once

#include "creators/creator.h"

// The polylines of each horizontal plane of a contour and their elevation labels, in one
// anonymous group. Failed when a required list is missing.
QEL_CREATOR(CreateContour);

// A TriMesh in one or more polyface meshes: Failed when a mesh could not be added.
QEL_CREATOR(CreateTriMesh);
