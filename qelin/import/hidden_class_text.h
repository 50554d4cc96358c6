// The text "hiddenClasses" of a file's view, turned into the numbers of the hidden-class table.
#pragma once

#include "foundation/growing_array.h"

// Empties numbers, then appends the number of each comma-ended name the table knows. Text after
// the last comma is never looked at: a list that doesn't end with a comma loses its last name,
// as files and users have met it.
void QelParseHiddenClasses(const char* text, QelArray<unsigned>& numbers);
