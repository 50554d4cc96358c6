// The creators of bends and reducers: Elbow (a swept solid with its centre line), ReducingElbow
// (a polyface mesh of rings) and Reducer (a polygon mesh between two circles with its axis).
#pragma once

#include "creators/creator.h"

QEL_CREATOR(CreateElbow);
QEL_CREATOR(CreateReducingElbow);
QEL_CREATOR(CreateReducer);
