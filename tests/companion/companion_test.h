// The host with the companion module loaded, and readers of the module's replies.
#pragma once

#include <arx/acdb.h>
#include <arx/arx.h>
#include <arx/brhost.h>
#include <arx/dbhost.h>
#include <arx/edhost.h>
#include <arx/editor.h>
#include <arx/solids.h>
#include <win/transcript.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace companiontest {

using Outline = std::vector<AcGePoint3d>;

struct ReleaseList {
    void operator()(resbuf* list) const { acutRelRb(list); }
};
using List = std::unique_ptr<resbuf, ReleaseList>;

struct Answer {
    int status = 0;
    List list;
};

// A new drawing in a host that knows the solid classes, with ToviQelOut.dll loaded from the
// build's module folder by its name.
class Companion : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Appends the entity to model space and closes it; its handle as text.
    std::wstring add(AcDbEntity* entity);
    // acedInvoke of the function with the handle as its one argument.
    Answer call(const wchar_t* function, const std::wstring& handle);
    // getType's number; -1 (and a failure) when the reply is not one item of group 90.
    int typeOf(const std::wstring& handle);
};

// The face list of a reply, read item by item: the head of group 90, then for each face a
// group 90 with its last index and exactly that index plus one points. Anything else fails.
std::vector<Outline> faceListOf(const resbuf* list);

// The same corners in the same running order, from any start.
bool sameLoop(const Outline& a, const Outline& b);
// Each expected face is in the list exactly once, and the list holds nothing else.
void expectFaces(const std::vector<Outline>& actual, const std::vector<Outline>& expected);

// Twice the signed area of an outline in the XY plane.
double twiceArea(const Outline& outline);
// True when two segments of the outline cross (touching at shared ends, or a bridge walked
// there and back, is not crossing). XY plane.
bool crossesItself(const Outline& outline);
// An outline with one hole joined in, taken apart: the outer loop and the hole. Fails the test
// when the outline is not of that form.
struct Apart {
    Outline outer, hole;
};
Apart takeApart(const Outline& outline);

} // namespace companiontest
