// The one way to the companion module: a function's name and the entity's handle as text.
#include "writers/patch_writers.h"

#include "foundation/log_file.h"

#include <arx/aced.h>

resbuf* QelAskCompanion(const wchar_t* function, const AcDbObjectId& id,
                        const wchar_t* failureText) {
    ACHAR handle[32] = L"";
    id.handle().getIntoAsciiBuffer(handle, 32);
    resbuf* args = acutBuildList(RTSTR, function, RTSTR, handle, 0);
    resbuf* answer = nullptr;
    const int status = args ? acedInvoke(args, &answer) : RTERROR;
    acutRelRb(args);
    if (status != RTNORM || !answer) {
        if (answer) acutRelRb(answer);
        acutPrintf(L"%s", failureText);
        QelLogAppend(failureText);
        return nullptr;
    }
    return answer;
}
