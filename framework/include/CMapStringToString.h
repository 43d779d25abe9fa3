#pragma once
// The framework's hashed map from wide strings to wide strings.
#include "CMapStringToValue.h"

class CMapStringToString : public CMapStringToValue<CString, LPCTSTR> {
public:
    explicit CMapStringToString(INT_PTR nBlockSize = 10) : CMapStringToValue(nBlockSize) {}
};
