// The tag on an annotation text: the annotation's name and the type of its value, kept as the
// X-record "AnnotateRecord" (group 1 the name, group 90 the type) so that an export can turn
// the text back into an annotation of the same type.
#pragma once

#include <arx/arx.h>
#include <win/win.h>

inline constexpr const ACHAR* QEL_ANNOTATE_RECORD_KEY = L"AnnotateRecord";

class CAnnotateRecord {
public:
    CAnnotateRecord() = default;
    CAnnotateRecord(LPCWSTR name, int type) : name(name), type(type) {}
    virtual ~CAnnotateRecord() = default;

    // Tags the entity (closed or open for read: it is opened for write by its name). False
    // when the entity has no name in the drawing or the record could not be made.
    bool Store(AcDbEntity* entity);
    // Reads the tag back; false when there is none or its chain ends before the two items,
    // in which case what was read is kept.
    bool Load(ads_name entity);

    CString name;
    int type = 12; // the value's QelParamType: 6 int, 11 double, 12 string
};
