// What the tests of the caps, fittings and annotations share: objects from their JSON form, the
// entities a creator left in model space, and what rides on them.
#pragma once

#include "../support/model_space.h"
#include "import_fixture.h"

#include "records/member_record.h"

#include <arx/acdb.h>
#include <arx/dbdict.h>
#include <arx/dbents.h>
#include <arx/dbsol3d.h>
#include <qel/qel_json.h>

#include <memory>
#include <string>
#include <vector>

namespace fittingstest {

struct Unref {
    void operator()(QelObject* object) const { object->UnRef(); }
};
using ObjectPtr = std::unique_ptr<QelObject, Unref>;

inline ObjectPtr objectFrom(const std::string& json) {
    return ObjectPtr(qeljson::objectFromJson(json, "test"));
}

// The ids of model space in order.
inline std::vector<AcDbObjectId> modelSpaceIds() {
    return ::modelSpaceIds(*acdbHostApplicationServices()->workingDatabase());
}

// An entity of model space open for read, closed when the view goes.
template <typename T>
class Open {
public:
    explicit Open(AcDbObjectId id) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) == Acad::eOk) {
            m_entity = entity;
            m_typed = T::cast(entity);
        }
    }
    ~Open() {
        if (m_entity) m_entity->close();
    }
    Open(const Open&) = delete;
    Open& operator=(const Open&) = delete;
    T* operator->() const { return m_typed; }
    T* get() const { return m_typed; }
    explicit operator bool() const { return m_typed != nullptr; }

private:
    AcDbEntity* m_entity = nullptr;
    T* m_typed = nullptr;
};

inline QelMemberRecord recordOf(AcDbObjectId id) {
    ads_name name;
    acdbGetAdsName(name, id);
    QelMemberRecord record;
    EXPECT_TRUE(record.Load(name)) << "no member record";
    return record;
}

// The texts of the entity's extended data of the plug-in, in order.
inline std::vector<std::wstring> xdataOf(AcDbObjectId id) {
    std::vector<std::wstring> texts;
    Open<AcDbEntity> entity(id);
    if (!entity) return texts;
    resbuf* chain = entity->xData(L"Tovi_Technologies");
    for (resbuf* rb = chain; rb; rb = rb->rbnext)
        if (rb->restype == 1000) texts.push_back(rb->resval.rstring);
    acutRelRb(chain);
    return texts;
}

struct MassProps {
    double volume = 0.0;
    AcGePoint3d centroid;
};
inline MassProps massOf(AcDbObjectId id) {
    MassProps out;
    Open<AcDb3dSolid> solid(id);
    EXPECT_TRUE(bool(solid)) << "not a solid";
    if (!solid) return out;
    double moments[3], products[3], principal[3], gyration[3];
    AcGeVector3d axes[3];
    AcDbExtents extents;
    EXPECT_EQ(solid->getMassProp(out.volume, out.centroid, moments, products, principal, axes,
                                 gyration, extents),
              Acad::eOk);
    return out;
}

// The members of the entity's group (the first group among its reactors).
inline std::vector<AcDbObjectId> groupMembersOf(AcDbObjectId id) {
    std::vector<AcDbObjectId> members;
    Open<AcDbEntity> entity(id);
    if (!entity || !entity->reactors()) return members;
    const AcDbVoidPtrArray& reactors = *entity->reactors();
    for (int i = 0; i < reactors.length(); ++i) {
        void* reactor = reactors[i];
        if (!acdbIsPersistentReactor(reactor)) continue;
        AcDbGroup* group = nullptr;
        if (acdbOpenObject(group, acdbPersistentReactorObjectId(reactor), AcDb::kForRead) !=
            Acad::eOk)
            continue;
        AcDbObjectIdArray ids;
        group->allEntityIds(ids);
        group->close();
        for (int m = 0; m < ids.length(); ++m)
            members.push_back(ids[m]);
        break;
    }
    return members;
}

inline void expectNear(const AcGePoint3d& actual, const AcGePoint3d& expected, double tolerance,
                       const char* what) {
    EXPECT_LE(actual.distanceTo(expected), tolerance)
        << what << ": (" << actual.x << ", " << actual.y << ", " << actual.z << ") against ("
        << expected.x << ", " << expected.y << ", " << expected.z << ")";
}

} // namespace fittingstest
