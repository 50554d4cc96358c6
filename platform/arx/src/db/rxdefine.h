#pragma once

#include "arx/rxobject.h"

#define ACRX_DEFINE_MEMBERS(CLASS, PARENT, DXFNAME)                                                \
    AcRxClass* CLASS::desc() {                                                                     \
        static AcRxClass cls(ACRX_T(#CLASS), PARENT::desc(), DXFNAME);                             \
        return &cls;                                                                               \
    }                                                                                              \
    AcRxClass* CLASS::isA() const {                                                                \
        return desc();                                                                             \
    }
