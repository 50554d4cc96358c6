// A drawing as the module leaves it: one entity of every kind the host makes, the first with
// a member record and the module's extended data, two in an anonymous group, a layer off and
// one frozen, a UCS current and one in the table.
#pragma once

#include <arx/acdb.h>

#include "../arx/samples.h"
#include "drawing_test.h"

// The ids of the entities, in the order of the samples. The database must be the working one.
inline std::vector<AcDbObjectId> buildModuleDrawing(AcDbDatabase& db) {
    acdbRegApp(ACRX_T("Tovi_Technologies"));
    AcDbLayerTable* layers = nullptr;
    db.getLayerTable(layers, AcDb::kForWrite);
    for (const ACHAR* name : {ACRX_T("Off"), ACRX_T("Frozen")}) {
        auto* layer = new AcDbLayerTableRecord;
        layer->setName(name);
        layer->setIsOff(name[0] == L'O');
        layer->setIsFrozen(name[0] == L'F');
        layers->add(layer);
        layer->close();
    }
    layers->close();
    AcDbUCSTable* ucss = nullptr;
    db.getUCSTable(ucss, AcDb::kForWrite);
    auto* ucs = new AcDbUCSTableRecord;
    ucs->setName(ACRX_T("Tilted"));
    ucs->setOrigin({5, 0, 0});
    ucs->setXAxis({0, 1, 0});
    ucs->setYAxis({0, 0, 1});
    ucss->add(ucs);
    ucs->close();
    ucss->close();

    std::vector<AcDbObjectId> ids;
    AcDbBlockTableRecord* space = nullptr;
    acdbOpenObject(space, db.modelSpaceId(), AcDb::kForWrite);
    const std::vector<Sample> samples = entitySamples();
    for (size_t i = 0; i < samples.size(); ++i) {
        AcDbEntity* e = samples[i].make(db);
        e->setLayer(i % 3 == 1 ? ACRX_T("Off") : i % 3 == 2 ? ACRX_T("Frozen") : ACRX_T("0"));
        AcDbObjectId id;
        space->appendAcDbEntity(id, e);
        e->close();
        ids.push_back(id);
    }
    space->close();

    AcDbEntity* e = nullptr;
    acdbOpenAcDbEntity(e, ids[0], AcDb::kForWrite);
    resbuf* xdata = acutBuildList(1001, ACRX_T("Tovi_Technologies"), 1000, ACRX_T("TriMesh"), 1000,
                                  ACRX_T("ToviQelPoint"), 0);
    e->setXData(xdata);
    acutRelRb(xdata);
    e->createExtensionDictionary();
    AcDbDictionary* dict = nullptr;
    acdbOpenObject(dict, e->extensionDictionary(), AcDb::kForWrite);
    e->close();
    auto* record = new AcDbXrecord;
    AcDbObjectId recordId;
    dict->setAt(ACRX_T("MemberRec"), record, recordId);
    dict->close();
    resbuf* chain = acutBuildList(1, ACRX_T("C:\\plant one.qel"), 1, ACRX_T("*A3"), 90, 7, 90,
                                  -40000, 40, 0.1, 40, 1e-300, 40, -2.5e17, 1, ACRX_T("1F"), 0);
    record->setFromRbChain(*chain);
    acutRelRb(chain);
    record->close();

    auto* group = new AcDbGroup(ACRX_T("pipe"), false);
    AcDbDictionary* groups = nullptr;
    db.getGroupDictionary(groups, AcDb::kForWrite);
    AcDbObjectId groupId;
    groups->setAt(ACRX_T("*"), group, groupId);
    groups->close();
    group->setAnonymous();
    group->append(ids[1]);
    group->append(ids[2]);
    group->close();
    db.setUcs({1, 2, 3}, {0, 1, 0}, {-1, 0, 0});
    return ids;
}
