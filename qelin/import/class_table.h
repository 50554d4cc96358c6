// What the import knows of each class of the file and each kind of entity it tags, in one table
// (class_table.cpp): the dispatcher finds creators in it, the hidden-class text its numbers, and
// the creators their group, key, object-type code and extended data text.
//
// Adding a creator: declare it with QEL_CREATOR (creators/creator.h) in the header of its family,
// include that header in class_table.cpp and put its name in its class's row.
// A class or kind that has no row yet gets one; the table's test then checks that it fits.
#pragma once

#include "creators/creator.h"
#include "objectfile/type_codes.h"

#include <arx/arx.h>

#include <span>

// The dispatcher's rows, 0 to 30. A row and an object-type code are two numberings: see the
// table.
inline constexpr int QelDispatchRowCount = 31;
inline constexpr int QelNotDispatched = -1;

struct QelClassRow {
    int code;               // object-type code (QelCode), QelCode::NoCode for none
    const char* codeName;   // the code's name; null without a code
    const char* className;  // the class in the file; null for a kind that is no class there
    int dispatchRow;        // the dispatcher's row, QelNotDispatched for none
    QelCreator creator;     // null when not dispatched
    bool hideable;          // the view's "hiddenClasses" may name its code, by codeName
    const ACHAR* groupName; // the anonymous group's description; null for no group of its own
    const ACHAR* groupKey;  // its key in the group dictionary
    const ACHAR* xdata;     // the (first) extended data text; null for none
};

// Every row.
std::span<const QelClassRow> QelClassRows();
// The row of an object-type code. Every code a creator tags with has one (the table's test
// walks them); any other code gets an empty row with code NoCode.
const QelClassRow& QelClassOf(int code);
// The row the dispatcher keeps at that number, or null out of range.
const QelClassRow* QelDispatchRow(int row);

// The number of a name of the view's "hiddenClasses" text (compared without regard to case):
// the object-type code. False for a name that names no hideable code.
bool QelHiddenClassNumber(const char* name, unsigned& number);

// The creator of the classes that are known and make nothing.
QEL_CREATOR(QelCreateNothing);
// The creator of the classes whose creator this build doesn't have.
