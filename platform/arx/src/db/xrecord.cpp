#include "objectimpl.h"
#include "packedchain.h"
#include "rxdefine.h"

ACRX_DEFINE_MEMBERS(AcDbXrecord, AcDbObject, ACRX_T("XRECORD"))

Acad::ErrorStatus AcDbXrecord::rbChain(resbuf** chain, AcDbDatabase* /*auxDb*/) const {
    if (chain == nullptr) return Acad::eInvalidInput;
    if (!isReadEnabled()) return Acad::eNotOpenForRead;
    *chain = acdbUnpackChain(data_.get());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbXrecord::setFromRbChain(const resbuf& chain, AcDbDatabase* /*auxDb*/) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    for (const resbuf* rb = &chain; rb != nullptr; rb = rb->rbnext) {
        // Only group codes; an X-record has no handle of its own to carry.
        if (rb->restype < 0 || rb->restype >= 5000 || rb->restype == 5 || rb->restype == 105)
            return Acad::eInvalidResBuf;
    }
    // Packing refuses codes that hold no value.
    PackedChain packed;
    if (Acad::ErrorStatus es = acdbPackChain(&chain, packed); es != Acad::eOk) return es;
    data_ = std::move(packed);
    return Acad::eOk;
}
