// What the module does at each message of the host: start-up, the command group, the resets of
// the per-document records when a drawing goes.
#pragma once

#include <arx/rxregsvc.h>

// Always kRetOK: no step of start-up can refuse the load.
AcRx::AppRetCode QelAppMessage(AcRx::AppMsgCode msg, void* appId);
