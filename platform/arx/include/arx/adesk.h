// Basic integer, boolean and character types of the host interface.
#pragma once

#include <cstddef>
#include <cstdint>

struct Adesk {
    using Int8 = std::int8_t;
    using Int16 = std::int16_t;
    using Int32 = std::int32_t;
    using Int64 = std::int64_t;
    using UInt8 = std::uint8_t;
    using UInt16 = std::uint16_t;
    using UInt32 = std::uint32_t;
    using UInt64 = std::uint64_t;
    using IntPtr = std::intptr_t;
    using Boolean = bool;
    static constexpr bool kFalse = false;
    static constexpr bool kTrue = true;
};

// The host speaks wide strings throughout.
using ACHAR = wchar_t;
#ifndef ACRX_T
#define ACRX_T(x) L##x
#endif
