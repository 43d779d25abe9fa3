#pragma once
/// @file
/// The framework's hashed map from wide-string keys, the common body of CMapStringToPtr and
/// CMapStringToString.
#include <memory>
#include <vector>

#include "CObject.h"
#include "CString.h"

/// A hashed map from wide-string keys to VALUE, set from ARG_VALUE.
///
/// Keys are hashed and compared exactly. Associations are allocated nBlockSize at a time and
/// recycled through a free list; iteration walks the buckets in order. A null key stands for
/// the empty string.
template <class VALUE, class ARG_VALUE> class CMapStringToValue : public CObject {
public:
    /// An empty map. A block size below 1 falls back to the framework's default of 10.
    explicit CMapStringToValue(INT_PTR nBlockSize = 10)
        : m_nBlockSize(nBlockSize > 0 ? nBlockSize : 10) {}

    /// The number of entries.
    INT_PTR GetCount() const { return m_nCount; }
    /// The number of entries, as GetCount.
    INT_PTR GetSize() const { return m_nCount; }
    /// TRUE when the map has no entries.
    BOOL IsEmpty() const { return m_nCount == 0; }

    /// Copies the value of `key` to `rValue` and returns TRUE; FALSE (`rValue` untouched) when
    /// the key is not in the map.
    BOOL Lookup(LPCTSTR key, VALUE& rValue) const {
        UINT bucket = 0;
        UINT hash = 0;
        const CAssoc* assoc = GetAssocAt(key, bucket, hash);
        if (assoc == nullptr) {
            return FALSE;
        }
        rValue = assoc->value;
        return TRUE;
    }

    /// The value slot of the key, created with an empty value when the key is new.
    VALUE& operator[](LPCTSTR key) {
        UINT bucket = 0;
        UINT hash = 0;
        CAssoc* assoc = GetAssocAt(key, bucket, hash);
        if (assoc == nullptr) {
            if (m_table.empty()) {
                m_table.assign(m_nHashTableSize, nullptr);
            }
            assoc = NewAssoc();
            assoc->nHashValue = hash;
            assoc->key = key;
            assoc->pNext = m_table[bucket];
            m_table[bucket] = assoc;
        }
        return assoc->value;
    }
    /// Sets the value of `key`, adding the key when it is new.
    void SetAt(LPCTSTR key, ARG_VALUE newValue) { (*this)[key] = newValue; }

    /// Removes the entry of `key`; FALSE when there was none.
    BOOL RemoveKey(LPCTSTR key) {
        if (m_table.empty()) {
            return FALSE;
        }
        const UINT hash = HashKey(key);
        for (CAssoc** link = &m_table[hash % m_nHashTableSize]; *link != nullptr;
             link = &(*link)->pNext) {
            CAssoc* assoc = *link;
            if (assoc->nHashValue == hash && assoc->key == Text(key)) {
                *link = assoc->pNext;
                FreeAssoc(assoc);
                return TRUE;
            }
        }
        return FALSE;
    }

    /// Removes every entry and frees every association; the hash table size stays as it was
    /// set.
    void RemoveAll() {
        m_table.clear();
        m_blocks.clear();
        m_pFreeList = nullptr;
        m_nCount = 0;
    }

    /// The position before the first entry, for GetNextAssoc; null for an empty map.
    POSITION GetStartPosition() const { return m_nCount == 0 ? nullptr : BEFORE_START_POSITION; }

    /// Copies the entry at `rNextPosition` to `rKey` and `rValue` and advances the position; it
    /// becomes null after the last entry. A null position leaves everything unchanged. The map
    /// must not change during an iteration.
    void GetNextAssoc(POSITION& rNextPosition, CString& rKey, VALUE& rValue) const {
        CAssoc* assoc = reinterpret_cast<CAssoc*>(rNextPosition);
        if (assoc == nullptr) {
            return;
        }
        if (rNextPosition == BEFORE_START_POSITION) {
            assoc = FirstInBucketsFrom(0);
            if (assoc == nullptr) {
                rNextPosition = nullptr;
                return;
            }
        }
        CAssoc* next = assoc->pNext;
        if (next == nullptr) {
            next = FirstInBucketsFrom(assoc->nHashValue % m_nHashTableSize + 1);
        }
        rNextPosition = reinterpret_cast<POSITION>(next);
        rKey = assoc->key;
        rValue = assoc->value;
    }

    /// The number of buckets (17 unless set by InitHashTable).
    UINT GetHashTableSize() const { return m_nHashTableSize; }

    /// Sets the number of buckets to `hashSize`, allocating the table now with `bAllocNow`
    /// (else on the first insertion). A size of 0 is ignored. Existing entries are redistributed
    /// over the new table (the framework requires the map to be empty here).
    void InitHashTable(UINT hashSize, BOOL bAllocNow = TRUE) {
        if (hashSize == 0) {
            return;
        }
        std::vector<CAssoc*> old;
        old.swap(m_table);
        m_nHashTableSize = hashSize;
        if (bAllocNow || m_nCount != 0) {
            m_table.assign(hashSize, nullptr);
        }
        for (CAssoc* chain : old) {
            while (chain != nullptr) {
                CAssoc* next = chain->pNext;
                CAssoc*& head = m_table[chain->nHashValue % hashSize];
                chain->pNext = head;
                head = chain;
                chain = next;
            }
        }
    }

    /// The framework's string hash of `key` (hash * 33 + character, from 0).
    static UINT HashKey(LPCTSTR key) {
        UINT hash = 0;
        for (const wchar_t* p = Text(key); *p != 0; ++p) {
            hash = (hash << 5) + hash + static_cast<UINT>(*p);
        }
        return hash;
    }

private:
    struct CAssoc {
        CAssoc* pNext = nullptr;
        UINT nHashValue = 0;
        CString key;
        VALUE value{};
    };

    static const wchar_t* Text(LPCTSTR key) { return key != nullptr ? key : L""; }

    CAssoc* GetAssocAt(LPCTSTR key, UINT& bucket, UINT& hash) const {
        hash = HashKey(key);
        bucket = hash % m_nHashTableSize;
        if (m_table.empty()) {
            return nullptr;
        }
        for (CAssoc* assoc = m_table[bucket]; assoc != nullptr; assoc = assoc->pNext) {
            if (assoc->nHashValue == hash && assoc->key == Text(key)) {
                return assoc;
            }
        }
        return nullptr;
    }

    CAssoc* FirstInBucketsFrom(UINT bucket) const {
        for (; bucket < m_table.size(); ++bucket) {
            if (m_table[bucket] != nullptr) {
                return m_table[bucket];
            }
        }
        return nullptr;
    }

    CAssoc* NewAssoc() {
        if (m_pFreeList == nullptr) {
            m_blocks.emplace_back(new CAssoc[m_nBlockSize]);
            CAssoc* block = m_blocks.back().get();
            for (INT_PTR i = m_nBlockSize; i-- > 0;) {
                block[i].pNext = m_pFreeList;
                m_pFreeList = &block[i];
            }
        }
        CAssoc* assoc = m_pFreeList;
        m_pFreeList = assoc->pNext;
        assoc->pNext = nullptr;
        ++m_nCount;
        return assoc;
    }

    // Emptying the map releases all blocks, as the framework does.
    void FreeAssoc(CAssoc* assoc) {
        assoc->key.Empty();
        assoc->value = VALUE();
        assoc->pNext = m_pFreeList;
        m_pFreeList = assoc;
        if (--m_nCount == 0) {
            RemoveAll();
        }
    }

    std::vector<CAssoc*> m_table;
    UINT m_nHashTableSize = 17;
    INT_PTR m_nCount = 0;
    CAssoc* m_pFreeList = nullptr;
    std::vector<std::unique_ptr<CAssoc[]>> m_blocks;
    INT_PTR m_nBlockSize;
};
