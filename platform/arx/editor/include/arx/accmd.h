// The command stack: modules add their commands in groups and remove a group when they go.
#pragma once

#include "arx/acadstrc.h"
#include "arx/rxobject.h"

struct HINSTANCE__;

#define ACRX_CMD_MODAL 0x00000000
#define ACRX_CMD_TRANSPARENT 0x00000001
#define ACRX_CMD_USEPICKSET 0x00000002
#define ACRX_CMD_REDRAW 0x00000004
#define ACRX_CMD_NOINTERNALLOCK 0x00004000
#define ACRX_CMD_SESSION 0x00200000

// The name under which the command stack is kept in the system registry.
#define ACRX_COMMAND_DOCK ACRX_T("ACAD_REGISTERED_COMMANDS")

using AcRxFunctionPtr = void (*)();

class AcEdUIContext;

class AcEdCommand : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEdCommand);
    virtual const ACHAR* globalName() const = 0;
    virtual const ACHAR* localName() const = 0;
    virtual Adesk::Int32 commandFlags() const = 0;
    virtual AcRxFunctionPtr functionAddr() const = 0;
    virtual int functionCode() const = 0;
};

class AcEdCommandStack : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEdCommandStack);
    // eDuplicateKey when the group already has a command of that name; eInvalidInput for an
    // empty name or a null function.
    virtual Acad::ErrorStatus addCommand(const ACHAR* cmdGroupName, const ACHAR* cmdGlobalName,
                                         const ACHAR* cmdLocalName, Adesk::Int32 commandFlags,
                                         AcRxFunctionPtr FunctionAddr,
                                         AcEdUIContext* UIContext = nullptr, int fcode = -1,
                                         HINSTANCE__* hResourceHandle = nullptr,
                                         AcEdCommand** cmdPtrRet = nullptr) = 0;
    // The command of that name (global or local, case ignored), the newest group first.
    virtual AcEdCommand* lookupCmd(const ACHAR* cmdName, bool globalFlag) const = 0;
    virtual Acad::ErrorStatus removeCmd(const ACHAR* cmdGroupName, const ACHAR* cmdGlobalName) = 0;
    // eKeyNotFound when there is no such group.
    virtual Acad::ErrorStatus removeGroup(const ACHAR* groupName) = 0;
};

// The host's command stack, as found in the system registry.
AcEdCommandStack* acedRegCmds();
