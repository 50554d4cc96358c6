// Turns an object into its stored bytes. Small fields gather in one buffer; large arrays stay
// where they are and are written straight from the caller's memory.
#pragma once

#include <qel/qel.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace qel {

struct Piece {
    const unsigned char* data; // null: bytes [offset, offset + size) of the encoder's buffer
    std::size_t offset;
    std::size_t size;
};

class Encoder {
public:
    // Throws QelException (naming `what`) on an object nested too deep or a cycle.
    void encode(const QelObject& object, const std::string& what);

    std::uint64_t size() const { return m_size; }
    std::uint64_t checksum() const;
    // Calls sink(pointer, size) for each run of bytes in order.
    template <typename Sink>
    void forEach(Sink&& sink) const {
        for (const Piece& p : m_pieces)
            sink(p.data ? p.data : m_buffer.data() + p.offset, p.size);
    }

private:
    void object(const QelObject& object, unsigned depth, const std::string& what);
    void param(const QelParam& param, unsigned depth, const std::string& what);
    void bytes(const void* data, std::size_t size);
    void external(const void* data, std::size_t size);
    void u32(std::uint32_t v) { bytes(&v, 4); }
    void u64(std::uint64_t v) { bytes(&v, 8); }
    void text(const std::string& s);
    void pad();
    std::size_t reserve64();
    void patch64(std::size_t at, std::uint64_t v);

    std::vector<unsigned char> m_buffer;
    std::vector<Piece> m_pieces;
    std::uint64_t m_size = 0;
};

} // namespace qel
