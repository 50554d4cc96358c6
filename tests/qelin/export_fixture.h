// Export tests of single entities: a host document with the solid classes, the companion module
// at hand, and ways to make entities: imported by the driver, drawn through the database,
// modelled by the host's commands, tagged as the import tags them.
#pragma once

#include "../support/model_space.h"
#include "import_fixture.h"

#include "records/member_record.h"

#include <arx/brhost.h>
#include <arx/dbsol3d.h>
#include <arx/rxregsvc.h>

#include <string>
#include <vector>

namespace qelintest {

class ExportTest : public ImportTest {
protected:
    static void SetUpTestSuite() {
        qelhost::registerSolidClasses();
        qelhost::setModuleFolder(QEL_MODULE_FOLDER);
    }
    void TearDown() override {
        if (m_companion) acrxDynamicLinker->unloadModule(L"ToviQelOut.dll", false);
        ImportTest::TearDown();
    }

    void loadCompanion() {
        ASSERT_TRUE(acrxDynamicLinker->loadModule(L"ToviQelOut.dll", false, false));
        m_companion = true;
    }

    // A new block of that name holding the entities, which it takes and closes.
    static AcDbObjectId block(const wchar_t* name, const std::vector<AcDbEntity*>& entities = {}) {
        AcDbBlockTable* table = nullptr;
        EXPECT_EQ(database()->getBlockTable(table, AcDb::kForWrite), Acad::eOk);
        auto* record = new AcDbBlockTableRecord;
        record->setName(name);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, record), Acad::eOk);
        table->close();
        for (AcDbEntity* entity : entities) {
            EXPECT_EQ(record->appendAcDbEntity(entity), Acad::eOk);
            entity->close();
        }
        record->close();
        return id;
    }

    // The group the entity is in: the last of its persistent reactors, null without one.
    static AcDbObjectId groupOf(AcDbObjectId id) {
        AcDbObjectId group;
        AcDbEntity* entity = nullptr;
        EXPECT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
        if (!entity) return group;
        const AcDbVoidPtrArray* reactors = entity->reactors();
        for (int i = 0; reactors && i < reactors->length(); ++i)
            if (acdbIsPersistentReactor(reactors->at(i)))
                group = acdbPersistentReactorObjectId(reactors->at(i));
        entity->close();
        return group;
    }

    static void tag(AcDbObjectId id, int code, int role = 0) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(acdbOpenAcDbEntity(entity, id, AcDb::kForRead), Acad::eOk);
        entity->close(); // the record opens it for write itself
        QelMemberRecord record;
        record.memberType = code;
        record.partIndex = role;
        record.filePath = L"source.qel";
        EXPECT_TRUE(record.Store(entity));
    }

    // A solid built about the origin, then moved.
    template <class Build>
    static AcDbObjectId solid(Build build, const AcGeMatrix3d& place = AcGeMatrix3d()) {
        auto* s = new AcDb3dSolid;
        EXPECT_EQ(build(*s), Acad::eOk);
        EXPECT_EQ(s->transformBy(place), Acad::eOk);
        return add(s);
    }
    static AcDbObjectId frustum(double height, double base, double top) {
        return solid([&](AcDb3dSolid& s) { return s.createFrustum(height, base, base, top); });
    }

    // A host command run as a program runs it, and the entity it drew last.
    template <class... Args>
    static AcDbObjectId command(Args... args) {
        EXPECT_EQ(acedCommand(args..., RTNONE), RTNORM);
        ads_name last;
        EXPECT_EQ(acdbEntLast(last), RTNORM);
        AcDbObjectId id;
        acdbGetObjectId(id, last);
        return id;
    }

    // The entities of model space, in order.
    static std::vector<AcDbObjectId> modelSpace() { return modelSpaceIds(*database()); }
    template <class T>
    static bool is(AcDbObjectId id) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) return false;
        const bool yes = T::cast(entity) != nullptr;
        entity->close();
        return yes;
    }

    bool m_companion = false;
};

} // namespace qelintest
