// The module's one entry: the host's messages go to the shell.
#include "shell/app_messages.h"

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode msg, void* appId) {
    return QelAppMessage(msg, appId);
}

extern "C" int acrxGetApiVersion() {
    return ACRX_API_VERSION;
}
