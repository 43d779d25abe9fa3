#include "RC4.h"

#include <utility>

bool prepare_key(const unsigned char* key_data, std::size_t key_length, rc4_key* key) {
    if (!key_data || !key_length || !key)
        return false;
    for (int i = 0; i < 256; ++i)
        key->state[i] = static_cast<unsigned char>(i);
    unsigned char j = 0;
    for (std::size_t i = 0; i < 256; ++i) {
        j = static_cast<unsigned char>(j + key->state[i] + key_data[i % key_length]);
        std::swap(key->state[i], key->state[j]);
    }
    key->x = key->y = 0;
    return true;
}

bool rc4(unsigned char* buffer, std::size_t buffer_length, rc4_key* key) {
    if (!key || (!buffer && buffer_length))
        return false;
    unsigned char x = key->x, y = key->y;
    unsigned char* state = key->state;
    for (std::size_t i = 0; i < buffer_length; ++i) {
        x = static_cast<unsigned char>(x + 1);
        y = static_cast<unsigned char>(y + state[x]);
        std::swap(state[x], state[y]);
        buffer[i] ^= state[static_cast<unsigned char>(state[x] + state[y])];
    }
    key->x = x;
    key->y = y;
    return true;
}
