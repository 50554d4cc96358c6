// The import side of annotations: each named value of an object's "annotations" becomes a text
// in the drawing, stacked upward, placed like the object and tied to its group.
#pragma once

#include "records/member_record.h"

#include <arx/arx.h>
#include <qel/qel.h>

// The texts of the object's annotations, each moved by translation, then rotation, then the
// import transform, appended to model space, appended to group (when not null) and tagged with
// its "AnnotateRecord". False when the object has no "annotations" object.
bool ImportAnnotations(QelObject* object, const AcGeMatrix3d& translation,
                       const AcGeMatrix3d& rotation, AcDbGroup* group);
// The form for the members of a geometric group: doubles converted to drawing units, a pitch of
// the height plus 0.1, and record stored on each text as well.
bool ImportAnnotations(QelObject* object, const AcGeMatrix3d& translation,
                       const AcGeMatrix3d& rotation, AcDbGroup* group,
                       const QelMemberRecord& record);
