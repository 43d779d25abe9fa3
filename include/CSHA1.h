#pragma once
/// @file
/// CSHA1, the SHA-1 message digest.
#include <cstddef>
#include <cstdint>
#include <string>

#include "KelBaseExport.h"

/// SHA-1 (FIPS 180-4) over blocks and files: Update feeds any number of bytes, Final pads the
/// message and fixes the digest, which GetHash gives as 20 bytes and GetHashText as 40
/// lower-case hexadecimal digits (the form sha1sum prints). Reset starts a new message. On
/// x86-64 processors with the SHA extensions the blocks run on them.
///
/// SHA-1 is broken for collision resistance; it is here to compute and check existing digests,
/// not to protect anything new.
///
/// Failures are results: feeding or finishing a message that is already final returns false
/// and changes nothing, as does a null block with a length; GetHash before Final returns false
/// and GetHashText an empty string.
class KELBASE_API CSHA1 {
public:
    /// Sizes in bytes.
    enum {
        DIGEST_SIZE = 20, ///< The digest.
        BLOCK_SIZE = 64,  ///< A block of the compression function.
    };

    /// An empty message.
    CSHA1();
    /// Starts a new, empty message.
    void Reset();

    /// Feeds `length` bytes; false for a final message or a null block with a length.
    bool Update(const void* data, std::size_t length);
    /// Feeds the whole file. False when it cannot be opened or read; after a read error the
    /// message holds the bytes read before it, so Reset before using the object again.
    bool HashFile(const wchar_t* path);
    /// Pads the message and fixes the digest; false when it is final already.
    bool Final();

    /// Whether Final ran since the last Reset.
    bool IsFinal() const { return m_bFinal; }
    /// Copies the 20-byte digest to `digest`; false before Final or for a null pointer.
    bool GetHash(unsigned char* digest) const;
    /// The digest as 40 lower-case hexadecimal digits; empty before Final.
    std::wstring GetHashText() const;

private:
    std::uint32_t m_state[5];
    std::uint64_t m_length = 0; ///< bytes fed so far
    unsigned char m_buffer[BLOCK_SIZE];
    bool m_bFinal = false;
};
