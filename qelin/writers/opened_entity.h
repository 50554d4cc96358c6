// An entity opened for reading while the holder lives: the writers read several properties of
// one entity and return early from many places, and each return must close it.
#pragma once

#include <arx/arx.h>

struct QelOpenedEntity {
    // entity is null when the id won't open.
    explicit QelOpenedEntity(const AcDbObjectId& id) {
        if (acdbOpenAcDbEntity(entity, id, AcDb::kForRead) != Acad::eOk) entity = nullptr;
    }
    ~QelOpenedEntity() {
        if (entity) entity->close();
    }
    QelOpenedEntity(const QelOpenedEntity&) = delete;
    QelOpenedEntity& operator=(const QelOpenedEntity&) = delete;
    AcDbEntity* entity = nullptr;
};
