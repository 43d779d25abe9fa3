#pragma once
/// @file
/// The RC4 stream cipher.
#include <cstddef>

#include "KelBaseExport.h"

/// The state of the RC4 stream cipher: prepare_key runs the standard key schedule into a key state,
/// rc4 XORs the key stream onto a buffer in place and moves the state on, so enciphering and
/// deciphering are the same call and a stream can be processed in pieces.
///
/// RC4 is broken (its first bytes leak the key, and its biases show over long streams); it is
/// here for data that already uses it. The functions return false and leave everything
/// untouched for a null pointer (with a length) or an empty key. The schedule reads 256 key
/// bytes, repeating a shorter key, so bytes past the 256th do not count.
struct rc4_key {
    unsigned char state[256]; ///< The permutation of the byte values.
    unsigned char x;          ///< The first index into the permutation.
    unsigned char y;          ///< The second index into the permutation.
};

/// Runs the key schedule of `key_length` bytes into `key`.
KELBASE_API bool prepare_key(const unsigned char* key_data, std::size_t key_length, rc4_key* key);
/// XORs the key stream onto `buffer_length` bytes of `buffer` in place and moves `key` on.
KELBASE_API bool rc4(unsigned char* buffer, std::size_t buffer_length, rc4_key* key);
