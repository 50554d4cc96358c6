// A module that refuses to start: the host must not keep it.
#include <arx/editor.h>

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode msg, void*) {
    if (msg == AcRx::kInitAppMsg) {
        acutPrintf(L"refusing: init\n");
        return AcRx::kRetError;
    }
    acutPrintf(L"refusing: message %d\n", int(msg));
    return AcRx::kRetOK;
}
