// Result buffers and DXF items, one into the other: declared with the kinds.
#pragma once

#include "arx/dxfkind.h"
