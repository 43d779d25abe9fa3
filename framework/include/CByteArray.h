#pragma once
// The framework's array of bytes.
#include "CArray.h"

class CByteArray : public CArray<BYTE, BYTE> {};
