// The one shape of a creator, as the dispatcher calls it: the object, the parent (null), the
// subtype (0 from every dispatcher row), 1 for solids or 0 for blocks, the object's reference
// number and the file's path.
#pragma once

#include <qel/qel.h>
#include <win/win.h>

// What a creator did with its object. Only Failed makes the dispatcher say more.
enum class QelCreated {
    Done,           // made what the object holds (the structure classes: nothing, on purpose)
    Failed,         // the dispatcher reports "Returned Error Processing Object!" and counts it
    FailedReported, // failed, and whatever the user hears of it is out already: nothing more
};

using QelCreator = QelCreated (*)(QelObject* object, void* parent, int subtype,
                                  unsigned char acisMode, unsigned objIndex,
                                  const CString* filePath);

// Declares a creator of that name.
#define QEL_CREATOR(name)                                                                          \
    QelCreated name(QelObject* object, void* parent, int subtype, unsigned char acisMode,          \
                    unsigned objIndex, const CString* filePath)
