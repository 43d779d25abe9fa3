#pragma once
// SHA-1 (FIPS 180-4) over blocks and files: Update feeds any number of bytes, Final pads the
// message and fixes the digest, which GetHash gives as 20 bytes and GetHashText as 40
// lower-case hexadecimal digits (the form sha1sum prints). Reset starts a new message. On
// x86-64 processors with the SHA extensions the blocks run on them.
//
// SHA-1 is broken for collision resistance; it is here to compute and check existing digests,
// not to protect anything new.
//
// Failures are results: feeding or finishing a message that is already final returns false
// and changes nothing, as does a null block with a length; GetHash before Final returns false
// and GetHashText an empty string.
#include <cstddef>
#include <cstdint>
#include <string>

#include "KelBaseExport.h"

class KELBASE_API CSHA1 {
public:
    enum { DIGEST_SIZE = 20, BLOCK_SIZE = 64 };

    CSHA1();
    void Reset();

    bool Update(const void* data, std::size_t length);
    // Feeds the whole file. False when it cannot be opened or read; after a read error the
    // message holds the bytes read before it, so Reset before using the object again.
    bool HashFile(const wchar_t* path);
    bool Final();

    bool IsFinal() const { return m_bFinal; }
    bool GetHash(unsigned char* digest) const;
    std::wstring GetHashText() const;

private:
    std::uint32_t m_state[5];
    std::uint64_t m_length = 0; // bytes fed so far
    unsigned char m_buffer[BLOCK_SIZE];
    bool m_bFinal = false;
};
