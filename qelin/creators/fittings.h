// The creators of the piping fittings: Valve, Flange and Tee. Each makes its solids in one
// anonymous group, a member record with its part index on every solid.
#pragma once

#include <qel/qel.h>
#include <win/win.h>

int CreateValve(QelObject* object, void* parent, int subtype, unsigned char acisMode,
                unsigned objIndex, const CString* filePath);
int CreateFlange(QelObject* object, void* parent, int subtype, unsigned char acisMode,
                 unsigned objIndex, const CString* filePath);
int CreateTee(QelObject* object, void* parent, int subtype, unsigned char acisMode,
              unsigned objIndex, const CString* filePath);
