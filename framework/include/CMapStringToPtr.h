#pragma once
/// @file
/// The framework's hashed map from wide strings to untyped pointers.
#include "CMapStringToValue.h"

/// The framework's hashed map from wide strings to untyped pointers, which it does not own.
class CMapStringToPtr : public CMapStringToValue<void*, void*> {
public:
    /// An empty map; see CMapStringToValue for `nBlockSize`.
    explicit CMapStringToPtr(INT_PTR nBlockSize = 10) : CMapStringToValue(nBlockSize) {}
};
