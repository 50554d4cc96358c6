// Names of the param types as texts name them ("double", "uint[]", ...), for tools and messages.
#pragma once

#include <qel/qel.h>

// "unknown" for a number that is not a param type.
const char* QelTypeName(QelParamType type);
// QelUnknownType for a name that is not a param type.
QelParamType QelTypeFromName(const char* name);
// Element size in bytes of an array type; 0 for scalars and unknown numbers.
unsigned QelArrayElementSize(QelParamType type);
