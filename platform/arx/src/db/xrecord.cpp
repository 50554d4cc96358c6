#include <cstdint>
#include <cstring>

#include "../dxf/fieldtable.h"
#include "../dxf/items.h"
#include "objectimpl.h"
#include "packedchain.h"
#include "rxdefine.h"

ACRX_DEFINE_MEMBERS(AcDbXrecord, AcDbObject, ACRX_T("XRECORD"))

namespace {

constexpr std::uintptr_t kShared = 1;
constexpr size_t kCountBytes = sizeof(std::uint32_t);

bool isShared(const unsigned char* data) {
    return reinterpret_cast<std::uintptr_t>(data) & kShared;
}

unsigned char* bytesOf(unsigned char* data) {
    return reinterpret_cast<unsigned char*>(reinterpret_cast<std::uintptr_t>(data) & ~kShared);
}

std::uint32_t& holders(unsigned char* shared) {
    return *reinterpret_cast<std::uint32_t*>(bytesOf(shared) - kCountBytes);
}

void release(unsigned char* data) {
    if (data == nullptr) return;
    if (!isShared(data))
        delete[] data;
    else if (--holders(data) == 0)
        ::operator delete(bytesOf(data) - kCountBytes);
}

// The packed block's size: its length, then the length's own bytes.
size_t sizeOf(const unsigned char* bytes) {
    const unsigned char* p = bytes;
    size_t size = 0;
    for (int shift = 0;; shift += 7) {
        const unsigned char b = *p++;
        size |= size_t(b & 0x7F) << shift;
        if (!(b & 0x80)) break;
    }
    return size + size_t(p - bytes);
}

// A block of one record's own as a shared one, with its one holder.
unsigned char* madeShared(unsigned char* own) {
    const size_t size = sizeOf(own);
    auto* block = static_cast<unsigned char*>(::operator new(kCountBytes + size));
    std::memcpy(block + kCountBytes, own, size);
    delete[] own;
    auto* shared = reinterpret_cast<unsigned char*>(
        reinterpret_cast<std::uintptr_t>(block + kCountBytes) | kShared);
    holders(shared) = 1;
    return shared;
}

} // namespace

AcDbXrecord::AcDbXrecord() {
    AcDbImpl::setFoldKind(this, AcDbImpl::kFoldRecord);
}

AcDbXrecord::AcDbXrecord(const AcDbXrecord& other) : AcDbObject(other) {
    AcDbImpl::setFoldKind(this, AcDbImpl::kFoldRecord);
    share(other);
}

AcDbXrecord::~AcDbXrecord() {
    release(data_);
}

const unsigned char* AcDbXrecord::bytes() const {
    return bytesOf(data_);
}

void AcDbXrecord::share(const AcDbXrecord& from) {
    if (from.data_ != nullptr && !isShared(from.data_)) from.data_ = madeShared(from.data_);
    if (from.data_ != nullptr) ++holders(from.data_);
    release(data_);
    data_ = from.data_;
}

Acad::ErrorStatus AcDbXrecord::rbChain(resbuf** chain, AcDbDatabase* /*auxDb*/) const {
    if (chain == nullptr) return Acad::eInvalidInput;
    if (!isReadEnabled()) return Acad::eNotOpenForRead;
    *chain = acdbUnpackChain(bytes());
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
    release(data_);
    data_ = packed.release();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbXrecord::copyFrom(const AcRxObject* other) {
    if (Acad::ErrorStatus es = assertWriteEnabled(); es != Acad::eOk) return es;
    const AcDbXrecord* from = AcDbXrecord::cast(other);
    if (from == nullptr) return Acad::eWrongObjectType;
    if (from == this) return Acad::eOk;
    share(*from);
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
