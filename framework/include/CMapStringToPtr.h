#pragma once
// The framework's hashed map from wide strings to untyped pointers.
#include "CMapStringToValue.h"

class CMapStringToPtr : public CMapStringToValue<void*, void*> {
public:
    explicit CMapStringToPtr(INT_PTR nBlockSize = 10) : CMapStringToValue(nBlockSize) {}
};
