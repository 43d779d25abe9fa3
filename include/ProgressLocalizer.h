#pragma once
/// @file
/// The English messages that progress displays show for the dotted step keys of the SDK's long
/// operations ("namespace.class.operation", with ".1", ".2", ... for sub-steps).
#include <string>

#include "KelBaseExport.h"

/// Progress texts of the library.
namespace KelBase {

/// The English messages of the SDK's progress step keys.
class KELBASE_API ProgressLocalizer {
public:
    /// The message of `key`, matched whole and case-sensitively; the empty string for a key that
    /// is not known and for a step that shows no text of its own (often the parent of ".1",
    /// ".2" sub-steps). A sub-step key never falls back to its parent.
    /// Of the cutting operations, KelStlCutting.MCutter.DIVIDE_DATA reads "Dividing data"; no
    /// cutting step is named for an upgrade or a compression of the part, so "Upgrading STL"
    /// and "Compressing STL" stay with the data operations that are.
    static std::wstring Localize(const std::string& key);
};

} // namespace KelBase
