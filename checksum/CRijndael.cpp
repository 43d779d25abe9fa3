#include "CRijndael.h"

#include <cstring>

#include "RijndaelKernels.h"
#include "StdBase.h"

using KelBase::Rijndael::Kernel;

namespace {

bool IsSize(int bytes) {
    return bytes == 16 || bytes == 24 || bytes == 32;
}

} // namespace

CRijndael::CRijndael() : m_pSchedule(new KelBase::Rijndael::Schedule) {
    std::memset(m_chain0, 0, sizeof m_chain0);
    std::memset(m_chain, 0, sizeof m_chain);
}

CRijndael::~CRijndael() {
    Reset();
}

void CRijndael::Reset() {
    StdBase::SecureZero(m_pSchedule.get(), sizeof *m_pSchedule);
    StdBase::SecureZero(m_chain0, sizeof m_chain0);
    StdBase::SecureZero(m_chain, sizeof m_chain);
    m_keyLength = m_blockSize = 0;
    m_bKeyInit = false;
    m_eError = NoError;
}

bool CRijndael::Fail(EError error) {
    m_eError = error;
    return false;
}

bool CRijndael::MakeKey(const void* key, const void* chain, int keyLength, int blockSize) {
    Reset();
    if (!key || keyLength == 0)
        return Fail(EmptyKey);
    if (!IsSize(keyLength))
        return Fail(IncorrectKeyLength);
    if (!IsSize(blockSize))
        return Fail(IncorrectBlockLength);
    KelBase::Rijndael::Expand(static_cast<const std::uint8_t*>(key), keyLength, blockSize,
                              *m_pSchedule);
    if (chain)
        std::memcpy(m_chain0, chain, blockSize);
    std::memcpy(m_chain, m_chain0, sizeof m_chain);
    m_keyLength = keyLength;
    m_blockSize = blockSize;
    m_bKeyInit = true;
    return true;
}

bool CRijndael::ResetChain() {
    if (!m_bKeyInit)
        return Fail(NotInitialized);
    std::memcpy(m_chain, m_chain0, sizeof m_chain);
    m_eError = NoError;
    return true;
}

int CRijndael::GetRounds() const {
    return m_bKeyInit ? m_pSchedule->rounds : 0;
}

const char* CRijndael::GetErrorText() const {
    switch (m_eError) {
    case NoError:
        return "";
    case NotInitialized:
        return "Object not Initialized";
    case DataNotMultipleOfBlockSize:
        return "Data not multiple of Block Size";
    case EmptyKey:
        return "Empty key";
    case IncorrectKeyLength:
        return "Incorrect key length";
    case IncorrectBlockLength:
        return "Incorrect block length";
    case IncorrectMode:
        return "Incorrect mode";
    case NullBuffer:
        return "Null buffer";
    }
    return "";
}

bool CRijndael::Run(bool encrypting, const void* in, void* out, std::size_t length, EMode mode) {
    if (!m_bKeyInit)
        return Fail(NotInitialized);
    if (mode != ECB && mode != CBC && mode != CFB)
        return Fail(IncorrectMode);
    if (length % m_blockSize)
        return Fail(DataNotMultipleOfBlockSize);
    if (length && (!in || !out))
        return Fail(NullBuffer);
    m_eError = NoError;
    const Kernel& kernel = KelBase::Rijndael::Best(m_blockSize);
    const auto* from = static_cast<const std::uint8_t*>(in);
    auto* to = static_cast<std::uint8_t*>(out);
    const std::size_t blocks = length / m_blockSize;
    if (mode == ECB)
        (encrypting ? kernel.ecbEncrypt : kernel.ecbDecrypt)(*m_pSchedule, from, to, blocks);
    else if (mode == CBC)
        (encrypting ? kernel.cbcEncrypt : kernel.cbcDecrypt)(*m_pSchedule, m_chain, from, to,
                                                             blocks);
    else
        (encrypting ? kernel.cfbEncrypt : kernel.cfbDecrypt)(*m_pSchedule, m_chain, from, to,
                                                             blocks);
    return true;
}

bool CRijndael::EncryptBlock(const void* in, void* out) {
    return Run(true, in, out, m_bKeyInit ? m_blockSize : 0, ECB);
}

bool CRijndael::DecryptBlock(const void* in, void* out) {
    return Run(false, in, out, m_bKeyInit ? m_blockSize : 0, ECB);
}

bool CRijndael::Encrypt(const void* in, void* out, std::size_t length, EMode mode) {
    return Run(true, in, out, length, mode);
}

bool CRijndael::Decrypt(const void* in, void* out, std::size_t length, EMode mode) {
    return Run(false, in, out, length, mode);
}
