// Shared fixture and checkers of the host database tests.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "arx/arx.h"
#include "arx/dbhost.h"

// A fresh drawing as the working database. Every test must leave no object open: the host
// checks the balance of open and close after each command, and so does this fixture.
class ArxTest : public ::testing::Test {
protected:
    void SetUp() override {
        db = std::make_unique<AcDbDatabase>();
        acdbHostApplicationServices()->setWorkingDatabase(db.get());
    }
    void TearDown() override {
        EXPECT_EQ(acdbHostOpenObjectCount(db.get()), 0u) << "objects left open";
        acdbHostApplicationServices()->setWorkingDatabase(nullptr);
        db.reset();
    }

    // Appends to model space and closes; the entity's id.
    AcDbObjectId append(AcDbEntity* entity) {
        AcDbBlockTableRecord* space = nullptr;
        EXPECT_EQ(acdbOpenObject(space, db->currentSpaceId(), AcDb::kForWrite), Acad::eOk);
        AcDbObjectId id;
        EXPECT_EQ(space->appendAcDbEntity(id, entity), Acad::eOk);
        space->close();
        entity->close();
        return id;
    }

    std::unique_ptr<AcDbDatabase> db;
};

// Entity opened for the life of the holder, closed after.
template <class T>
class Opened {
public:
    Opened(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead) {
        status = acdbOpenObject(object, id, mode);
    }
    ~Opened() {
        if (object) object->close();
    }
    T* operator->() const { return object; }
    T* get() const { return object; }
    Acad::ErrorStatus status;
    T* object = nullptr;
};

inline void expectNear(const AcGePoint3d& a, const AcGePoint3d& b, double tol = 1e-9) {
    EXPECT_NEAR(a.x, b.x, tol);
    EXPECT_NEAR(a.y, b.y, tol);
    EXPECT_NEAR(a.z, b.z, tol);
}

inline void expectNear(const AcGeVector3d& a, const AcGeVector3d& b, double tol = 1e-9) {
    expectNear(AcGePoint3d::kOrigin + a, AcGePoint3d::kOrigin + b, tol);
}

inline void expectExtents(const AcDbEntity& e, const AcGePoint3d& min, const AcGePoint3d& max,
                          double tol = 1e-9) {
    AcDbExtents box;
    ASSERT_EQ(e.getGeomExtents(box), Acad::eOk);
    expectNear(box.minPoint(), min, tol);
    expectNear(box.maxPoint(), max, tol);
}

// The item of a group code in a chain, or null.
inline const resbuf* findCode(const resbuf* chain, int code) {
    for (; chain != nullptr; chain = chain->rbnext)
        if (chain->restype == code) return chain;
    return nullptr;
}

struct RbChain {
    explicit RbChain(resbuf* rb) : head(rb) {}
    ~RbChain() { acutRelRb(head); }
    RbChain(const RbChain&) = delete;
    resbuf* head;
};
