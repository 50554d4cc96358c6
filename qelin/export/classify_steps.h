// The three steps of the classification, each answering with a code of the object-type table or
// passing the entity on. Shared by the files of the classifier only.
#pragma once

#include <arx/arx.h>

class QelOutObject;
class QelMemberRecord;

namespace QelClassify {

inline constexpr int NoObject = -1; // nothing is to be written for this entity
inline constexpr int GoOn = -2;     // this step gives no answer: the next one asks
inline constexpr int Unread = -3;   // the entity couldn't be read: the caller falls back on the tag

// The tag: its code, or the group of a many-entity object, or the role of an exploded piece;
// tag is the entity's member record, null for an untagged entity.
int byTag(QelOutObject& out, const AcDbObjectId& id, const QelMemberRecord* tag);
// The entity's class, with the tests of thickness, flatness and the solid recognisers.
int byClass(const AcDbObjectId& id, const QelMemberRecord* tag);
// The companion's answer, the box tests of a solid, texts and the rest.
int byService(const AcDbObjectId& id, const QelMemberRecord* tag);

} // namespace QelClassify
