// The tag on an imported entity: which file and object it came from, and the dimensions the
// writers need back without asking the host. Kept as the X-record "MemberRec" of 29 items.
#pragma once

#include <arx/arx.h>
#include <win/win.h>

inline constexpr const ACHAR* QEL_MEMBER_RECORD_KEY = L"MemberRec";

class QelMemberRecord {
public:
    virtual ~QelMemberRecord() = default;

    // Tags the entity (an X-record in its extension dictionary, made or replaced). False when
    // the chain couldn't be built; failures of the record itself are told by XRecords.
    bool Store(AcDbEntity* entity);
    bool Store(AcDbObject* object);
    // Reads the tag back, item by item; false when there is none or it ends before all 29
    // items, in which case the items read so far are kept. groupSerial and miterCount come from
    // the low 16 bits of their items, sign-extended: a serial above 32767 comes back negative.
    bool Load(ads_name entity);
    // The same by the entity's id; false also for an id the host has no name for.
    bool Load(const AcDbObjectId& id);

    // Getters: each loads the entity's tag first.
    int GetType(ads_name entity);
    int GetObjectIndex(ads_name entity); // 0 without a tag
    int GetGroupSerial(ads_name entity); // 0 without a tag
    int GetPart(ads_name entity);
    CString GetFile(ads_name entity);
    int GetMiterCount(ads_name entity, int* found);
    // One dimension by field (majorRadius, length, radius0, ...), with found zeroed first; 0.0
    // without a tag.
    double GetDimension(ads_name entity, double QelMemberRecord::*field, int* found);
    CString GetHandle0(ads_name entity);
    CString GetHandle1(ads_name entity);
    bool GetDimensions(ads_name entity, double& length, double& width, double& depth,
                       double& radius1, double& radius0, int& context, int& partIndex);
    bool GetHandwheel(ads_name entity, double& offset, double& radius, double& thickness);
    bool GetStem(ads_name entity, double& length, double& thickness);
    bool GetDirection(ads_name entity, double direction[3]);

    // The fields, in the order of the chain; a new record is all zero.
    CString filePath;
    CString groupName;
    int memberType = 0;
    int objectIndex = 0;
    int context = 0;
    int groupSerial = 0;
    int partIndex = 0;
    int miterCount = 0;
    int spare = 0;
    double majorRadius = 0.0;
    double minorRadius = 0.0;
    double length = 0.0;
    double width = 0.0;
    double depth = 0.0;
    double radius0 = 0.0;
    double radius1 = 0.0;
    double flangeThickness = 0.0;
    double webThickness = 0.0;
    double centroid = 0.0;
    AcDbHandle handle0;
    AcDbHandle handle1;
    double handwheelThickness = 0.0;
    double handwheelOffset = 0.0;
    double handwheelRadius = 0.0;
    double stemThickness = 0.0;
    double stemLength = 0.0;
    double direction[3] = {0.0, 0.0, 0.0};
};

// The group the export files the tagged entity under, 0 for none. A serial of 0 or below (one
// above 32767 reads back negative) names no group that will be written, so its object is listed
// under model space instead of nowhere.
inline unsigned QelExportGroupNumber(const QelMemberRecord& tag) {
    return tag.groupSerial > 0 ? static_cast<unsigned>(tag.groupSerial) : 0u;
}

// The chain of the tag as it is stored, for the caller to free with acutRelRb.
resbuf* QelMemberRecordChain(const QelMemberRecord& record);

// The highest group serial of any tagged entity in the drawing, stored in maxGroupNumber of the
// current document's record (0 for an empty drawing), so that new groups number after it.
int QelComputeMaxGroupNumber();
