#include "companion_test.h"

#include <arx/rxregsvc.h>
#include <win/strings.h>

#include <algorithm>

namespace companiontest {

void Companion::SetUp() {
    qelhost::resetHost();
    qelhost::registerSolidClasses();
    qelhost::setModuleFolder(QEL_MODULE_FOLDER);
    qelhost::newDocument();
    win::Transcript::instance().clear();
    ASSERT_TRUE(acrxDynamicLinker->loadModule(L"ToviQelOut.dll", true, false))
        << win::toUtf8(win::Transcript::instance().printed());
    EXPECT_EQ(win::Transcript::instance().printed(), L"") << "the module starts silently";
}

void Companion::TearDown() {
    EXPECT_EQ(acdbHostOpenObjectCount(acdbHostApplicationServices()->workingDatabase()), 0u)
        << "objects left open";
    qelhost::resetHost();
}

std::wstring Companion::add(AcDbEntity* entity) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTableRecord* space = nullptr;
    EXPECT_EQ(acdbOpenObject(space, db->modelSpaceId(), AcDb::kForWrite), Acad::eOk);
    AcDbObjectId id;
    EXPECT_EQ(space->appendAcDbEntity(id, entity), Acad::eOk);
    entity->close();
    space->close();
    ACHAR text[32] = L"";
    EXPECT_TRUE(id.handle().getIntoAsciiBuffer(text, 32));
    return text;
}

Answer Companion::call(const wchar_t* function, const std::wstring& handle) {
    resbuf* args = acutBuildList(RTSTR, function, RTSTR, handle.c_str(), 0);
    resbuf* result = nullptr;
    Answer answer;
    answer.status = acedInvoke(args, &result);
    answer.list.reset(result);
    acutRelRb(args);
    return answer;
}

int Companion::typeOf(const std::wstring& handle) {
    const Answer answer = call(L"getType", handle);
    EXPECT_EQ(answer.status, RTNORM);
    const resbuf* rb = answer.list.get();
    if (rb == nullptr || rb->restype != 90 || rb->rbnext != nullptr) {
        ADD_FAILURE() << "getType's reply is not one item of group 90";
        return -1;
    }
    return rb->resval.rlong;
}

std::vector<Outline> faceListOf(const resbuf* list) {
    std::vector<Outline> faces;
    [&] {
        ASSERT_NE(list, nullptr) << "an empty reply";
        ASSERT_EQ(list->restype, 90) << "the head";
        const int count = list->resval.rlong + 1;
        ASSERT_GT(count, 0);
        const resbuf* rb = list->rbnext;
        for (int f = 0; f < count; ++f) {
            ASSERT_NE(rb, nullptr) << "face " << f << " is missing";
            ASSERT_EQ(rb->restype, 90) << "face " << f << " starts with its last index";
            const int n = rb->resval.rlong + 1;
            rb = rb->rbnext;
            Outline points;
            for (int k = 0; k < n; ++k, rb = rb->rbnext) {
                ASSERT_NE(rb, nullptr) << "face " << f << " ends at point " << k;
                ASSERT_EQ(rb->restype, RT3DPOINT) << "face " << f << " point " << k;
                points.emplace_back(rb->resval.rpoint[0], rb->resval.rpoint[1],
                                    rb->resval.rpoint[2]);
            }
            faces.push_back(std::move(points));
        }
        EXPECT_EQ(rb, nullptr) << "items after the last face";
    }();
    return faces;
}

bool sameLoop(const Outline& a, const Outline& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t start = 0; start < a.size(); ++start) {
        bool all = true;
        for (std::size_t k = 0; k < a.size() && all; ++k)
            all = a[(start + k) % a.size()].distanceTo(b[k]) < 1e-9;
        if (all) return true;
    }
    return false;
}

void expectFaces(const std::vector<Outline>& actual, const std::vector<Outline>& expected) {
    EXPECT_EQ(actual.size(), expected.size());
    for (std::size_t e = 0; e < expected.size(); ++e) {
        const auto n = std::count_if(actual.begin(), actual.end(),
                                     [&](const Outline& a) { return sameLoop(a, expected[e]); });
        EXPECT_EQ(n, 1) << "expected face " << e << " (" << expected[e].size() << " corners from "
                        << expected[e][0].x << "," << expected[e][0].y << "," << expected[e][0].z
                        << ")";
    }
}

double twiceArea(const Outline& outline) {
    double twice = 0.0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const AcGePoint3d& a = outline[i];
        const AcGePoint3d& b = outline[(i + 1) % outline.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return twice;
}

namespace {

double side(const AcGePoint3d& o, const AcGePoint3d& a, const AcGePoint3d& b) {
    return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x);
}

} // namespace

bool crossesItself(const Outline& outline) {
    const std::size_t n = outline.size();
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = i + 1; j < n; ++j) {
            const AcGePoint3d &a = outline[i], &b = outline[(i + 1) % n];
            const AcGePoint3d &c = outline[j], &d = outline[(j + 1) % n];
            const double o1 = side(a, b, c), o2 = side(a, b, d);
            const double o3 = side(c, d, a), o4 = side(c, d, b);
            if (o1 * o2 < -1e-12 && o3 * o4 < -1e-12) return true;
        }
    return false;
}

Apart takeApart(const Outline& outline) {
    Apart apart;
    const std::size_t n = outline.size();
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = i + 4; j < n; ++j)
            if (outline[i].distanceTo(outline[j]) < 1e-12 &&
                outline[i + 1].distanceTo(outline[j - 1]) < 1e-12) {
                apart.outer.assign(outline.begin(), outline.begin() + i + 1);
                apart.outer.insert(apart.outer.end(), outline.begin() + j + 1, outline.end());
                apart.hole.assign(outline.begin() + i + 1, outline.begin() + j - 1);
                return apart;
            }
    ADD_FAILURE() << "no bridge in an outline of " << n << " points";
    return apart;
}

} // namespace companiontest
