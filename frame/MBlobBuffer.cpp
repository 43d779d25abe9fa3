#include "MBlobBuffer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <new>

namespace {

constexpr unsigned long long kStep = 1024;

// Even a size that is already a multiple of the step gets a full step of head-room.
unsigned long long BlockSizeFor(unsigned long long size) {
    // No block can be larger than the address space's signed half. Failing here for such a
    // size (a negative count widened) keeps the rounding from wrapping round to a tiny block
    // and lets the caller see an allocation failure before the buffer changes.
    if (size > static_cast<unsigned long long>(std::numeric_limits<std::ptrdiff_t>::max()) - kStep)
        throw std::bad_alloc();
    return (size & ~(kStep - 1)) + kStep;
}

} // namespace

void MBlobImpl::_Free() {
    m_data.reset();
    m_capacity = 0;
}

std::unique_ptr<unsigned char[]> MBlobImpl::_Detach() {
    m_capacity = 0;
    return std::move(m_data);
}

unsigned char* MBlobImpl::_Resize(unsigned long long size, bool keep) {
    if (size == 0) {
        m_size = 0;
        _Free();
        return nullptr;
    }
    // A block is reused even for exactly its own size (no spare byte left): the rule is "fits
    // with at most 1024 to spare", and only a new block gets a full step of head-room.
    if (size <= m_capacity && m_capacity - size <= kStep) {
        m_size = size;
        return m_data.get();
    }
    const unsigned long long capacity = BlockSizeFor(size);
    if (!keep) {
        // Nothing to carry over: give the memory back before asking for more.
        m_size = 0;
        _Free();
    }
    std::unique_ptr<unsigned char[]> block(new unsigned char[capacity]);
    if (m_data)
        std::memcpy(block.get(), m_data.get(), std::min(m_size, size));
    m_data = std::move(block);
    m_capacity = capacity;
    m_size = size;
    return m_data.get();
}

unsigned char* MBlobBuffer::Create(const void* source, size_t count) {
    if (count == 0)
        return _Resize(0, false);
    const auto* bytes = static_cast<const unsigned char*>(source);
    unsigned char* data = GetData();
    // The source may be (part of) our own block: copy it into a fresh block before the old
    // one goes.
    std::unique_ptr<unsigned char[]> old;
    if (data && std::less_equal<const unsigned char*>()(data, bytes) &&
        std::less_equal<const unsigned char*>()(bytes, data + GetCapacity())) {
        if (bytes == data && count == GetSize())
            return data;
        old = _Detach();
    }
    unsigned char* target = _Resize(count, false);
    std::memcpy(target, bytes, count);
    return target;
}

unsigned char* MBlobBuffer::__Create_with_threshold(int count, int keep, int append) {
    // The sum wraps like the signed 32-bit arithmetic of the callers' sizes. A negative result
    // widens to a size no block can have, so it throws std::bad_alloc like any allocation that
    // cannot be satisfied, instead of rounding to a tiny block.
    const int32_t wanted =
        append
            ? static_cast<int32_t>(static_cast<uint32_t>(count) + static_cast<uint32_t>(GetSize()))
            : count;
    const auto size = static_cast<unsigned long long>(static_cast<long long>(wanted));
    return _Resize(size, keep != 0);
}
