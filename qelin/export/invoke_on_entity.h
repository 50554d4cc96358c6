// Questions about an entity put to the companion module, which serves them by name through
// acedInvoke: what a solid's curved faces are, and the faces of a solid bounded by planes.
#pragma once

#include <arx/arx.h>
#include <win/win.h>

// The entity's handle as the companion reads it: hexadecimal text; empty for a null id.
CString QelHandleText(const AcDbObjectId& id);

// Sends (name, handleText) through acedInvoke. On a failure or an empty reply prints and logs
// failureText and returns null; otherwise the reply, for the caller to free with acutRelRb.
resbuf* invokeOnEntity(LPCWSTR name, LPCWSTR handleText, LPCWSTR failureText);

// The companion's kind of solid (2 sphere, 3 torus or elbow, other values unknown), -1 when
// there is no answer; the failure is told as invokeOnEntity tells it.
int QelCompanionType(const AcDbObjectId& id);
