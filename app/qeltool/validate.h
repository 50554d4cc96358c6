// Checks a file as the importer walks it: every object readable, the Header leading to the
// ModelSpace, its layer manager, layers and object lists, and every reference in range.
#pragma once

#include <qel/qel.h>

#include <string>
#include <vector>

namespace qeltool {

struct Finding {
    int object; // the object the problem was found in, or -1 for the file
    std::string text;
};

std::vector<Finding> validate(QelReader& reader);

} // namespace qeltool
