// The companion module in the host: loaded by its file name, its two functions reached through
// acedInvoke, and getType's answer for each kind of entity.
#include "companion_test.h"
#include "solids.h"

#include "../support/command.h"

#include <arx/rxregsvc.h>
#include <win/strings.h>

#include <array>
#include <cstdio>
#include <sys/wait.h>

namespace companiontest {
namespace {

TEST_F(Companion, TheModuleNamesItsFunctionsAndTakesThemBackWhenUnloaded) {
    const std::wstring handle = add(sphere(1.0));
    EXPECT_EQ(typeOf(handle), 2);
    // The module may be unloaded; its functions go with it.
    ASSERT_TRUE(acrxDynamicLinker->unloadModule(L"ToviQelOut.dll", true));
    EXPECT_EQ(call(L"getType", handle).status, RTERROR);
    EXPECT_EQ(call(L"getPolyPlanerExtru", handle).status, RTERROR);
    // Loaded again, by its name in another case as the host's file system allows.
    ASSERT_TRUE(acrxDynamicLinker->loadModule(L"toviqelout.DLL", true, false));
    EXPECT_EQ(typeOf(handle), 2);
}

TEST_F(Companion, GetTypeTellsSpheresAndToriFromOtherSolids) {
    const struct {
        const char* what;
        AcDbEntity* entity;
        int type;
    } cases[] = {
        {"sphere", sphere(2.0, {3, -4, 5}), 2},
        {"hemisphere with its flat face", hemisphere(2.0), 2},
        {"torus", torus(5.0, 1.0), 3},
        {"torus whose tube overlaps its hole", torus(1.0, 2.0), 3},
        {"elbow swept along an arc", arcElbow(1.0), 3},
        {"mitred elbow", mitredElbow(1.0), 4},
        {"cylinder", cylinder(1.0, 3.0), 4},
        {"box", box(1, 2, 3, AcGeMatrix3d()), 1},
        {"extruded 12-gon", extrusion(region(polygon(regularPolygon(12, 5.0))), 3.0), 1},
        {"region", region(polygon(regularPolygon(4, 1.0))), 0},
        {"line", new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 1)), 0},
        {"empty solid", new AcDb3dSolid, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(typeOf(add(c.entity)), c.type);
    }
}

TEST_F(Companion, AHandleThatNamesNoEntityGetsAnEmptyReply) {
    add(box(1, 1, 1, AcGeMatrix3d()));
    for (const wchar_t* function : {L"getType", L"getPolyPlanerExtru"}) {
        for (const wchar_t* handle : {L"FFFFF", L"not a handle", L""}) {
            SCOPED_TRACE(win::toUtf8(std::wstring(function) + L" " + handle));
            const Answer answer = call(function, handle);
            EXPECT_EQ(answer.status, RTNORM);
            EXPECT_EQ(answer.list, nullptr);
        }
        // A call without the handle, or with a number in its place.
        for (resbuf* args :
             {acutBuildList(RTSTR, function, 0), acutBuildList(RTSTR, function, RTSHORT, 42, 0)}) {
            resbuf* result = nullptr;
            EXPECT_EQ(acedInvoke(args, &result), RTNORM);
            EXPECT_EQ(result, nullptr);
            acutRelRb(result);
            acutRelRb(args);
        }
    }
}

TEST_F(Companion, TheCallerMayHoldTheEntityOpenForReadButNotForWrite) {
    const std::wstring handle = add(torus(5.0, 1.0));
    ads_name name;
    AcDbObjectId id;
    ASSERT_EQ(acdbHandEnt(handle.c_str(), name), RTNORM);
    ASSERT_EQ(acdbGetObjectId(id, name), Acad::eOk);
    AcDbEntity* entity = nullptr;
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(typeOf(handle), 3);
    entity->close();
    ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForWrite), Acad::eOk);
    const Answer answer = call(L"getType", handle);
    EXPECT_EQ(answer.status, RTNORM);
    EXPECT_EQ(answer.list, nullptr) << "the module cannot open it";
    entity->close();
    EXPECT_EQ(typeOf(handle), 3);
}

// qelcad itself loads the module by name at its start, with nothing printed about it.
TEST(CompanionInQelcad, LoadsByNameWithoutAnError) {
    const std::string script = testing::TempDir() + "companion-quit.scr";
    std::FILE* f = std::fopen(script.c_str(), "w");
    ASSERT_NE(f, nullptr);
    std::fputs("QUIT\n", f);
    std::fclose(f);
    const std::string command = std::string(QELCAD) + " run --no-autoload --modules " +
                                QEL_MODULE_FOLDER + " --load ToviQelOut.dll --script " + script +
                                " 2>&1";
    const Outcome run = runCommand(command);
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_EQ(run.out.find("Unable to load"), std::string::npos) << run.out;
    std::remove(script.c_str());
}

} // namespace
} // namespace companiontest
