#pragma once
// New text arrays for callers (released with the global ::operator delete) and the texts held
// by CharacterSetConversions::String.
#include <cstddef>
#include <limits>
#include <new>

#include "CharacterSetConversions.h"

namespace CharacterSetConversions {

// An array of `count` characters. The byte size saturates instead of wrapping, so an absurd
// count fails to allocate rather than yielding a short array.
template <class T> T* NewTextArray(size_t count) {
    const size_t limit = std::numeric_limits<size_t>::max();
    const size_t bytes = count > limit / sizeof(T) ? limit : count * sizeof(T);
    return static_cast<T*>(::operator new(bytes));
}

// The narrow or wide copy of `source`, null when nothing came out.
template <class... Source> char* NewMBCS(const Source&... source) {
    char* text = nullptr;
    size_t length;
    CopyToNewMBCS(text, length, source...);
    return text;
}

template <class... Source> wchar_t* NewWCS(const Source&... source) {
    wchar_t* text = nullptr;
    size_t length;
    CopyToNewWCS(text, length, source...);
    return text;
}

} // namespace CharacterSetConversions
