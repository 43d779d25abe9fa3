#pragma once
/// @file
/// The framework's array of bytes.
#include "CArray.h"

/// The framework's array of bytes.
class CByteArray : public CArray<BYTE, BYTE> {};
