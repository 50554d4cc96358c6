// The byte layout of a QEL file. docs/qel-format.md is the prose form of this file.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qel::format {

inline constexpr unsigned char kMagic[8] = {'Q', 'E', 'L', 'F', 0x0D, 0x0A, 0x1A, 0x0A};
inline constexpr std::uint32_t kVersion = 1;
inline constexpr std::uint32_t kFlagComplete = 1u;

inline constexpr std::size_t kAlign = 8;
inline constexpr std::size_t kHeaderSize = 64;
inline constexpr std::size_t kIndexEntrySize = 24;
// Nested objects deeper than this are refused on both sides.
inline constexpr unsigned kMaxDepth = 64;
// Names and class names are short texts; anything longer is damage.
inline constexpr std::uint32_t kMaxNameLength = 4096;

// Offsets of the header fields. The directory runs from its offset to the end of the file.
namespace header {
inline constexpr std::size_t magic = 0;
inline constexpr std::size_t version = 8;
inline constexpr std::size_t flags = 12;
inline constexpr std::size_t objectCount = 16;
inline constexpr std::size_t classCount = 20;
inline constexpr std::size_t indexOffset = 24;
inline constexpr std::size_t directoryOffset = 32;
inline constexpr std::size_t fileSize = 40;
inline constexpr std::size_t tableChecksum = 48;  // of the index and directory bytes
inline constexpr std::size_t headerChecksum = 56; // of header bytes [0, 56)
} // namespace header

constexpr std::uint64_t alignUp(std::uint64_t n) {
    return (n + kAlign - 1) & ~std::uint64_t(kAlign - 1);
}

} // namespace qel::format
