#pragma once
/// @file
/// Growable byte buffers that reallocate in steps of 1024 bytes and keep their block while a new
/// content fits with at most 1024 bytes to spare, so buffers refilled per record or per tag do
/// not reallocate each time.
#include <cstddef>
#include <memory>

#include "KelBaseExport.h"

/// The storage of a blob buffer.
///
/// Owns the storage. The capacity is 0 or a multiple of 1024, at least the size (a new block
/// always has room to spare; a block reused for exactly its own size has none); the data is
/// null exactly when the capacity is 0.
class KELBASE_API MBlobImpl {
public:
    /// An empty blob without storage.
    MBlobImpl() = default;
    // A blob owns its block; copies would need a policy nobody asked for.
    MBlobImpl(const MBlobImpl&) = delete;
    MBlobImpl& operator=(const MBlobImpl&) = delete;

    /// The content; null when there is no storage.
    unsigned char* GetData() const { return m_data.get(); }
    /// The size of the content in bytes.
    unsigned long long GetSize() const { return m_size; }
    /// The size of the block in bytes: 0 or a multiple of 1024.
    unsigned long long GetCapacity() const { return m_capacity; }

protected:
    /// Releases the storage (data null, capacity 0); the size is left as it was.
    void _Free();
    /// Sizes the buffer for `size` bytes: 0 releases everything; a size that fits the block
    /// with at most 1024 bytes to spare reuses it; otherwise a new block of (size with its low
    /// ten bits cleared) + 1024 bytes replaces the old one, which is released first unless
    /// `keep` asks to carry its content (up to the new size) over. A size no block can have
    /// throws std::bad_alloc and leaves the buffer as it was. Returns the data.
    unsigned char* _Resize(unsigned long long size, bool keep);
    /// Hands the block over to the caller and leaves the buffer without storage.
    std::unique_ptr<unsigned char[]> _Detach();

private:
    unsigned long long m_capacity = 0;
    std::unique_ptr<unsigned char[]> m_data;
    unsigned long long m_size = 0;
};

/// A byte buffer refilled with a copy of each new content.
class KELBASE_API MBlobBuffer : public MBlobImpl {
public:
    /// Makes the buffer hold a copy of `count` bytes from `source`, which may lie inside the
    /// buffer's own block. Returns the data (null when `count` is 0).
    unsigned char* Create(const void* source, size_t count);

protected:
    /// Sizes the buffer for `count` bytes, or for the old size plus `count` when `append` is
    /// non-zero (summed in signed 32-bit arithmetic), keeping the old content when `keep` is
    /// non-zero. Returns the data.
    unsigned char* __Create_with_threshold(int count, int keep, int append);
};
