// Result buffers and DXF items, one into the other.
#pragma once

#include "arx/dxfkind.h"

resbuf* acdbDxfToResbuf(const AcDbDxfItem& item);
AcDbDxfItem acdbDxfFromResbuf(const resbuf& rb);
