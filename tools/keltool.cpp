// keltool: the command-line companion of KelSDK.Base.
#include "KelBase.h"

#include <cstdio>
#include <cwchar>

int main() {
    std::printf("KelSDK.Base %ls\n", KelBaseGetVersion());
    std::printf("Families:\n");
    for (const wchar_t* const* family = KelBaseGetFamilies(); *family; ++family)
        std::printf("  %ls\n", *family);
    return 0;
}
