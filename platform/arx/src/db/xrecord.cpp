#include "../dxf/fieldtable.h"
#include "../dxf/items.h"
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

// The record's data follow its marker group by group, whatever their codes.
namespace {
void writeCloning(const AcDbDxfField& f, const AcDbObject&, AcDbDxfItems& out) {
    out.push_back(AcDbDxfItem::ofInt(f.code, 1));
}
bool readCloning(const AcDbDxfField&, AcDbObject&, const AcDbDxfItem&) {
    return true;
}
void writeData(const AcDbDxfField&, const AcDbObject& o, AcDbDxfItems& out) {
    resbuf* chain = acdbUnpackChain(AcDbImpl::xrecordData(static_cast<const AcDbXrecord&>(o)));
    for (const resbuf* rb = chain; rb != nullptr; rb = rb->rbnext)
        out.push_back(acdbDxfFromResbuf(*rb));
    acutRelRb(chain);
}
bool readData(const AcDbDxfField&, AcDbObject& o, const AcDbDxfItem& item) {
    auto& record = static_cast<AcDbXrecord&>(o);
    resbuf* chain = acdbUnpackChain(AcDbImpl::xrecordData(record));
    resbuf** link = &chain;
    while (*link != nullptr)
        link = &(*link)->rbnext;
    *link = acdbDxfToResbuf(item);
    const Acad::ErrorStatus es = record.setFromRbChain(*chain);
    acutRelRb(chain);
    return es == Acad::eOk;
}
constexpr AcDbDxfField dataField() {
    AcDbDxfField f = dxf::custom(-9999, writeData, readData);
    f.flags = AcDbDxfField::kRest;
    return f;
}
const AcDbDxfField kFields[] = {
    dxf::marker(ACRX_T("AcDbXrecord")),
    dxf::custom(280, writeCloning, readCloning),
    dataField(),
};
} // namespace
ACDB_DXF_KIND(AcDbXrecord, "XRECORD", kFields)
