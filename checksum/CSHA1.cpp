#include "CSHA1.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "MFile.h"
#include "Sha1Kernels.h"
#include "StdBase.h"

CSHA1::CSHA1() {
    Reset();
}

void CSHA1::Reset() {
    static const std::uint32_t initial[5] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476,
                                             0xC3D2E1F0};
    std::memcpy(m_state, initial, sizeof m_state);
    std::memset(m_buffer, 0, sizeof m_buffer);
    m_length = 0;
    m_bFinal = false;
}

bool CSHA1::Update(const void* data, std::size_t length) {
    if (m_bFinal || (!data && length))
        return false;
    const auto* bytes = static_cast<const unsigned char*>(data);
    const KelBase::Sha1::Compress compress = KelBase::Sha1::CompressBest();
    std::size_t held = m_length % BLOCK_SIZE;
    m_length += length;
    if (held) {
        const std::size_t take = std::min<std::size_t>(length, BLOCK_SIZE - held);
        std::memcpy(m_buffer + held, bytes, take);
        bytes += take;
        length -= take;
        held += take;
        if (held < BLOCK_SIZE)
            return true;
        compress(m_state, m_buffer, 1);
    }
    compress(m_state, bytes, length / BLOCK_SIZE);
    bytes += length / BLOCK_SIZE * BLOCK_SIZE;
    if (length % BLOCK_SIZE)
        std::memcpy(m_buffer, bytes, length % BLOCK_SIZE);
    return true;
}

bool CSHA1::HashFile(const wchar_t* path) {
    if (m_bFinal || !path)
        return false;
    MFile file;
    if (!file.OPEN_READ(path))
        return false;
    // The end is told from a failure by the size: a short read before it is an error.
    if (!file.SEEK_FROM_END())
        return false;
    long long remaining = file.TELL();
    if (remaining < 0 || !file.REWIND())
        return false;
    std::vector<unsigned char> buffer(1u << 20);
    while (remaining > 0) {
        const std::size_t want =
            static_cast<std::size_t>(std::min<long long>(remaining, buffer.size()));
        const std::size_t got = file.READ(buffer.data(), want);
        Update(buffer.data(), got);
        if (got != want)
            return false;
        remaining -= static_cast<long long>(got);
    }
    return true;
}

bool CSHA1::Final() {
    if (m_bFinal)
        return false;
    const std::uint64_t bits = m_length * 8;
    static const unsigned char padding[BLOCK_SIZE] = {0x80};
    const std::size_t held = m_length % BLOCK_SIZE;
    Update(padding, (held < 56 ? 56 : 120) - held);
    unsigned char length[8];
    for (int i = 0; i < 8; ++i)
        length[i] = static_cast<unsigned char>(bits >> (56 - 8 * i));
    Update(length, sizeof length);
    m_bFinal = true;
    return true;
}

bool CSHA1::GetHash(unsigned char* digest) const {
    if (!m_bFinal || !digest)
        return false;
    for (int i = 0; i < DIGEST_SIZE; ++i)
        digest[i] = static_cast<unsigned char>(m_state[i / 4] >> (24 - 8 * (i % 4)));
    return true;
}

std::wstring CSHA1::GetHashText() const {
    unsigned char digest[DIGEST_SIZE];
    return GetHash(digest) ? StdBase::ConvertBytesToHex(digest, sizeof digest) : std::wstring();
}
