// A module loaded by name: its messages, its commands, its acedInvoke function, its dialog and
// message box, and what is left after it is unloaded.
#include "editor_test.h"

#include <arx/accmd.h>
#include <arx/rxregsvc.h>
#include <win/scripted.h>

namespace editortest {
namespace {

class Modules : public EditorTest {
protected:
    void SetUp() override {
        EditorTest::SetUp();
        qelhost::setModuleFolder(QEL_TEST_MODULES);
        presenter = std::make_shared<win::ScriptedPresenter>();
        win::setPresenter(presenter);
    }
    void TearDown() override {
        win::setPresenter(nullptr);
        EditorTest::TearDown();
    }
    void answerDialogs(const std::string& text) {
        std::string error;
        ASSERT_TRUE(presenter->parse(text, error)) << error;
    }
    std::shared_ptr<win::ScriptedPresenter> presenter;
};

TEST_F(Modules, LoadedByNameTheyGetInitAndTheDrawingsMessages) {
    EXPECT_FALSE(acrxDynamicLinker->loadModule(L"NoSuchModule.dll", true));
    EXPECT_NE(printed().find(L"Unable to load NoSuchModule.dll"), std::wstring::npos);
    win::Transcript::instance().clear();
    // The name matches without regard to case, as on the host's file system.
    ASSERT_TRUE(acrxDynamicLinker->loadModule(L"qeltestmodule.ARX", true));
    EXPECT_TRUE(acrxDynamicLinker->loadModule(L"QelTestModule.arx", true)) << "already loaded";
    EXPECT_EQ(qelhost::loadedModules().size(), 1u);
    AcApDocument* second = qelhost::newDocument();
    qelhost::closeDocument(second);
    EXPECT_EQ(printed(), L"test: init\n"
                         L"test: load Drawing1.dwg\n"
                         L"test: load Drawing2.dwg\n"
                         L"test: unload Drawing2.dwg\n"
                         L"test: document Drawing2.dwg goes\n");
    win::Transcript::instance().clear();
    EXPECT_FALSE(acrxDynamicLinker->isApplicationLocked(L"QelTestModule.arx"))
        << "the module unlocked itself";
    ASSERT_TRUE(acrxDynamicLinker->unloadModule(L"QelTestModule.arx", true));
    EXPECT_EQ(printed(), L"test: unload\n");
    EXPECT_FALSE(acrxDynamicLinker->unloadModule(L"QelTestModule.arx", false));
}

TEST_F(Modules, ModulesThatRefuseOrHaveNoEntryPointAreNotKept) {
    EXPECT_FALSE(acrxDynamicLinker->loadModule(L"QelRefusingModule.dll", true));
    EXPECT_NE(printed().find(L"refusing: init\n"), std::wstring::npos);
    EXPECT_NE(printed().find(L"QelRefusingModule.dll: the module refused to start"),
              std::wstring::npos);
    EXPECT_FALSE(acrxDynamicLinker->loadModule(L"QelPlainLibrary.dll", true));
    EXPECT_NE(printed().find(L"QelPlainLibrary.dll: no entry point acrxEntryPoint"),
              std::wstring::npos);
    EXPECT_TRUE(qelhost::loadedModules().empty());
    // Nothing more reaches a module that was refused.
    qelhost::newDocument();
    EXPECT_EQ(printed().find(L"refusing: message"), std::wstring::npos);
}

TEST_F(Modules, ALockedModuleStays) {
    ASSERT_TRUE(acrxDynamicLinker->loadModule(L"QelTestModule.arx", false));
    ASSERT_EQ(qelhost::runCommand(L"TESTLOCK"), RTNORM);
    EXPECT_TRUE(acrxDynamicLinker->isApplicationLocked(L"QelTestModule.arx"));
    EXPECT_FALSE(acrxDynamicLinker->unloadModule(L"QelTestModule.arx", true));
    EXPECT_NE(printed().find(L"the module is locked"), std::wstring::npos);
    EXPECT_EQ(qelhost::loadedModules().size(), 1u);
    // The host, ending, unloads it all the same.
    qelhost::unloadAllModules();
    EXPECT_TRUE(qelhost::loadedModules().empty());
    EXPECT_NE(printed().find(L"test: unload\n"), std::wstring::npos);
}

TEST_F(Modules, CommandsAreFoundThroughTheRegistryAndGoWithTheirGroup) {
    AcRxObject* dock = acrxSysRegistry()->at(ACRX_COMMAND_DOCK);
    ASSERT_NE(AcEdCommandStack::cast(dock), nullptr);
    auto* classes = AcRxDictionary::cast(acrxSysRegistry()->at(L"ClassDictionary"));
    ASSERT_NE(classes, nullptr);
    EXPECT_TRUE(classes->has(L"AcDbEntity"));
    EXPECT_FALSE(classes->has(L"AcBrEntity")) << "no boundary-representation module here";
    static AcRxClass brEntity(L"AcBrEntity", AcRxObject::desc());
    qelhost::addClassToDictionary(&brEntity);
    ASSERT_TRUE(classes->has(L"AcBrEntity"));
    EXPECT_EQ(classes->at(L"AcBrEntity")->isA(), &brEntity);

    ASSERT_TRUE(acrxDynamicLinker->loadModule(L"QelTestModule.arx", false));
    AcEdCommand* hello = acedRegCmds()->lookupCmd(L"testhello", true);
    ASSERT_NE(hello, nullptr);
    EXPECT_EQ(hello->commandFlags(), ACRX_CMD_MODAL);
    EXPECT_EQ(acedRegCmds()->addCommand(L"QELTEST_COMMANDS", L"TESTHELLO", L"TESTHELLO", 0,
                                        hello->functionAddr()),
              Acad::eDuplicateKey);
    answers(L"Ada Lovelace\n");
    EXPECT_EQ(qelhost::runCommand(L"TESTHELLO"), RTNORM);
    EXPECT_NE(printed().find(L"test: hello Ada Lovelace\n"), std::wstring::npos);
    EXPECT_EQ(qelhost::runCommand(L"HELP"), RTNORM);
    EXPECT_NE(printed().find(L"TESTHELLO"), std::wstring::npos);
    EXPECT_NE(printed().find(L"-LAYER"), std::wstring::npos);
    // A command that throws fails with its message; the host goes on.
    EXPECT_EQ(qelhost::runCommand(L"_TESTTHROW"), RTERROR);
    EXPECT_NE(printed().find(L"TESTTHROW ended with an error: the model is broken"),
              std::wstring::npos);
    ASSERT_TRUE(acrxDynamicLinker->unloadModule(L"QelTestModule.arx", false));
    EXPECT_EQ(acedRegCmds()->lookupCmd(L"TESTHELLO", true), nullptr);
    EXPECT_EQ(qelhost::runCommand(L"TESTHELLO"), RTERROR);
    EXPECT_EQ(acedRegCmds()->removeGroup(L"QELTEST_COMMANDS"), Acad::eKeyNotFound);
}

TEST_F(Modules, FunctionsAreInvokedByNameWithTheirArguments) {
    ASSERT_TRUE(acrxDynamicLinker->loadModule(L"QelTestModule.arx", false));
    resbuf* args = acutBuildList(RTSTR, L"testEcho", RTSTR, L"2A", 0);
    resbuf* result = nullptr;
    ASSERT_EQ(acedInvoke(args, &result), RTNORM);
    ASSERT_NE(result, nullptr);
    EXPECT_STREQ(result->resval.rstring, L"echo");
    ASSERT_NE(result->rbnext, nullptr);
    EXPECT_STREQ(result->rbnext->resval.rstring, L"2A");
    acutRelRb(result);
    acutRelRb(args);
    // The function refuses arguments that are not text.
    args = acutBuildList(RTSTR, L"testEcho", RTSHORT, 5, 0);
    EXPECT_EQ(acedInvoke(args, &result), RTERROR);
    EXPECT_EQ(result, nullptr);
    acutRelRb(args);
    // A function served by the module's entry point, with the code acedGetFunCode gives it.
    args = acutBuildList(RTSTR, L"TESTCOUNT", RTSTR, L"a", RTSTR, L"b", RTSTR, L"c", 0);
    ASSERT_EQ(acedInvoke(args, &result), RTNORM);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->restype, RTSHORT);
    EXPECT_EQ(result->resval.rint, 3);
    acutRelRb(result);
    acutRelRb(args);
    EXPECT_EQ(acedGetFunCode(), -1);
    args = acutBuildList(RTSTR, L"getType", 0);
    EXPECT_EQ(acedInvoke(args, &result), RTERROR) << "no module serves it";
    acutRelRb(args);
    ASSERT_TRUE(acrxDynamicLinker->unloadModule(L"QelTestModule.arx", false));
    args = acutBuildList(RTSTR, L"testEcho", 0);
    EXPECT_EQ(acedInvoke(args, &result), RTERROR) << "gone with its module";
    acutRelRb(args);
}

TEST_F(Modules, DialogsAndMessageBoxesAreAnsweredByThePresenter) {
    ASSERT_TRUE(acrxDynamicLinker->loadModule(L"QelTestModule.arx", false));
    // The first OK has no name: the module's own validation shows its box and stays open;
    // the scripted presenter then gives up and the dialog is cancelled.
    answerDialogs("dialog 2001\n  ok\nbox yes\n");
    EXPECT_EQ(qelhost::runCommand(L"TESTDIALOG"), RTNORM);
    EXPECT_NE(printed().find(L"test: dialog 2 name  flag 0"), std::wstring::npos);
    EXPECT_TRUE(presenter->failed());
    win::Transcript::instance().clear();
    presenter = std::make_shared<win::ScriptedPresenter>();
    win::setPresenter(presenter);
    answerDialogs("dialog 2001\n  name = Pump 7\n  flag = on\n  ok\nbox no\n");
    EXPECT_EQ(qelhost::runCommand(L"TESTDIALOG"), RTNORM);
    EXPECT_EQ(qelhost::runCommand(L"TESTBOX"), RTNORM);
    EXPECT_NE(printed().find(L"test: dialog 1 name Pump 7 flag 1"), std::wstring::npos);
    EXPECT_NE(printed().find(L"test: box answered 7"), std::wstring::npos) << printed();
    answers(L"\n");
    EXPECT_EQ(qelhost::runCommand(L"TESTASK"), RTNORM);
    EXPECT_NE(printed().find(L"test: kword 5000 "), std::wstring::npos);
}

} // namespace
} // namespace editortest
