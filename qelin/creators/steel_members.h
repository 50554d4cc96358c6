// What both forms of a steel member share: the six sections a member may have, and its two
// centre lines, along the middle of the section and along its bottom.
#pragma once

#include "creators/section_outlines.h"

#include <arx/arx.h>
#include <qel/qel.h>
#include <win/win.h>

struct QelMemberSection {
    const wchar_t* sectionType;
    int index; // the member's partIndex
    QelSectionOutline outline;
    bool hollow; // a tube: the inner outline's solid is taken away
    const wchar_t* notMade;
    const wchar_t* builderName; // in the message of a help entity that would not go
    bool bottomAtMiddle;        // the bottom line under the middle, else along the corner
    int bottomPart;             // the bottom line's partIndex
};

// The section of that name (compared whole and case-sensitive), or null.
const QelMemberSection* QelFindMemberSection(const CString& sectionType);
// The section of that index, or null.
const QelMemberSection* QelMemberSectionAt(int index);

// Where a centre line goes: the object's sizes and pose, its group and record origin.
struct QelMemberLines {
    QelObject* object;
    AcGeMatrix3d translation;
    AcGeMatrix3d rotation;
    unsigned objIndex;
    const CString* filePath;
    CString groupName;
};

// The visible line along the middle of the section, from (w/2, d/2, 0) to (w/2, d/2, l). 0, or
// the status of the failure.
int AddSectionCenterLine(const QelMemberLines& lines);
// The hidden line along the bottom by which export finds the member's insertion again; the
// section of the index chooses where. An index without a section reports and gives 1.
int AddBottomCenterLine(const QelMemberLines& lines, int index);
