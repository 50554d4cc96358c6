// The module's entry: at its start it names its two functions, which the export calls
// through acedInvoke, and takes them back when it is unloaded.
#include "facelist.h"
#include "gettype.h"
#include "reply.h"

#include <arx/editor.h>

namespace {

struct Function {
    const ACHAR* name;
    short code;
    int (*handler)();
};

const Function kFunctions[] = {
    {L"getType", 1, [] { return toviqelout::served(toviqelout::getType); }},
    {L"getPolyPlanerExtru", 2, [] { return toviqelout::served(toviqelout::getPolyPlanerExtru); }},
};

void init(void* appId) {
    acrxDynamicLinker->unlockApplication(appId);
    acrxDynamicLinker->registerAppMDIAware(appId);
    for (const Function& f : kFunctions) {
        acedDefun(f.name, f.code);
        acedRegFunc(f.handler, f.code);
    }
}

void unload() {
    for (const Function& f : kFunctions) {
        acedRegFunc(nullptr, f.code);
        acedUndef(f.name, f.code);
    }
}

} // namespace

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode msg, void* appId) {
    switch (msg) {
    case AcRx::kInitAppMsg:
        init(appId);
        break;
    case AcRx::kUnloadAppMsg:
        unload();
        break;
    default:
        break;
    }
    return AcRx::kRetOK;
}

extern "C" int acrxGetApiVersion() {
    return ACRX_API_VERSION;
}
