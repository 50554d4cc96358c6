// Debian's libocct-foundation-dev 7.6.3 ships Poly_ArrayOfNodes.hxx and Poly_ArrayOfUVNodes.hxx,
// which include this header, but not the header itself. The class is a plain strided byte array;
// this is our own version with the layout and interface those two headers and the inline
// accessors of Poly_Triangulation rely on (data pointer, stride, size, ownership flag, in that
// order). CMake adds this folder only when the installed kernel lacks the header.
#ifndef _NCollection_AliasedArray_HeaderFile
#define _NCollection_AliasedArray_HeaderFile

#include <Standard.hxx>
#include <Standard_Boolean.hxx>
#include <Standard_DefineAlloc.hxx>
#include <Standard_Integer.hxx>
#include <Standard_OutOfMemory.hxx>
#include <Standard_OutOfRange.hxx>
#include <Standard_RangeError.hxx>
#include <Standard_TypeMismatch.hxx>

#include <cstring>
#include <utility>

template <int MyAlignSize = 16>
class NCollection_AliasedArray {
public:
    DEFINE_STANDARD_ALLOC

    explicit NCollection_AliasedArray(Standard_Integer theStride)
        : myData(nullptr), myStride(theStride), mySize(0), myDeletable(false) {
        if (theStride <= 0)
            throw Standard_RangeError("NCollection_AliasedArray, stride should be positive");
    }

    NCollection_AliasedArray(Standard_Integer theStride, Standard_Integer theLength)
        : myData(nullptr), myStride(theStride), mySize(theLength), myDeletable(true) {
        if (theLength <= 0 || myStride <= 0)
            throw Standard_RangeError(
                "NCollection_AliasedArray, stride and length should be positive");
        myData = static_cast<Standard_Byte*>(Standard::AllocateAligned(SizeBytes(), MyAlignSize));
        if (myData == nullptr)
            throw Standard_OutOfMemory("NCollection_AliasedArray, allocation failed");
    }

    NCollection_AliasedArray(const NCollection_AliasedArray& theOther)
        : myData(nullptr), myStride(theOther.myStride), mySize(theOther.mySize),
          myDeletable(false) {
        if (mySize != 0) {
            myDeletable = true;
            myData =
                static_cast<Standard_Byte*>(Standard::AllocateAligned(SizeBytes(), MyAlignSize));
            if (myData == nullptr)
                throw Standard_OutOfMemory("NCollection_AliasedArray, allocation failed");
            Assign(theOther);
        }
    }

    NCollection_AliasedArray(NCollection_AliasedArray&& theOther) noexcept
        : myData(theOther.myData), myStride(theOther.myStride), mySize(theOther.mySize),
          myDeletable(theOther.myDeletable) {
        theOther.myDeletable = false;
    }

    // Wraps a caller's C array without copying it.
    template <typename Type_t>
    NCollection_AliasedArray(const Type_t& theBegin, const Standard_Integer theLength)
        : myData(reinterpret_cast<Standard_Byte*>(const_cast<Type_t*>(&theBegin))),
          myStride(static_cast<int>(sizeof(Type_t))), mySize(theLength), myDeletable(false) {
        if (theLength <= 0)
            throw Standard_RangeError("NCollection_AliasedArray, length should be positive");
    }

    ~NCollection_AliasedArray() {
        if (myDeletable) Standard::FreeAligned(myData);
    }

    Standard_Integer Stride() const { return myStride; }
    Standard_Integer Size() const { return mySize; }
    Standard_Integer Length() const { return mySize; }
    Standard_Boolean IsEmpty() const { return mySize == 0; }
    Standard_Integer Lower() const { return 0; }
    Standard_Integer Upper() const { return mySize - 1; }
    Standard_Boolean IsDeletable() const { return myDeletable; }
    Standard_Boolean IsAllocated() const { return myDeletable; }
    Standard_Size SizeBytes() const { return size_t(myStride) * size_t(mySize); }

    NCollection_AliasedArray& Assign(const NCollection_AliasedArray& theOther) {
        if (&theOther == this) return *this;
        if (myStride != theOther.myStride || mySize != theOther.mySize)
            throw Standard_TypeMismatch(
                "NCollection_AliasedArray::Assign(), arrays have different size");
        if (myData != nullptr) std::memcpy(myData, theOther.myData, SizeBytes());
        return *this;
    }

    NCollection_AliasedArray& Move(NCollection_AliasedArray& theOther) {
        if (&theOther == this) return *this;
        if (myDeletable) Standard::FreeAligned(myData);
        myStride = theOther.myStride;
        mySize = theOther.mySize;
        myDeletable = theOther.myDeletable;
        myData = theOther.myData;
        theOther.myDeletable = false;
        return *this;
    }

    NCollection_AliasedArray& operator=(const NCollection_AliasedArray& theOther) {
        return Assign(theOther);
    }
    NCollection_AliasedArray& operator=(NCollection_AliasedArray&& theOther) {
        return Move(theOther);
    }

    void Resize(Standard_Integer theLength, Standard_Boolean theToCopyData) {
        if (theLength <= 0)
            throw Standard_RangeError(
                "NCollection_AliasedArray::Resize, length should be positive");
        if (mySize == theLength) return;
        const Standard_Integer anOldLen = mySize;
        const Standard_Byte* anOldData = myData;
        mySize = theLength;
        if (!theToCopyData && myDeletable) Standard::FreeAligned(myData);
        myData = static_cast<Standard_Byte*>(Standard::AllocateAligned(SizeBytes(), MyAlignSize));
        if (myData == nullptr)
            throw Standard_OutOfMemory("NCollection_AliasedArray, allocation failed");
        if (!theToCopyData) {
            myDeletable = true;
            return;
        }
        const size_t aLenCopy = size_t(Min(anOldLen, theLength)) * size_t(myStride);
        std::memcpy(myData, anOldData, aLenCopy);
        if (myDeletable) Standard::FreeAligned(const_cast<Standard_Byte*>(anOldData));
        myDeletable = true;
    }

    const Standard_Byte* value(Standard_Integer theIndex) const {
        Standard_OutOfRange_Raise_if(theIndex < 0 || theIndex >= mySize,
                                     "NCollection_AliasedArray::value(), out of range index");
        return myData + size_t(myStride) * size_t(theIndex);
    }
    Standard_Byte* changeValue(Standard_Integer theIndex) {
        Standard_OutOfRange_Raise_if(theIndex < 0 || theIndex >= mySize,
                                     "NCollection_AliasedArray::changeValue(), out of range index");
        return myData + size_t(myStride) * size_t(theIndex);
    }

    template <typename Type_t>
    void Init(const Type_t& theValue) {
        for (Standard_Integer anIter = 0; anIter < mySize; ++anIter)
            ChangeValue<Type_t>(anIter) = theValue;
    }
    template <typename Type_t>
    const Type_t& Value(Standard_Integer theIndex) const {
        return *reinterpret_cast<const Type_t*>(value(theIndex));
    }
    template <typename Type_t>
    void Value(Standard_Integer theIndex, Type_t& theValue) const {
        theValue = *reinterpret_cast<const Type_t*>(value(theIndex));
    }
    template <typename Type_t>
    Type_t& ChangeValue(Standard_Integer theIndex) {
        return *reinterpret_cast<Type_t*>(changeValue(theIndex));
    }
    template <typename Type_t>
    const Type_t& First() const {
        return Value<Type_t>(0);
    }
    template <typename Type_t>
    Type_t& ChangeFirst() {
        return ChangeValue<Type_t>(0);
    }
    template <typename Type_t>
    const Type_t& Last() const {
        return Value<Type_t>(mySize - 1);
    }
    template <typename Type_t>
    Type_t& ChangeLast() {
        return ChangeValue<Type_t>(mySize - 1);
    }

protected:
    Standard_Byte* myData;
    Standard_Integer myStride;
    Standard_Integer mySize;
    Standard_Boolean myDeletable;
};

#endif
