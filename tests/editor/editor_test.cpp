#include "editor_test.h"
#include "../support/model_space.h"

namespace editortest {

void EditorTest::SetUp() {
    qelhost::resetHost();
    qelhost::newDocument();
    win::Transcript::instance().clear();
}

void EditorTest::TearDown() {
    EXPECT_EQ(acdbHostOpenObjectCount(db()), 0u) << "objects left open";
    qelhost::resetHost();
}

void EditorTest::answers(const std::wstring& script) {
    qelhost::setInput(std::make_shared<qelhost::ScriptInput>(script));
}

void EditorTest::expectUcs(const AcGePoint3d& origin, const AcGeVector3d& x,
                           const AcGeVector3d& y) const {
    AcGeTol loose;
    loose.setEqualPoint(1e-9);
    loose.setEqualVector(1e-9);
    EXPECT_TRUE(db()->ucsorg().isEqualTo(origin, loose))
        << db()->ucsorg().x << "," << db()->ucsorg().y << "," << db()->ucsorg().z;
    EXPECT_TRUE(db()->ucsxdir().isEqualTo(x, loose))
        << db()->ucsxdir().x << "," << db()->ucsxdir().y << "," << db()->ucsxdir().z;
    EXPECT_TRUE(db()->ucsydir().isEqualTo(y, loose))
        << db()->ucsydir().x << "," << db()->ucsydir().y << "," << db()->ucsydir().z;
}

void EditorTest::addLayer(const wchar_t* name, bool off, bool frozen) {
    AcDbLayerTable* table = nullptr;
    ASSERT_EQ(db()->getLayerTable(table, AcDb::kForWrite), Acad::eOk);
    auto* layer = new AcDbLayerTableRecord;
    layer->setName(name);
    layer->setIsOff(off);
    layer->setIsFrozen(frozen);
    ASSERT_EQ(table->add(layer), Acad::eOk);
    layer->close();
    table->close();
}

AcDbObjectId EditorTest::add(AcDbEntity* entity, const wchar_t* layer) {
    AcDbBlockTableRecord* space = nullptr;
    EXPECT_EQ(acdbOpenObject(space, db()->modelSpaceId(), AcDb::kForWrite), Acad::eOk);
    if (layer) {
        EXPECT_EQ(entity->setLayer(layer), Acad::eOk);
    }
    AcDbObjectId id;
    EXPECT_EQ(space->appendAcDbEntity(id, entity), Acad::eOk);
    entity->close();
    space->close();
    return id;
}

int EditorTest::entityCount() const {
    return static_cast<int>(modelSpaceIds(*db()).size());
}

AcDbLayerTableRecord* EditorTest::openLayer(const wchar_t* name) const {
    AcDbLayerTable* table = nullptr;
    if (db()->getLayerTable(table, AcDb::kForRead) != Acad::eOk) return nullptr;
    AcDbLayerTableRecord* layer = nullptr;
    table->getAt(name, layer, AcDb::kForRead);
    table->close();
    return layer;
}

} // namespace editortest
