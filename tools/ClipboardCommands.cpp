// clip get|set: text on the clipboard.
#include "Keltool.h"

namespace Keltool {
namespace {

int Clip(const Arguments& words) {
    if (words.size() == 1 && words[0] == L"get") {
        CString text;
        if (!GetTextFromClipboard(text))
            return Fail(L"the clipboard holds no text, or another program holds it open");
        Print(std::wstring(text.GetString()) + L"\n");
        return Success;
    }
    if (words.size() == 2 && words[0] == L"set")
        return CopyStringToClipboard(words[1].c_str())
                   ? Success
                   : Fail(L"the clipboard could not be set: another program holds it open");
    return UsageError(L"clip", L"use clip get, or clip set TEXT");
}

} // namespace

KELTOOL_COMMAND(clip, L"clip", L"clip get | clip set TEXT",
                L"  get        prints the text on the clipboard.\n"
                L"  set TEXT   puts TEXT on the clipboard.\n",
                Clip);

} // namespace Keltool
