// The dispatcher's class table: one row per class of the file that an import knows, with the
// creator that turns such an object into entities. The row number is the object's type index.
#pragma once

#include "import/qel_job.h"

#include <qel/qel.h>
#include <win/win.h>

// A creator: the object, the parent (null), the row's int (0), 1 for solids or 0 for blocks,
// the object's reference number and the file's name. 0 for success.
using QelCreator = int (*)(QelObject* object, void* parent, int rowArgument,
                           unsigned char asAcisSolids, unsigned reference, const CString* fileName);

struct QelObjectNameRow {
    const char* className;
    QelCreator creator;
    int argument;
};

inline constexpr int QelObjectNameRowCount = 31;
// Not const: the creators take their rows as they come into the build.
extern QelObjectNameRow QelObjectNameTable[QelObjectNameRowCount];

// Classes that are known and make nothing.
int QelCreateNothing(QelObject* object, void* parent, int rowArgument, unsigned char asAcisSolids,
                     unsigned reference, const CString* fileName);
// Classes whose creator this build doesn't have: says so once per class and run, makes nothing
// and succeeds, so that the rest of the import goes on.
int QelCreatorNotBuilt(QelObject* object, void* parent, int rowArgument, unsigned char asAcisSolids,
                       unsigned reference, const CString* fileName);
// Forgets which classes were mentioned, at the start of a file read.
void QelResetCreatorNotices();

// One object in the dispatcher's hands.
class QelInObject {
public:
    QelInObject() = default;
    virtual ~QelInObject() = default;

    // Rows from 0 up, names compared without regard to case, the first match wins; the row goes
    // to job.typeIndex. False (and typeIndex untouched) when no row matches.
    bool Lookup(QelJob& job, const char* className);

    int rowCount = 0;
    void* parent = nullptr;
    int rowIndex = -1;
    int result = 0;
    unsigned char found = 0;
    CString text1;
    CString text2;
};
