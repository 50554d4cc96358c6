#include <cstdint>
#include <cstring>

#include "../dxf/fieldtable.h"
#include "../dxf/items.h"
#include "objectimpl.h"
#include "packedchain.h"
#include "rxdefine.h"

ACRX_DEFINE_MEMBERS(AcDbXrecord, AcDbObject, ACRX_T("XRECORD"))

namespace {

// A shared block: the count of its holders, then the packed data.
constexpr size_t kCountBytes = sizeof(std::uint32_t);

std::uint32_t& holders(unsigned char* data) {
    return *reinterpret_cast<std::uint32_t*>(data - kCountBytes);
}

unsigned char* sharedCopy(const PackedChain& packed) {
    if (packed == nullptr) return nullptr;
    const unsigned char* p = packed.get();
    size_t size = 0;
    for (int shift = 0;; shift += 7) { // the block's length, then the length's own bytes
        const unsigned char b = *p++;
        size |= size_t(b & 0x7F) << shift;
        if (!(b & 0x80)) break;
    }
    size += size_t(p - packed.get());
    auto* block = static_cast<unsigned char*>(::operator new(kCountBytes + size));
    std::memcpy(block + kCountBytes, packed.get(), size);
    unsigned char* data = block + kCountBytes;
    holders(data) = 1;
    return data;
}

} // namespace

AcDbXrecord::AcDbXrecord(const AcDbXrecord& other) : AcDbObject(other) {
    setData(other.data_);
}

AcDbXrecord::~AcDbXrecord() {
    setData(nullptr);
}

void AcDbXrecord::setData(unsigned char* shared) {
    if (shared != nullptr) ++holders(shared);
    if (data_ != nullptr && --holders(data_) == 0) ::operator delete(data_ - kCountBytes);
    data_ = shared;
}

Acad::ErrorStatus AcDbXrecord::rbChain(resbuf** chain, AcDbDatabase* /*auxDb*/) const {
    if (chain == nullptr) return Acad::eInvalidInput;
    if (!isReadEnabled()) return Acad::eNotOpenForRead;
    *chain = acdbUnpackChain(data_);
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
    unsigned char* data = sharedCopy(packed);
    setData(data);
    if (data != nullptr) --holders(data); // made with its one holder counted
    return Acad::eOk;
}

Acad::ErrorStatus AcDbXrecord::copyFrom(const AcRxObject* other) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    const AcDbXrecord* from = AcDbXrecord::cast(other);
    if (from == nullptr) return Acad::eWrongObjectType;
    if (from == this) return Acad::eOk;
    setData(from->data_);
    AcDbImpl::copyRecords(*from, *this);
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
