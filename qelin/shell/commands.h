// The module's command table: six commands of no arguments, registered in table order.
#pragma once

#include <arx/accmd.h>

#include <array>

struct QelCommandRow {
    const wchar_t* name;
    AcRxFunctionPtr function;
};

extern const std::array<QelCommandRow, 6> QelCommandTable;

// Adds every command of the table to the group, finding the command stack afresh for each.
void QelAddCommands();
// Removes the group from the command stack.
void QelRemoveCommands();
