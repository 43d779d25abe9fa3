#pragma once
/// @file
/// Text on the system clipboard (Windows only). The clipboard is opened without an owner
/// window, so these work from code that has no window at hand, and it is held only for the
/// duration of a call: a call fails (0) while another window or process holds it. No error
/// text or last-error code is set.
#include "CString.h"
#include "KelBaseExport.h"

// The clipboard exists only on Windows.
#ifdef _WIN32

/// 1 when the clipboard now holds `text` as narrow text (CF_TEXT, active code page), else 0.
/// The previous content is gone even when the call fails after opening the clipboard. A null
/// pointer copies the empty text.
KELBASE_API int CopyStringToClipboard(const char* text);
/// The same with wide text (CF_UNICODETEXT).
KELBASE_API int CopyStringToClipboard(const wchar_t* text);
/// 1 when a text was read into `text`: the wide text when the clipboard offers it, otherwise the
/// narrow text converted from the active code page. 0 leaves `text` untouched.
KELBASE_API int GetTextFromClipboard(CString& text);
#endif
