#pragma once
/// @file
/// The framework's hashed map from wide strings to wide strings.
#include "CMapStringToValue.h"

/// The framework's hashed map from wide strings to wide strings.
class CMapStringToString : public CMapStringToValue<CString, LPCTSTR> {
public:
    /// An empty map; see CMapStringToValue for `nBlockSize`.
    explicit CMapStringToString(INT_PTR nBlockSize = 10) : CMapStringToValue(nBlockSize) {}
};
