// A file mapped into memory for reading. Objects read from the file keep the mapping alive for
// as long as their arrays point into it, so closing the reader never pulls data from under them.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace qel {

class Mapping {
public:
    // Throws QelException naming the path when the file can't be opened or mapped.
    static std::shared_ptr<Mapping> open(const std::string& path);
    ~Mapping();

    // The mapping is private: writes through it never reach the file.
    unsigned char* data() const { return m_data; }
    std::size_t size() const { return m_size; }

    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;

private:
    Mapping(unsigned char* data, std::size_t size) : m_data(data), m_size(size) {}
    unsigned char* m_data;
    std::size_t m_size;
};

} // namespace qel
