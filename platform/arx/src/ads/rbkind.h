// What a result buffer of a given type or group code holds.
#pragma once

enum class RbKind {
    kNone,
    kReal,
    kPoint,
    kShort,
    kLong,
    kInt64,
    kString,
    kName,
    kBinary,
    kInvalid
};

// Result types (RTSTR, RT3DPOINT, ...) and group codes alike.
RbKind acutRbKind(int type);
