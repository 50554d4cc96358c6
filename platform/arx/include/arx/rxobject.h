// Run-time classes: every host object knows its class, and casts check it.
#pragma once

#include "arx/adesk.h"

class AcRxObject;

class AcRxClass {
public:
    AcRxClass(const ACHAR* name, AcRxClass* parent, const ACHAR* dxfName = nullptr)
        : name_(name), dxfName_(dxfName), parent_(parent) {}
    const ACHAR* name() const { return name_; }
    const ACHAR* dxfName() const { return dxfName_; }
    AcRxClass* myParent() const { return parent_; }
    bool isDerivedFrom(const AcRxClass* other) const;

private:
    const ACHAR* name_;
    const ACHAR* dxfName_;
    AcRxClass* parent_;
};

#define ACRX_DECLARE_MEMBERS(CLASS)                                                                \
    static AcRxClass* desc();                                                                      \
    static CLASS* cast(const AcRxObject* object) {                                                 \
        return object && object->isKindOf(CLASS::desc())                                           \
                   ? static_cast<CLASS*>(const_cast<AcRxObject*>(object))                          \
                   : nullptr;                                                                      \
    }                                                                                              \
    AcRxClass* isA() const override

class AcRxObject {
public:
    virtual ~AcRxObject() = default;
    static AcRxClass* desc();
    static AcRxObject* cast(const AcRxObject* object) { return const_cast<AcRxObject*>(object); }
    virtual AcRxClass* isA() const;
    // A new copy; null for classes that are not copied.
    virtual AcRxObject* clone() const { return nullptr; }
    bool isKindOf(const AcRxClass* cls) const { return isA()->isDerivedFrom(cls); }
};
