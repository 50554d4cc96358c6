// The entities in the export's scope, sorted into the tagged and the untagged.
#pragma once

class QelOutObject;
class AcDbObjectId;

// Fills the two lists by the document's scope: all, the visible ones, or a selection the user
// makes. False when the export is to end here (a selection cancelled, empty or broken); the
// message, if any, has been printed. reportFailure prints the failure of the whole-drawing
// selection.
bool collectEntities(QelOutObject& out, bool reportFailure);

// True when the entity is erased, or its layer is off or frozen.
bool QelEntityHidden(const AcDbObjectId& id);
