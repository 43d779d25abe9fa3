#pragma once
/// @file
/// All framework classes and the base types of framework-style signatures.
#include "AfxTypes.h"
#include "CObject.h"
#include "CString.h"
#include "CArray.h"
#include "CStringArray.h"
#include "CByteArray.h"
#include "CMapStringToValue.h"
#include "CMapStringToPtr.h"
#include "CMapStringToString.h"
#include "CFileException.h"
#include "CFile.h"
