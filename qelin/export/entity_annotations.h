// What an exported object takes from the entities around it: the annotation texts of its group
// as "annotations", and the caps of a pipe as "cap0" and "cap1".
#pragma once

#include <arx/arx.h>
#include <qel/qel.h>

class QelOutObject;

// The annotation a text stands for, added to the target's "annotations" (made, replacing what
// was there, when made is false, which it then becomes). The text "name: value" splits at its
// first colon; its annotation record names the annotation and the kind of its value (int, real
// or string). False when the entity is no text or its text has no colon.
bool QelAddTextAnnotation(QelObject* target, const AcDbObjectId& textId, bool& made);

// The annotation texts among the members of the entity's group, as the object's annotations.
void writeAnnotationsOfEntity(QelOutObject& out, QelObject* object, QelWriter& writer,
                              const AcDbObjectId& id);

// The caps of a pipe: flat ones on both ends of a lone solid, or those drawn beside it in its
// group (hemispheric and semi-elliptic solids, flat circles), at the end their role names.
void writeCaps(QelOutObject& out, QelObject* object, QelWriter& writer, const AcDbObjectId& id);
