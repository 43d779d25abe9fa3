// Uses three families through the umbrella header only: file names, checksums and the status
// channel with its per-thread progress adapter. Prints what it found and exits with 0 when
// every result is the expected one.
#include <cstdio>
#include <cwchar>

#include "KelBase.h"

namespace {

int g_failures = 0;

void Expect(bool ok, const char* what) {
    std::printf("%s: %s\n", ok ? "ok" : "FAILED", what);
    g_failures += ok ? 0 : 1;
}

} // namespace

int wmain() {
    std::printf("KelSDK.Base %ls\n", KelBaseGetVersion());

    MFileName name(L"C:\\parts\\bracket.stl");
    Expect(std::wcscmp(name.GET_FILE_PART(), L"bracket") == 0, "file part of a path");
    Expect(std::wcscmp(name.GET_EXT_PART(), L".stl") == 0, "extension of a path");

    char digits[] = "123456789";
    COXCRC32 crc(0xEDB88320UL);
    Expect(~crc.CalculateBlock(digits, 9) == 0xCBF43926UL, "CRC-32 check value");

    {
        MStatusCallbackToMProgressImpl listener;
        Expect(IStatusCallback::HasInstance(), "status listener installed");
        IStatusCallback::Session session(0, 100, L"Checking");
        IStatusCallback::STATUS_INC(50);
    }
    Expect(!IStatusCallback::HasInstance(), "status listener removed");
    return g_failures == 0 ? 0 : 1;
}
