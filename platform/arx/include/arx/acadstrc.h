// Status codes returned by database and geometry calls, and their text.
#pragma once

#include "arx/adesk.h"

// One line a code; the value is what callers compare and what the status text names.
#define ACAD_ERROR_STATUS_LIST(X)                                                                  \
    X(eOk, 0)                                                                                      \
    X(eNotImplementedYet, 1)                                                                       \
    X(eNotApplicable, 2)                                                                           \
    X(eInvalidInput, 3)                                                                            \
    X(eAmbiguousInput, 4)                                                                          \
    X(eAmbiguousOutput, 5)                                                                         \
    X(eOutOfMemory, 6)                                                                             \
    X(eBufferTooSmall, 7)                                                                          \
    X(eInvalidOpenState, 8)                                                                        \
    X(eEntityInInactiveLayout, 9)                                                                  \
    X(eHandleExists, 10)                                                                           \
    X(eNullHandle, 11)                                                                             \
    X(eBrokenHandle, 12)                                                                           \
    X(eUnknownHandle, 13)                                                                          \
    X(eHandleInUse, 14)                                                                            \
    X(eNullObjectPointer, 15)                                                                      \
    X(eNullObjectId, 16)                                                                           \
    X(eNullBlockName, 17)                                                                          \
    X(eContainerNotEmpty, 18)                                                                      \
    X(eNullEntityPointer, 20)                                                                      \
    X(eIllegalEntityType, 21)                                                                      \
    X(eKeyNotFound, 22)                                                                            \
    X(eDuplicateKey, 23)                                                                           \
    X(eInvalidIndex, 24)                                                                           \
    X(eDuplicateIndex, 25)                                                                         \
    X(eAlreadyInDb, 26)                                                                            \
    X(eOutOfDisk, 27)                                                                              \
    X(eDeletedEntry, 28)                                                                           \
    X(eNegativeValueNotAllowed, 29)                                                                \
    X(eInvalidExtents, 30)                                                                         \
    X(eInvalidAdsName, 31)                                                                         \
    X(eInvalidSymbolTableName, 32)                                                                 \
    X(eInvalidKey, 33)                                                                             \
    X(eWrongObjectType, 34)                                                                        \
    X(eWrongDatabase, 35)                                                                          \
    X(eObjectToBeDeleted, 36)                                                                      \
    X(eInvalidDwgVersion, 37)                                                                      \
    X(eAnonymousEntry, 38)                                                                         \
    X(eIllegalReplacement, 39)                                                                     \
    X(eEndOfObject, 40)                                                                            \
    X(eEndOfFile, 41)                                                                              \
    X(eIsReading, 42)                                                                              \
    X(eIsWriting, 43)                                                                              \
    X(eNotOpenForRead, 44)                                                                         \
    X(eNotOpenForWrite, 45)                                                                        \
    X(eNotThatKindOfClass, 46)                                                                     \
    X(eInvalidBlockName, 47)                                                                       \
    X(eMissingDxfField, 48)                                                                        \
    X(eDuplicateDxfField, 49)                                                                      \
    X(eInvalidDxfCode, 50)                                                                         \
    X(eInvalidResBuf, 51)                                                                          \
    X(eBadDxfSequence, 52)                                                                         \
    X(eFilerError, 53)                                                                             \
    X(eVertexAfterFace, 54)                                                                        \
    X(eInvalidFaceVertexIndex, 55)                                                                 \
    X(eInvalidMeshVertexIndex, 56)                                                                 \
    X(eOtherObjectsBusy, 57)                                                                       \
    X(eMustFirstAddBlockToDb, 58)                                                                  \
    X(eCannotNestBlockDefs, 59)                                                                    \
    X(eWasErased, 80)                                                                              \
    X(ePermanentlyErased, 81)                                                                      \
    X(eWasOpenForRead, 82)                                                                         \
    X(eWasOpenForWrite, 83)                                                                        \
    X(eWasOpenForUndo, 84)                                                                         \
    X(eWasNotifying, 85)                                                                           \
    X(eWasOpenForNotify, 86)                                                                       \
    X(eOnLockedLayer, 87)                                                                          \
    X(eMustOpenThruOwner, 88)                                                                      \
    X(eSubentitiesStillOpen, 89)                                                                   \
    X(eAtMaxReaders, 90)                                                                           \
    X(eIsWriteProtected, 91)                                                                       \
    X(eIsXRefObject, 92)                                                                           \
    X(eNotAnEntity, 93)                                                                            \
    X(eHadMultipleReaders, 94)                                                                     \
    X(eDuplicateRecordName, 95)                                                                    \
    X(eXRefDependent, 96)                                                                          \
    X(eSelfReference, 97)                                                                          \
    X(eMissingSymbolTable, 98)                                                                     \
    X(eMissingSymbolTableRec, 99)                                                                  \
    X(eWasNotOpenForWrite, 100)                                                                    \
    X(eCloseWasNotifying, 101)                                                                     \
    X(eCannotBeErasedByCaller, 105)                                                                \
    X(eCannotBeResurrected, 106)                                                                   \
    X(eWasNotErased, 107)                                                                          \
    X(eNotInDatabase, 120)                                                                         \
    X(eNoDatabase, 119)                                                                            \
    X(eNotInGroup, 121)                                                                            \
    X(eAlreadyInGroup, 122)                                                                        \
    X(eRegappIdNotFound, 130)                                                                      \
    X(eXdataSizeExceeded, 131)                                                                     \
    X(eDegenerateGeometry, 140)                                                                    \
    X(eInvalidPlineVertex, 141)                                                                    \
    X(eNotApplicableToEmpty, 142)                                                                  \
    X(eCannotExplodeEntity, 143)                                                                   \
    X(eCannotScaleNonUniformly, 144)                                                               \
    X(eNonCoplanarGeometry, 145)                                                                   \
    X(eNonPlanarEntity, 146)                                                                       \
    X(eOpenLoop, 147)                                                                              \
    X(eSelfIntersecting, 148)                                                                      \
    X(eNegativeCoordinates, 149)                                                                   \
    X(eGeneralModelingFailure, 150)                                                                \
    X(eFileAccessErr, 151)

struct Acad {
    enum ErrorStatus : int {
#define ACAD_ERROR_STATUS_ENUM(name, value) name = value,
        ACAD_ERROR_STATUS_LIST(ACAD_ERROR_STATUS_ENUM)
#undef ACAD_ERROR_STATUS_ENUM
    };
};

// The name of a status code ("eOk", "eWasErased", ...); "Unknown error status" for a value
// that is no code.
const ACHAR* acadErrorStatusText(Acad::ErrorStatus status);
