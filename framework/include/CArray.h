#pragma once
/// @file
/// The framework's growable array, the common body of CStringArray and CByteArray.
#include <stdexcept>
#include <vector>

#include "CObject.h"

/// A growable array of TYPE, passed in as ARG_TYPE.
///
/// Indexes outside the array raise std::out_of_range (the framework raises an invalid-argument
/// exception). Growth is left to std::vector, so SetSize ignores its growth step.
template <class TYPE, class ARG_TYPE = const TYPE&> class CArray : public CObject {
public:
    /// An empty array.
    CArray() = default;

    /// The number of elements.
    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_data.size()); }
    /// The number of elements, as GetSize.
    INT_PTR GetCount() const { return GetSize(); }
    /// TRUE when the array has no elements.
    BOOL IsEmpty() const { return m_data.empty(); }
    /// The last valid index, -1 for an empty array.
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    /// Grows (with default-constructed elements) or shrinks the array to `newSize` elements;
    /// `growBy` is ignored. A negative size raises std::out_of_range.
    void SetSize(INT_PTR newSize, INT_PTR growBy = -1) {
        static_cast<void>(growBy);
        if (newSize < 0) {
            throw std::out_of_range("CArray::SetSize");
        }
        m_data.resize(static_cast<size_t>(newSize));
    }
    /// Removes every element.
    void RemoveAll() { m_data.clear(); }

    /// The element at `index`; std::out_of_range outside the array.
    const TYPE& GetAt(INT_PTR index) const { return m_data.at(Checked(index)); }
    /// The element at `index`; std::out_of_range outside the array.
    TYPE& GetAt(INT_PTR index) { return m_data.at(Checked(index)); }
    /// The element at `index`, as GetAt.
    TYPE& ElementAt(INT_PTR index) { return GetAt(index); }
    /// Replaces the element at `index`; std::out_of_range outside the array.
    void SetAt(INT_PTR index, ARG_TYPE element) { GetAt(index) = element; }
    /// The element at `index`, as GetAt.
    const TYPE& operator[](INT_PTR index) const { return GetAt(index); }
    /// The element at `index`, as GetAt.
    TYPE& operator[](INT_PTR index) { return GetAt(index); }
    /// The elements as one contiguous block; valid until the size changes.
    const TYPE* GetData() const { return m_data.data(); }
    /// The elements as one contiguous block; valid until the size changes.
    TYPE* GetData() { return m_data.data(); }

    /// Sets the element at `index`, first growing the array as needed to hold the index.
    void SetAtGrow(INT_PTR index, ARG_TYPE element) {
        if (index >= GetSize()) {
            SetSize(index + 1);
        }
        SetAt(index, element);
    }
    /// Appends `element`; returns its index.
    INT_PTR Add(ARG_TYPE element) {
        m_data.push_back(element);
        return GetUpperBound();
    }
    /// Appends the elements of `other`; returns the index of the first one appended.
    INT_PTR Append(const CArray& other) {
        const INT_PTR first = GetSize();
        m_data.insert(m_data.end(), other.m_data.begin(), other.m_data.end());
        return first;
    }
    /// Makes this array a copy of `other`.
    void Copy(const CArray& other) {
        if (this != &other) {
            m_data = other.m_data;
        }
    }

    /// Inserts `count` copies of `element` at `index`. Inserting beyond the end first grows the
    /// array to the index, as the framework does; a negative index or count raises
    /// std::out_of_range.
    void InsertAt(INT_PTR index, ARG_TYPE element, INT_PTR count = 1) {
        if (index < 0 || count < 0) {
            throw std::out_of_range("CArray::InsertAt");
        }
        if (index > GetSize()) {
            SetSize(index);
        }
        m_data.insert(m_data.begin() + index, static_cast<size_t>(count), element);
    }
    /// Inserts the elements of `other` (which may be this array) at `startIndex`, growing the
    /// array first as above; a null `other` or a negative index raises std::out_of_range.
    void InsertAt(INT_PTR startIndex, const CArray* other) {
        if (other == nullptr || startIndex < 0) {
            throw std::out_of_range("CArray::InsertAt");
        }
        const std::vector<TYPE> inserted(other->m_data);
        if (startIndex > GetSize()) {
            SetSize(startIndex);
        }
        m_data.insert(m_data.begin() + startIndex, inserted.begin(), inserted.end());
    }
    /// Removes `count` elements from `index` on; a range not inside the array raises
    /// std::out_of_range and removes nothing.
    void RemoveAt(INT_PTR index, INT_PTR count = 1) {
        if (index < 0 || count < 0 || index + count > GetSize()) {
            throw std::out_of_range("CArray::RemoveAt");
        }
        m_data.erase(m_data.begin() + index, m_data.begin() + index + count);
    }

private:
    static size_t Checked(INT_PTR index) {
        if (index < 0) {
            throw std::out_of_range("CArray index");
        }
        return static_cast<size_t>(index);
    }

    std::vector<TYPE> m_data;
};
