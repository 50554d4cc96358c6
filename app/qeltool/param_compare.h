// The param by param comparison of two paired objects, for the model comparison.
#pragma once

#include "model_diff.h"

#include <qel/qel.h>

#include <string>
#include <vector>

namespace qeltool {

// What the comparison of params needs to know of the two files as wholes.
struct FilePairing {
    std::vector<int> aToB, bToA;               // partner of each object, -1 for none
    std::vector<std::string> classA, classB;   // class of each object
    std::vector<std::string> layersA, layersB; // layer names in "layerList" order
};

// The differences between two objects of the same class; nested objects param by param.
std::vector<ParamChange> compareObjects(QelObject& a, QelObject& b, double tolerance,
                                        const FilePairing& pairing);

// The reference numbers a uint or uint[] param holds; empty for any other type.
std::vector<unsigned> referenceNumbers(QelParam& param);

} // namespace qeltool
