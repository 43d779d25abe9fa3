#pragma once
/// @file
/// CRijndael, the Rijndael (AES) block cipher.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "KelBaseExport.h"

namespace KelBase {
namespace Rijndael {
struct Schedule;
}
} // namespace KelBase

/// The Rijndael block cipher with keys and blocks of 16, 24 or 32 bytes in every combination;
/// a 16-byte block is AES (FIPS-197). One object holds one key, its block size and a chain
/// block (the initialisation vector), and enciphers single blocks or whole buffers in the modes
/// ECB, CBC and CFB. CFB feeds back whole blocks (CFB-128 for AES): the chain block is
/// enciphered and XORed onto the data.
///
/// A buffer call continues the chain where the previous call of either direction left it, so a
/// long message can be fed in pieces; ResetChain goes back to the chain block given to MakeKey.
/// Buffers are whole blocks; `out` may be `in`, but must not overlap it otherwise.
///
/// Misuse is reported the library's way, by a false result and a stored error that GetError
/// and GetErrorText return until the next call that succeeds or fails: a cipher is often used
/// where exceptions may not cross (C callbacks, other modules' code). The texts are fixed:
/// "Object not Initialized", "Data not multiple of Block Size", "Empty key", "Incorrect key
/// length", "Incorrect block length", and for the two cases beyond them "Incorrect mode" and
/// "Null buffer".
///
/// The key and its round keys are wiped when the object gets a new key, is Reset or destroyed;
/// the object cannot be copied, so no copy of them is left behind. On x86-64 processors with
/// the AES instructions every block size runs on them; elsewhere a portable path computes the
/// S-box instead of looking it up, so its timing does not depend on the key or the data.
class KELBASE_API CRijndael {
public:
    /// The modes of Encrypt and Decrypt.
    enum EMode {
        ECB = 0, ///< Electronic code book: each block on its own.
        CBC = 1, ///< Cipher block chaining.
        CFB = 2, ///< Cipher feedback of whole blocks.
    };
    /// Sizes in bytes.
    enum {
        DEFAULT_BLOCK_SIZE = 16, ///< The block size and key length of AES-128.
        MAX_BLOCK_SIZE = 32,     ///< The largest block size.
    };
    /// The errors GetError reports.
    enum EError {
        NoError = 0,                ///< The last call succeeded.
        NotInitialized,             ///< No key was made.
        DataNotMultipleOfBlockSize, ///< A buffer length is not a multiple of the block size.
        EmptyKey,                   ///< MakeKey got a null key or a key length of 0.
        IncorrectKeyLength,         ///< A key length other than 16, 24 or 32.
        IncorrectBlockLength,       ///< A block size other than 16, 24 or 32.
        IncorrectMode,              ///< A mode that is not an EMode value.
        NullBuffer,                 ///< A null input or output with a length.
    };

    /// Not initialised: every cipher call fails with NotInitialized until MakeKey.
    CRijndael();
    /// Wipes the key.
    ~CRijndael();
    CRijndael(const CRijndael&) = delete;
    CRijndael& operator=(const CRijndael&) = delete;

    /// Takes a key of `keyLength` bytes and a block size, each 16, 24 or 32, and a chain block
    /// of `blockSize` bytes (null for zeros). On failure the object keeps no key: it is not
    /// initialised, whatever it held before.
    bool MakeKey(const void* key, const void* chain, int keyLength = DEFAULT_BLOCK_SIZE,
                 int blockSize = DEFAULT_BLOCK_SIZE);
    /// Wipes the key and returns to the state after construction.
    void Reset();
    /// Back to the chain block given to MakeKey.
    bool ResetChain();

    /// Enciphers or deciphers one block, without the chain.
    ///@{
    bool EncryptBlock(const void* in, void* out);
    bool DecryptBlock(const void* in, void* out);
    ///@}
    /// Enciphers or deciphers `length` bytes, a multiple of the block size (0 is allowed), in
    /// `mode`, continuing the chain.
    ///@{
    bool Encrypt(const void* in, void* out, std::size_t length, EMode mode = ECB);
    bool Decrypt(const void* in, void* out, std::size_t length, EMode mode = ECB);
    ///@}

    /// Whether a key was made.
    bool IsInitialized() const { return m_bKeyInit; }
    /// The key length and block size in bytes; 0 until a key is made.
    ///@{
    int GetKeyLength() const { return m_bKeyInit ? m_keyLength : 0; }
    int GetBlockSize() const { return m_bKeyInit ? m_blockSize : 0; }
    ///@}
    /// The number of rounds of the key and block size (10, 12 or 14); 0 until a key is made.
    int GetRounds() const;

    /// The error of the last call that succeeded or failed.
    EError GetError() const { return m_eError; }
    /// The text of GetError(); empty for NoError.
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
