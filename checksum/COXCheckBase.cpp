#include "COXCheckBase.h"

#include "CrcKernels.h"
#include "InitOrder.h"

static_assert(sizeof(COXCRC32::CTableList::Node::m_constants) / sizeof(std::uint64_t) ==
                  KelBase::Crc::ConstantCount,
              "a table node keeps every constant of the block loops");

namespace {

// Adds the bytes into the bits of `mask`; the bits above it keep what `start` had. A null
// block counts as empty.
DWORD AddBytes(DWORD& current, const void* data, DWORD length, DWORD start, DWORD mask) {
    std::uint32_t sum = start;
    if (data) {
        const unsigned char* bytes = static_cast<const unsigned char*>(data);
        for (DWORD i = 0; i < length; ++i)
            sum += bytes[i];
    }
    current = (start & ~mask) | (sum & mask);
    return sum & mask;
}

} // namespace

COXCheckBase::COXCheckBase(ESize size) : m_nCurrent(0xFFFFFFFF), m_eSize(size) {}

COXCheckBase::~COXCheckBase() = default;

DWORD COXCheckBase::CalculateBlock(void* data, DWORD length) {
    return CalculateBlock(data, length, m_nCurrent);
}

void COXCheckBase::Reset() {
    m_nCurrent = 0xFFFFFFFF;
}

COXCheckSum8::COXCheckSum8() : COXCheckBase(Size8Bit) {}

DWORD COXCheckSum8::CalculateBlock(void* data, DWORD length, DWORD start) {
    return AddBytes(m_nCurrent, data, length, start, 0xFF);
}

COXCheckSum16::COXCheckSum16() : COXCheckBase(Size16Bit) {}

DWORD COXCheckSum16::CalculateBlock(void* data, DWORD length, DWORD start) {
    return AddBytes(m_nCurrent, data, length, start, 0xFFFF);
}

COXCheckSum32::COXCheckSum32() : COXCheckBase(Size32Bit) {}

DWORD COXCheckSum32::CalculateBlock(void* data, DWORD length, DWORD start) {
    return AddBytes(m_nCurrent, data, length, start, 0xFFFFFFFF);
}

template <class T> COXCRCTableList<T>::~COXCRCTableList() {
    while (m_pHead) {
        Node* next = m_pHead->m_pNext;
        delete m_pHead;
        m_pHead = next;
    }
}

template <class T> const typename COXCRCTableList<T>::Node* COXCRCTableList<T>::Find(T polynomial) {
    std::lock_guard<std::mutex> guard(m_lock);
    Node* last = nullptr;
    for (Node* node = m_pHead; node; node = node->m_pNext) {
        if (node->m_polynomial == polynomial)
            return node;
        last = node;
    }
    Node* node = new Node;
    KelBase::Crc::BuildTables(polynomial, node->m_table, node->m_constants);
    node->m_polynomial = polynomial;
    node->m_pNext = nullptr;
    (last ? last->m_pNext : m_pHead) = node;
    return node;
}

template class COXCRCTableList<std::uint16_t>;
template class COXCRCTableList<std::uint32_t>;

KEL_INIT_CRC_TABLES COXCRC16::CTableList COXCRC16::m_tableList;
KEL_INIT_CRC_TABLES COXCRC32::CTableList COXCRC32::m_tableList;

COXCRC16::COXCRC16(unsigned short polynomial)
    : COXCheckBase(Size16Bit), m_pTable(m_tableList.Find(polynomial)) {}

DWORD COXCRC16::CalculateBlock(void* data, DWORD length, DWORD start) {
    const std::uint16_t crc = static_cast<std::uint16_t>(start);
    m_nCurrent = data ? KelBase::Crc::Crc16Dispatch.load(std::memory_order_relaxed)(
                            crc, static_cast<const unsigned char*>(data), length, m_pTable->m_table,
                            m_pTable->m_constants)
                      : crc;
    return m_nCurrent;
}

COXCRC32::COXCRC32(unsigned long polynomial)
    : COXCheckBase(Size32Bit), m_pTable(m_tableList.Find(static_cast<std::uint32_t>(polynomial))) {}

DWORD COXCRC32::CalculateBlock(void* data, DWORD length, DWORD start) {
    m_nCurrent = data ? KelBase::Crc::Crc32Dispatch.load(std::memory_order_relaxed)(
                            start, static_cast<const unsigned char*>(data), length,
                            m_pTable->m_table, m_pTable->m_constants)
                      : start;
    return m_nCurrent;
}
