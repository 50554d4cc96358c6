// AcArray: the host's growable array, index based, with logical length.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <vector>

template <class T>
class AcArray {
public:
    AcArray() = default;
    explicit AcArray(int physicalLength, int /*growLength*/ = 8) { items_.reserve(physicalLength); }
    AcArray(std::initializer_list<T> items) : items_(items) {}

    int length() const { return static_cast<int>(items_.size()); }
    int logicalLength() const { return length(); }
    bool isEmpty() const { return items_.empty(); }
    T& operator[](int i) { return items_[static_cast<size_t>(i)]; }
    const T& operator[](int i) const { return items_[static_cast<size_t>(i)]; }
    T& at(int i) { return items_.at(static_cast<size_t>(i)); }
    const T& at(int i) const { return items_.at(static_cast<size_t>(i)); }
    T& first() { return items_.front(); }
    T& last() { return items_.back(); }
    const T& first() const { return items_.front(); }
    const T& last() const { return items_.back(); }

    int append(const T& value) {
        items_.push_back(value);
        return length() - 1;
    }
    AcArray& append(const AcArray& other) {
        items_.insert(items_.end(), other.items_.begin(), other.items_.end());
        return *this;
    }
    AcArray& insertAt(int i, const T& value) {
        items_.insert(items_.begin() + i, value);
        return *this;
    }
    AcArray& removeAt(int i) {
        items_.erase(items_.begin() + i);
        return *this;
    }
    AcArray& removeLast() {
        items_.pop_back();
        return *this;
    }
    AcArray& removeAll() {
        items_.clear();
        return *this;
    }
    AcArray& setLogicalLength(int n) {
        items_.resize(static_cast<size_t>(n));
        return *this;
    }
    AcArray& setPhysicalLength(int n) {
        items_.reserve(static_cast<size_t>(n));
        return *this;
    }
    bool contains(const T& value, int start = 0) const { return find(value, start) >= 0; }
    int find(const T& value, int start = 0) const {
        for (int i = start; i < length(); ++i)
            if (items_[static_cast<size_t>(i)] == value) return i;
        return -1;
    }
    AcArray& reverse() {
        std::reverse(items_.begin(), items_.end());
        return *this;
    }
    const T* asArrayPtr() const { return items_.data(); }
    T* asArrayPtr() { return items_.data(); }

    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }
    bool operator==(const AcArray&) const = default;

private:
    std::vector<T> items_;
};

using AcDbVoidPtrArray = AcArray<void*>;
using AcDbIntArray = AcArray<int>;
using AcGeDoubleArray = AcArray<double>;
