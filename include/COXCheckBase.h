#pragma once
/// @file
/// Running checks over byte blocks and files: additive checksums of 8, 16 and 32 bits, a CRC of
/// 16 bits (most significant bit first) and a CRC of 32 bits (reflected), each CRC with the
/// polynomial chosen at construction. An object keeps the running value, so a long input can
/// be fed block by block or straight from a file.
///
/// CRC tables are built once per polynomial and kept for the life of the library in a list per
/// CRC class; objects only point at them. Looking up (and adding) a polynomial is guarded by a
/// lock, so first use from several threads is safe. Feeding one object from two threads is not.
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "AfxTypes.h"
#include "KelBaseExport.h"
#ifdef _WIN32
#include "CFile.h"
#include "CString.h"
#endif

/// The interface of the running checks: a running value fed by blocks or files.
class KELBASE_API COXCheckBase {
public:
    /// The width of the check.
    enum ESize {
        Size8Bit = 1,  ///< 8 bits.
        Size16Bit = 2, ///< 16 bits.
        Size32Bit = 3, ///< 32 bits.
    };

    /// A check of width `size`, its running value reset.
    explicit COXCheckBase(ESize size);
    virtual ~COXCheckBase();
    /// Copies take the running value, the width and the CRC table.
    ///@{
    COXCheckBase(const COXCheckBase&) = default;
    COXCheckBase(COXCheckBase&&) = default;
    COXCheckBase& operator=(const COXCheckBase&) = default;
    COXCheckBase& operator=(COXCheckBase&&) = default;
    ///@}

    /// Starts from `start`, processes `length` bytes and returns the result, which is also left
    /// in m_nCurrent (zero-extended for the narrow checks). With no bytes (or no data) the
    /// result is `start` cut to the check's width.
    virtual DWORD CalculateBlock(void* data, DWORD length, DWORD start) = 0;
    /// Continues from m_nCurrent.
    virtual DWORD CalculateBlock(void* data, DWORD length);
#ifdef _WIN32
    /// Continues from m_nCurrent over the whole file, read through a 2048-byte buffer, shared
    /// for readers and denying writers. A file that cannot be opened raises CFileException*
    /// with the cause, the system error and the file name; read errors of CFile propagate.
    virtual DWORD CalculateFile(CString path);
    /// Continues from m_nCurrent over up to `count` bytes from the file's current position,
    /// through one buffer of min(count, bufferSize) bytes, and returns m_nCurrent. Reading
    /// stops at a short read or when the next chunk would be shorter than the buffer: a
    /// remainder smaller than the buffer is never read (5000 bytes through 2048 check 4096).
    virtual DWORD CalculateFile(CFile* file, DWORD count, DWORD bufferSize);
#endif

    /// Sets the running value to 0xFFFFFFFF, its value after construction.
    void Reset();

    /// The running value. The 8- and 16-bit checksums change only its low byte or low half.
    DWORD m_nCurrent;
    /// Set by each constructor and kept for callers.
    ESize m_eSize;
};

/// The sum of the bytes modulo 2^8.
class KELBASE_API COXCheckSum8 : public COXCheckBase {
public:
    /// An 8-bit sum, its running value reset.
    COXCheckSum8();
    using COXCheckBase::CalculateBlock;
    DWORD CalculateBlock(void* data, DWORD length, DWORD start) override;
};

/// The sum of the bytes modulo 2^16.
class KELBASE_API COXCheckSum16 : public COXCheckBase {
public:
    /// A 16-bit sum, its running value reset.
    COXCheckSum16();
    using COXCheckBase::CalculateBlock;
    DWORD CalculateBlock(void* data, DWORD length, DWORD start) override;
};

/// The sum of the bytes modulo 2^32.
class KELBASE_API COXCheckSum32 : public COXCheckBase {
public:
    /// A 32-bit sum, its running value reset.
    COXCheckSum32();
    using COXCheckBase::CalculateBlock;
    DWORD CalculateBlock(void* data, DWORD length, DWORD start) override;
};

/// A process-wide chain of CRC tables, one node per polynomial, in the order of first use.
/// Nodes are appended at the tail and freed only when the list is destroyed at unload.
template <class T> class COXCRCTableList {
public:
    /// The tables of one polynomial.
    struct Node {
        /// m_table[0] is the byte table; m_table[1..7] carry it over further zero bytes, so
        /// that the block loop takes eight bytes per step.
        T m_table[8][256];
        /// Carry-less folding and reduction constants (powers of x modulo the polynomial, the
        /// quotient of a Barrett reduction) and the shift that joins the stripes of the
        /// eight-byte loop.
        std::uint64_t m_constants[21];
        T m_polynomial; ///< The polynomial the tables are built for.
        Node* m_pNext;  ///< The node of the next polynomial, or null.
    };

    COXCRCTableList() = default;
    ~COXCRCTableList();
    COXCRCTableList(const COXCRCTableList&) = delete;
    COXCRCTableList& operator=(const COXCRCTableList&) = delete;

    /// The node of `polynomial`, built and appended on its first use.
    const Node* Find(T polynomial);

    /// The number of polynomials cached.
    std::size_t GetCount() const {
        std::lock_guard<std::mutex> guard(m_lock);
        std::size_t count = 0;
        for (const Node* node = m_pHead; node; node = node->m_pNext)
            ++count;
        return count;
    }

private:
    Node* m_pHead = nullptr;
    mutable std::mutex m_lock;
};

/// CRC over 16 bits, most significant bit first, no reflection and no final XOR. From Reset
/// the register starts at 0xFFFF, so polynomial 0x1021 gives CRC-16/IBM-3740 ("123456789":
/// 0x29B1).
class KELBASE_API COXCRC16 : public COXCheckBase {
public:
    /// The table cache of the 16-bit CRCs.
    class CTableList : public COXCRCTableList<std::uint16_t> {};

    /// A CRC of `polynomial` (0x1021 for the common one), its running value reset.
    explicit COXCRC16(unsigned short polynomial);
    using COXCheckBase::CalculateBlock;
    DWORD CalculateBlock(void* data, DWORD length, DWORD start) override;

    /// The shared 256-entry table of this object's polynomial.
    const std::uint16_t* GetTable() const { return m_pTable->m_table[0]; }

    /// The tables of every 16-bit polynomial in use.
    static CTableList m_tableList;

protected:
    const CTableList::Node* m_pTable; ///< The tables of this object's polynomial.
};

/// CRC over 32 bits, least significant bit first, polynomial in reflected form, no final XOR.
/// From Reset the register starts at 0xFFFFFFFF and is not inverted at the end, so polynomial
/// 0xEDB88320 gives the complement of the common CRC-32 ("123456789": 0x340BC6D9, the
/// complement of 0xCBF43926); callers that want the common value invert the result.
class KELBASE_API COXCRC32 : public COXCheckBase {
public:
    /// The table cache of the 32-bit CRCs.
    class CTableList : public COXCRCTableList<std::uint32_t> {};

    /// A CRC of the reflected `polynomial` (0xEDB88320 for the common one), its running value
    /// reset. Only the low 32 bits of the polynomial count.
    explicit COXCRC32(unsigned long polynomial);
    using COXCheckBase::CalculateBlock;
    DWORD CalculateBlock(void* data, DWORD length, DWORD start) override;

    /// The shared 256-entry table of this object's polynomial.
    const std::uint32_t* GetTable() const { return m_pTable->m_table[0]; }

    /// The tables of every 32-bit polynomial in use.
    static CTableList m_tableList;

protected:
    const CTableList::Node* m_pTable; ///< The tables of this object's polynomial.
};
