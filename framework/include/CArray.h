#pragma once
// The framework's growable array, the common body of CStringArray and CByteArray.
#include <stdexcept>
#include <vector>

#include "CObject.h"

// Indexes outside the array raise std::out_of_range (the framework raises an invalid-argument
// exception). Growth is left to std::vector, so SetSize ignores its growth step.
template <class TYPE, class ARG_TYPE = const TYPE&> class CArray : public CObject {
public:
    CArray() = default;

    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_data.size()); }
    INT_PTR GetCount() const { return GetSize(); }
    BOOL IsEmpty() const { return m_data.empty(); }
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    void SetSize(INT_PTR newSize, INT_PTR growBy = -1) {
        static_cast<void>(growBy);
        if (newSize < 0) {
            throw std::out_of_range("CArray::SetSize");
        }
        m_data.resize(static_cast<size_t>(newSize));
    }
    void RemoveAll() { m_data.clear(); }

    const TYPE& GetAt(INT_PTR index) const { return m_data.at(Checked(index)); }
    TYPE& GetAt(INT_PTR index) { return m_data.at(Checked(index)); }
    TYPE& ElementAt(INT_PTR index) { return GetAt(index); }
    void SetAt(INT_PTR index, ARG_TYPE element) { GetAt(index) = element; }
    const TYPE& operator[](INT_PTR index) const { return GetAt(index); }
    TYPE& operator[](INT_PTR index) { return GetAt(index); }
    const TYPE* GetData() const { return m_data.data(); }
    TYPE* GetData() { return m_data.data(); }

    // Grows the array as needed to hold the index.
    void SetAtGrow(INT_PTR index, ARG_TYPE element) {
        if (index >= GetSize()) {
            SetSize(index + 1);
        }
        SetAt(index, element);
    }
    INT_PTR Add(ARG_TYPE element) {
        m_data.push_back(element);
        return GetUpperBound();
    }
    INT_PTR Append(const CArray& other) {
        const INT_PTR first = GetSize();
        m_data.insert(m_data.end(), other.m_data.begin(), other.m_data.end());
        return first;
    }
    void Copy(const CArray& other) {
        if (this != &other) {
            m_data = other.m_data;
        }
    }

    // Inserting beyond the end first grows the array to the index, as the framework does.
    void InsertAt(INT_PTR index, ARG_TYPE element, INT_PTR count = 1) {
        if (index < 0 || count < 0) {
            throw std::out_of_range("CArray::InsertAt");
        }
        if (index > GetSize()) {
            SetSize(index);
        }
        m_data.insert(m_data.begin() + index, static_cast<size_t>(count), element);
    }
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
