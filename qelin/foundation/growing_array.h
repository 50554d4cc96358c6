// The plug-in's own arrays, in which every list that comes out of the file is kept: pointer,
// capacity, count and grow-by. On append a full array grows by the larger of grow-by and the
// count, the count capped at 16384 elements (65536 for bytes), copying into a new block.
#pragma once

#include <algorithm>
#include <cstring>
#include <type_traits>

template <typename T>
class QelArray {
    static_assert(std::is_trivially_copyable_v<T>, "elements are copied as bytes");

public:
    QelArray() = default;
    QelArray(const QelArray& other) { *this = other; }
    QelArray& operator=(const QelArray& other) {
        if (this == &other) return *this;
        T* copy = other.m_count ? new T[other.m_count] : nullptr;
        if (copy) std::memcpy(copy, other.m_data, sizeof(T) * other.m_count);
        delete[] m_data;
        m_data = copy;
        m_capacity = m_count = other.m_count;
        m_growBy = other.m_growBy;
        return *this;
    }
    ~QelArray() { delete[] m_data; }

    void Append(const T& value) { InsertAt(m_count, value); }
    // Shifts the tail up by one; an index past the end appends.
    void InsertAt(unsigned index, const T& value) {
        if (index > m_count) index = m_count;
        if (m_count == m_capacity) grow();
        std::memmove(m_data + index + 1, m_data + index, sizeof(T) * (m_count - index));
        m_data[index] = value;
        ++m_count;
    }
    void RemoveAll() { m_count = 0; }

    unsigned GetCount() const { return m_count; }
    unsigned GetCapacity() const { return m_capacity; }
    unsigned GetGrowBy() const { return m_growBy; }
    void SetGrowBy(unsigned growBy) { m_growBy = growBy; }
    T* GetData() { return m_data; }
    const T* GetData() const { return m_data; }
    T& operator[](unsigned i) { return m_data[i]; }
    const T& operator[](unsigned i) const { return m_data[i]; }

private:
    static constexpr unsigned kCap = sizeof(T) == 1 ? 65536u : 16384u;

    void grow() {
        const unsigned step = std::max(m_growBy, std::min(m_count, kCap));
        T* bigger = new T[m_capacity + step];
        if (m_count) std::memcpy(bigger, m_data, sizeof(T) * m_count);
        delete[] m_data;
        m_data = bigger;
        m_capacity += step;
    }

    T* m_data = nullptr;
    unsigned m_capacity = 0;
    unsigned m_count = 0;
    unsigned m_growBy = 8;
};
