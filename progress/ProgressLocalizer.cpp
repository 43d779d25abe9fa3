#include "ProgressLocalizer.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "ProgressLocalizerTable.h"

namespace KelBase {

namespace {

using ProgressLocalizerTable::entries;
constexpr size_t entryCount = sizeof entries / sizeof entries[0];

// A key is hashed eight bytes at a time, as little-endian words: loaded as such at run time,
// assembled byte by byte while the table is built at compile time.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "both paths must hash alike");

constexpr uint64_t Word(const char* bytes, size_t count) {
    uint64_t word = 0;
    if (__builtin_is_constant_evaluated()) {
        for (size_t i = 0; i < count; ++i)
            word |= static_cast<uint64_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    } else {
        std::memcpy(&word, bytes, count);
    }
    return word;
}

constexpr uint64_t Mix(uint64_t hash, uint64_t word) {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15ull;
    return hash ^ (hash >> 29);
}

constexpr uint64_t Hash(std::string_view key, uint64_t seed) {
    uint64_t hash = seed ^ key.size();
    size_t i = 0;
    for (; i + 8 <= key.size(); i += 8)
        hash = Mix(hash, Word(key.data() + i, 8));
    return Mix(hash, Word(key.data() + i, key.size() - i));
}

// A perfect hash: the seed is chosen when the library is compiled so that every key has a slot
// of its own, and a lookup costs one pass over the key and at most one comparison. Slot value
// n > 0 is entry n - 1; 0 is no key.
constexpr unsigned slotBits = 12;
constexpr size_t slotCount = size_t(1) << slotBits;
static_assert(entryCount < 256, "a slot holds one byte");

constexpr size_t Slot(std::string_view key, uint64_t seed) {
    return static_cast<size_t>(Hash(key, seed) >> (64 - slotBits));
}

struct Slots {
    uint64_t seed;
    uint8_t entry[slotCount];
};

// The first seed without two keys in one slot; seed 0 when none of the tries has one.
constexpr Slots BuildSlots() {
    for (uint64_t seed = 1; seed <= 1000; ++seed) {
        Slots slots{seed, {}};
        bool distinct = true;
        for (size_t i = 0; i < entryCount && distinct; ++i) {
            uint8_t& slot = slots.entry[Slot(entries[i].key, seed)];
            distinct = slot == 0;
            slot = static_cast<uint8_t>(i + 1);
        }
        if (distinct)
            return slots;
    }
    return Slots{0, {}};
}

constexpr Slots slots = BuildSlots();
// A key listed twice would share a slot with its twin for every seed, so this also proves the
// keys unique: the first match in table order is the only one.
static_assert(slots.seed != 0, "no seed gives every key its own slot: widen the table");

} // namespace

std::wstring ProgressLocalizer::Localize(const std::string& key) {
    const std::string_view wanted(key);
    const uint8_t slot = slots.entry[Slot(wanted, slots.seed)];
    if (slot == 0 || entries[slot - 1].key != wanted)
        return std::wstring();
    return std::wstring(entries[slot - 1].message);
}

} // namespace KelBase
