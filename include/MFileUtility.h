#pragma once
/// @file
/// MFileUtility: turning any text into something usable as a file name.
#include <string>

#include "KelBaseExport.h"

/// Turns any text into something usable as a file name.
class KELBASE_API MFileUtility {
public:
    /// Removes the characters \ / * : ? < > | " from the start of the name and replaces them by
    /// '_' elsewhere, one character of that list after the other. True when anything changed.
    static bool FixFileName(std::wstring& name);
};
