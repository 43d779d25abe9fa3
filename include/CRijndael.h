#pragma once
// The Rijndael block cipher with keys and blocks of 16, 24 or 32 bytes in every combination;
// a 16-byte block is AES (FIPS-197). One object holds one key, its block size and a chain
// block (the initialisation vector), and enciphers single blocks or whole buffers in the modes
// ECB, CBC and CFB. CFB feeds back whole blocks (CFB-128 for AES): the chain block is
// enciphered and XORed onto the data.
//
// A buffer call continues the chain where the previous call of either direction left it, so a
// long message can be fed in pieces; ResetChain goes back to the chain block given to MakeKey.
// Buffers are whole blocks; `out` may be `in`, but must not overlap it otherwise.
//
// Misuse is reported the library's way, by a false result and a stored error that GetError
// and GetErrorText return until the next call that succeeds or fails: a cipher is often used
// where exceptions may not cross (C callbacks, other modules' code). The texts are fixed:
// "Object not Initialized", "Data not multiple of Block Size", "Empty key", "Incorrect key
// length", "Incorrect block length", and for the two cases beyond them "Incorrect mode" and
// "Null buffer".
//
// The key and its round keys are wiped when the object gets a new key, is Reset or destroyed;
// the object cannot be copied, so no copy of them is left behind. On x86-64 processors with
// the AES instructions every block size runs on them; elsewhere a portable path computes the
// S-box instead of looking it up, so its timing does not depend on the key or the data.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "KelBaseExport.h"

namespace KelBase {
namespace Rijndael {
struct Schedule;
}
} // namespace KelBase

class KELBASE_API CRijndael {
public:
    enum EMode { ECB = 0, CBC = 1, CFB = 2 };
    enum { DEFAULT_BLOCK_SIZE = 16, MAX_BLOCK_SIZE = 32 };
    enum EError {
        NoError = 0,
        NotInitialized,
        DataNotMultipleOfBlockSize,
        EmptyKey,
        IncorrectKeyLength,
        IncorrectBlockLength,
        IncorrectMode,
        NullBuffer,
    };

    CRijndael();
    ~CRijndael();
    CRijndael(const CRijndael&) = delete;
    CRijndael& operator=(const CRijndael&) = delete;

    // Takes a key of `keyLength` bytes and a block size, each 16, 24 or 32, and a chain block
    // of `blockSize` bytes (null for zeros). On failure the object keeps no key: it is not
    // initialised, whatever it held before.
    bool MakeKey(const void* key, const void* chain, int keyLength = DEFAULT_BLOCK_SIZE,
                 int blockSize = DEFAULT_BLOCK_SIZE);
    // Wipes the key and returns to the state after construction.
    void Reset();
    // Back to the chain block given to MakeKey.
    bool ResetChain();

    // One block, without the chain.
    bool EncryptBlock(const void* in, void* out);
    bool DecryptBlock(const void* in, void* out);
    // `length` bytes, a multiple of the block size (0 is allowed).
    bool Encrypt(const void* in, void* out, std::size_t length, EMode mode = ECB);
    bool Decrypt(const void* in, void* out, std::size_t length, EMode mode = ECB);

    bool IsInitialized() const { return m_bKeyInit; }
    // 0 until a key is made.
    int GetKeyLength() const { return m_bKeyInit ? m_keyLength : 0; }
    int GetBlockSize() const { return m_bKeyInit ? m_blockSize : 0; }
    int GetRounds() const;

    EError GetError() const { return m_eError; }
    // The text of GetError(); empty for NoError.
    const char* GetErrorText() const;

private:
    bool Fail(EError error);
    bool Run(bool encrypting, const void* in, void* out, std::size_t length, EMode mode);

    std::unique_ptr<KelBase::Rijndael::Schedule> m_pSchedule;
    unsigned char m_chain0[MAX_BLOCK_SIZE];
    unsigned char m_chain[MAX_BLOCK_SIZE];
    int m_keyLength = 0;
    int m_blockSize = 0;
    bool m_bKeyInit = false;
    EError m_eError = NoError;
};
