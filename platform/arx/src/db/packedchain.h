// Result-buffer chains packed into one compact block: how X-records and extended data are kept.
// An item is its group code, then its value; zero values and empty strings take no bytes.
#pragma once

#include <memory>

#include "arx/acadstrc.h"
#include "arx/adsdef.h"

using PackedChain = std::unique_ptr<unsigned char[]>;

// eInvalidResBuf when an item's type holds no value the block can keep.
Acad::ErrorStatus acdbPackChain(const resbuf* chain, PackedChain& packed);
// A new chain for the caller to free; null for an empty block.
resbuf* acdbUnpackChain(const unsigned char* packed);
