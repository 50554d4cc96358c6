// A module as the host's modules are written: an entry point that answers the host's messages,
// a command group, a function served through acedInvoke, a dialog and a message box. Every
// step prints a line, so that tests follow it in the transcript.
#include <arx/accmd.h>
#include <arx/acdocman.h>
#include <arx/aced.h>
#include <arx/rxregsvc.h>
#include <win/win.h>

namespace {

const ACHAR* const kGroup = L"QELTEST_COMMANDS";

class TestReactor : public AcApDocManagerReactor {
public:
    void documentToBeDestroyed(AcApDocument* doc) override {
        acutPrintf(L"test: document %s goes\n", doc->docTitle());
    }
};
TestReactor reactor;

// The options dialog: a name that must not be empty, and a check box.
class CTestOptions : public CDialog {
public:
    enum { IDD = 2001 };
    CTestOptions() : CDialog(IDD) {}
    CString m_name;

protected:
    void DoDataExchange(CDataExchange* dx) override {
        CDialog::DoDataExchange(dx);
        DDX_Text(dx, 1001, m_name);
    }
    void OnOK() override {
        UpdateData(TRUE);
        if (m_name.IsEmpty()) {
            AfxMessageBox(L"A name is needed.", MB_OK | MB_ICONEXCLAMATION);
            return;
        }
        checked = IsDlgButtonChecked(1002) != 0;
        CDialog::OnOK();
    }

public:
    bool checked = false;
};

const win::DialogResource optionsTemplate({
    CTestOptions::IDD,
    L"Test Options",
    150,
    60,
    L"MS Sans Serif",
    8,
    {
        {win::ControlKind::Static, IDC_STATIC, L"Name", 5, 5, 40, 8},
        {win::ControlKind::Edit, 1001, L"", 50, 5, 90, 14, WS_TABSTOP, nullptr, L"name"},
        {win::ControlKind::CheckBox, 1002, L"Flag", 5, 25, 60, 10, WS_TABSTOP, nullptr, L"flag"},
        {win::ControlKind::PushButton, IDOK, L"OK", 50, 42, 40, 14, BS_DEFPUSHBUTTON},
        {win::ControlKind::PushButton, IDCANCEL, L"Cancel", 100, 42, 40, 14},
    },
});

void hello() {
    ACHAR name[64];
    acedGetString(1, L"Your name: ", name, 64);
    acutPrintf(L"test: hello %s\n", name);
}

void box() {
    const int answer = AfxMessageBox(L"Proceed?", MB_YESNO | MB_ICONQUESTION);
    acutPrintf(L"test: box answered %d\n", answer);
}

void dialog() {
    CTestOptions options;
    const INT_PTR result = options.DoModal();
    acutPrintf(L"test: dialog %d name %s flag %d\n", int(result), options.m_name.GetString(),
               int(options.checked));
}

void ask() {
    ACHAR answer[32] = L"";
    acedInitGet(0, L"Restore Hide");
    const int status = acedGetKword(L"Restore or Hide [Restore/Hide]<Hide>: ", answer, 32);
    acutPrintf(L"test: kword %d %s\n", status, answer);
}

// Answers with its own name and the arguments it was given.
int echo() {
    resbuf* reply = acutBuildList(RTSTR, L"echo", 0);
    resbuf* tail = reply;
    for (const resbuf* arg = acedGetArgs(); arg != nullptr; arg = arg->rbnext) {
        if (arg->restype != RTSTR) return RTERROR;
        tail->rbnext = acutBuildList(RTSTR, arg->resval.rstring, 0);
        tail = tail->rbnext;
    }
    acedRetList(reply);
    acutRelRb(reply);
    return RTNORM;
}

AcEdCommandStack* commandStack() {
    return AcEdCommandStack::cast(acrxSysRegistry()->at(ACRX_COMMAND_DOCK));
}

void init(void* appId) {
    acrxDynamicLinker->unlockApplication(appId);
    acrxDynamicLinker->registerAppMDIAware(appId);
    acutPrintf(L"test: init\n");
    const struct {
        const ACHAR* name;
        AcRxFunctionPtr function;
    } commands[] = {
        {L"TESTHELLO", hello}, {L"TESTBOX", box}, {L"TESTDIALOG", dialog}, {L"TESTASK", ask}};
    for (const auto& c : commands)
        commandStack()->addCommand(kGroup, c.name, c.name, ACRX_CMD_MODAL, c.function);
    acedDefun(L"testEcho", 1);
    acedRegFunc(echo, 1);
    acDocManagerPtr()->addReactor(&reactor);
}

void unload() {
    commandStack()->removeGroup(kGroup);
    acedUndef(L"testEcho", 1);
    acDocManagerPtr()->removeReactor(&reactor);
    acutPrintf(L"test: unload\n");
}

void drawingMessage(const wchar_t* what) {
    resbuf name;
    name.restype = RTNONE;
    if (acedGetVar(L"DWGNAME", &name) != RTNORM) {
        acedAlert(L"Could not get dwg");
        return;
    }
    acutPrintf(L"test: %s %s\n", what, name.resval.rstring);
    acutDelString(name.resval.rstring);
}

} // namespace

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode msg, void* appId) {
    switch (msg) {
    case AcRx::kInitAppMsg: init(appId); break;
    case AcRx::kUnloadAppMsg: unload(); break;
    case AcRx::kLoadDwgMsg: drawingMessage(L"load"); break;
    case AcRx::kUnloadDwgMsg: drawingMessage(L"unload"); break;
    default: break;
    }
    return AcRx::kRetOK;
}

extern "C" int acrxGetApiVersion() {
    return ACRX_API_VERSION;
}
