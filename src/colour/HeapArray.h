// A block of plain values on the heap whose making may fail: it is then empty, and nothing is
// thrown. Moved, not copied.

#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

template <typename T> class HeapArray final
{
    static_assert(std::is_trivially_copyable_v<T>);

public:
    HeapArray() = default;
    HeapArray(HeapArray &&other) noexcept { swap(other); }
    HeapArray &operator=(HeapArray &&other) noexcept
    {
        HeapArray(std::move(other)).swap(*this);
        return *this;
    }

    // All values zero.
    static HeapArray zeroed(std::size_t count)
    {
        return HeapArray(count == 0 ? nullptr : new (std::nothrow) T[count](), count);
    }
    // Whatever was in memory before.
    static HeapArray uninitialized(std::size_t count)
    {
        return HeapArray(count == 0 ? nullptr : new (std::nothrow) T[count], count);
    }

    // Null when it is empty.
    T *data() { return _values.get(); }
    const T *data() const { return _values.get(); }
    std::size_t size() const { return _size; }
    bool isEmpty() const { return _size == 0; }

    T &operator[](std::size_t index) { return _values[index]; }
    const T &operator[](std::size_t index) const { return _values[index]; }
    T *begin() { return data(); }
    T *end() { return data() + _size; }
    const T *begin() const { return data(); }
    const T *end() const { return data() + _size; }

    // Forgets the values behind the first `count`; the block keeps its extent.
    void truncate(std::size_t count) { _size = count < _size ? count : _size; }
    void swap(HeapArray &other) noexcept
    {
        std::swap(_values, other._values);
        std::swap(_size, other._size);
    }

private:
    HeapArray(T *values, std::size_t count)
        : _values(values)
        , _size(values ? count : 0)
    { }

    std::unique_ptr<T[]> _values;
    std::size_t _size = 0;
};
