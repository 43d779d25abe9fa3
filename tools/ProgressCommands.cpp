// localize: the progress message of a step key.
#include "Keltool.h"
#include "StdBase.h"

namespace Keltool {
namespace {

int Localize(const Arguments& operands) {
    if (operands.empty())
        return UsageError(L"localize", L"localize needs at least one key");
    // Keys are ASCII; UTF-8 passes anything else through unchanged, so it cannot match by
    // accident.
    for (const std::wstring& key : operands)
        Print(KelBase::ProgressLocalizer::Localize(StdBase::ConvertUnicodeToUtf8(key)) + L"\n");
    return Success;
}

} // namespace

KELTOOL_COMMAND(localize, L"localize", L"localize KEY...",
                L"Prints the progress message of each step key, one line each, e.g.\n"
                L"KelSDK.Triangles.Data.MStlCloner.CloneStl -> Copying STL. A key that shows no\n"
                L"text of its own, and a key that is not known, print an empty line.\n",
                Localize);

} // namespace Keltool
