#pragma once
// The framework's array of wide strings.
#include "CArray.h"
#include "CString.h"

class CStringArray : public CArray<CString, const CString&> {};
