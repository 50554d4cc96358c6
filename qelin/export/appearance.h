// The colour an object leaves with: its entity's, or its layer's when the entity goes by layer.
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

class QelOutObject;

// A host colour as three bytes, red first: a true colour as it is, an index through the palette.
void QelColourBytes(const AcCmColor& colour, unsigned char rgb[3]);

// Sets the "diffuseColor" of the object's "appearance" from the entity, making the appearance
// (ambient colour the same) when it has none: an object read back keeps its ambient colour.
void writeAppearance(QelOutObject& out, QelObject* object, const AcDbObjectId& id);
