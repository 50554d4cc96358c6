// QELXPLODE: block references that an import made, each deleted and made again from its object
// in the file it came from, as a solid. References without the module's tag stay as they are.
#pragma once

#include <arx/arx.h>
#include <win/win.h>

class CQelBlkExplode {
public:
    CQelBlkExplode() = default;
    virtual ~CQelBlkExplode() = default;

    // Asks for a selection and replaces every tagged block reference in it; the last status.
    int Explode();

private:
    // The reference deleted, then its object read from its file and dispatched as a solid. 1 when
    // the deletion or the read failed, else 0.
    int ReplaceReference(ads_name entity, int index);

    int status = 0;
    ads_name selectionSet = {0, 0};
    Adesk::Int32 count = 0;
    ads_name current = {0, 0};
    int objectIndex = 0;
};

// The command.
void QelXplodeCommand();
