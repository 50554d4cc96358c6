// The creators of bends and reducers: Elbow (a swept solid with its centre line), ReducingElbow
// (a polyface mesh of rings) and Reducer (a polygon mesh between two circles with its axis).
#pragma once

#include <qel/qel.h>
#include <win/win.h>

int CreateElbow(QelObject* object, void* parent, int subtype, unsigned char acisMode,
                unsigned objIndex, const CString* filePath);
int CreateReducingElbow(QelObject* object, void* parent, int subtype, unsigned char acisMode,
                        unsigned objIndex, const CString* filePath);
int CreateReducer(QelObject* object, void* parent, int subtype, unsigned char acisMode,
                  unsigned objIndex, const CString* filePath);
