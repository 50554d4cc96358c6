// Object ids and handles.
#pragma once

#include <cstddef>

#include "arx/acarray.h"
#include "arx/adesk.h"

class AcDbStub;
class AcDbDatabase;
class AcRxClass;

// A database-unique 64-bit number, written as upper-case hexadecimal without leading zeros.
class AcDbHandle {
public:
    AcDbHandle() = default;
    AcDbHandle(Adesk::UInt64 value) : value_(value) {}
    AcDbHandle(int lo, int hi)
        : value_((Adesk::UInt64(Adesk::UInt32(hi)) << 32) | Adesk::UInt32(lo)) {}
    // From hexadecimal text; text that is no hexadecimal number gives the null handle.
    explicit AcDbHandle(const ACHAR* text) { *this = text; }
    AcDbHandle& operator=(const ACHAR* text);

    bool isNull() const { return value_ == 0; }
    void setNull() { value_ = 0; }
    Adesk::UInt32 low() const { return Adesk::UInt32(value_); }
    Adesk::UInt32 high() const { return Adesk::UInt32(value_ >> 32); }
    operator Adesk::UInt64() const { return value_; }
    AcDbHandle& operator++() {
        ++value_;
        return *this;
    }
    // "0" for the null handle. False when the buffer is too small for the text and its end.
    bool getIntoAsciiBuffer(ACHAR* buffer, size_t bufferLength) const;
    // For a buffer of at least 17 characters.
    void getIntoAsciiBuffer(ACHAR* buffer) const { getIntoAsciiBuffer(buffer, 17); }
    bool operator==(const AcDbHandle&) const = default;

private:
    Adesk::UInt64 value_ = 0;
};

class AcDbObjectId {
public:
    AcDbObjectId() = default;
    AcDbObjectId(AcDbStub* stub) : stub_(stub) {}
    static const AcDbObjectId kNull;

    bool isNull() const { return stub_ == nullptr; }
    void setNull() { stub_ = nullptr; }
    // Names an object that exists, erased or not.
    bool isValid() const;
    bool isErased() const;
    AcDbDatabase* database() const;
    AcDbHandle handle() const;
    // Class of the object, or null when it no longer exists.
    AcRxClass* objectClass() const;

    Adesk::IntPtr asOldId() const { return reinterpret_cast<Adesk::IntPtr>(stub_); }
    AcDbObjectId& setFromOldId(Adesk::IntPtr oldId) {
        stub_ = reinterpret_cast<AcDbStub*>(oldId);
        return *this;
    }
    operator AcDbStub*() const { return stub_; }
    bool operator==(const AcDbObjectId& o) const { return stub_ == o.stub_; }
    bool operator!=(const AcDbObjectId& o) const { return stub_ != o.stub_; }
    bool operator<(const AcDbObjectId& o) const { return stub_ < o.stub_; }

private:
    AcDbStub* stub_ = nullptr;
};

using AcDbObjectIdArray = AcArray<AcDbObjectId>;
