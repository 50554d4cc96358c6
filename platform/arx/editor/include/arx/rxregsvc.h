// Modules and the system registry: loading and unloading modules, the messages a module's
// entry point receives, and the dictionaries the host publishes.
#pragma once

#include "arx/rxobject.h"

struct AcRx {
    enum AppMsgCode {
        kNullMsg = 0,
        kInitAppMsg = 1,
        kUnloadAppMsg = 2,
        kLoadDwgMsg = 3,
        kUnloadDwgMsg = 4,
        kInvkSubrMsg = 5,
        kCfgMsg = 6,
        kEndMsg = 7,
        kQuitMsg = 8,
        kSaveMsg = 9,
    };
    enum AppRetCode { kRetOK = 0, kRetError = 3 };
};

// A module exports, with C linkage:
//   AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode msg, void* appId);
//   int acrxGetApiVersion();   (optional; when present it must answer ACRX_API_VERSION)
#define ACRX_API_VERSION 1

// A dictionary of named objects. The registry's own dictionaries own nothing the caller gets.
class AcRxDictionary : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcRxDictionary);
    virtual AcRxObject* at(const ACHAR* key) const = 0;
    virtual bool has(const ACHAR* key) const = 0;
    virtual Adesk::UInt32 numEntries() const = 0;
};

// The system registry: "ClassDictionary" (the run-time classes, each entry an AcRxClass
// holder) and "ACAD_REGISTERED_COMMANDS" (the command stack).
AcRxDictionary* acrxSysRegistry();
// The dictionary of run-time classes: entries are named after the class.
AcRxDictionary* acrxClassDictionary();

class AcRxDynamicLinker : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcRxDynamicLinker);
    // Loads a module found by the given file name in the module folder (case ignored when no
    // file has the exact name) or by a path, and sends it kInitAppMsg, then kLoadDwgMsg for
    // every open document. True when it is (or already was) loaded. With printit, a failure is
    // printed on the command line.
    virtual bool loadModule(const ACHAR* fileName, bool printit, bool asCmd = false) = 0;
    // Sends kUnloadAppMsg and unloads; false when the module is not loaded or still locked.
    virtual bool unloadModule(const ACHAR* fileName, bool printit) = 0;
    // Modules start locked: they can't be unloaded until they unlock themselves.
    virtual bool unlockApplication(void* appId) const = 0;
    virtual bool lockApplication(void* appId) const = 0;
    virtual bool isApplicationLocked(const ACHAR* fileName) const = 0;
    virtual bool registerAppMDIAware(void* appId) const = 0;
    virtual bool registerAppNotMDIAware(void* appId) const = 0;
};

extern AcRxDynamicLinker* acrxDynamicLinker;
