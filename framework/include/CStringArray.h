#pragma once
/// @file
/// The framework's array of wide strings.
#include "CArray.h"
#include "CString.h"

/// The framework's array of wide strings.
class CStringArray : public CArray<CString, const CString&> {};
