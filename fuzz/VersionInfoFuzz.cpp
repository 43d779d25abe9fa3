// MVersionInfo on any bytes, as a version block from a damaged or hostile file: no read past
// the block (it lies in a buffer of exactly its size), and what is read holds together: every
// listed value is found in its table and through the search of all tables, and a block read
// after another gives what it gives read first.
#include <cstdint>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "MVersionInfo.h"

namespace {

struct BlockInfo : MVersionInfo {
    bool Read(const std::vector<unsigned char>& block) {
        return _Read(block.empty() ? nullptr : block.data(), block.size());
    }
};

// Everything the reader gives, as one text.
std::wstring Describe(const MVersionInfo& info) {
    std::wstring text = std::to_wstring(info.IsOpen()) + L" " +
                        std::to_wstring(info.GetLastError()) + L" " +
                        info.GetFileVersionText().GetString() + L" " +
                        info.GetProductVersionText().GetString() + L"\n";
    for (const MVersionInfo::Translation& translation : info.GetTranslations())
        text += L"translation " + std::wstring(MVersionInfo::GetTableName(translation)) + L"\n";
    for (const MVersionInfo::Translation& table : info.GetStringTables()) {
        text += L"table " + std::wstring(MVersionInfo::GetTableName(table)) + L"\n";
        for (const CString& name : info.GetStringNames(table)) {
            CString value, anyTable;
            FUZZ_CHECK(info.GetString(name, value, table));
            FUZZ_CHECK(info.GetString(name, anyTable));
            text += std::wstring(name.GetString()) + L"=" + value.GetString() + L"\n";
        }
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The input is the block; its second half is also read first, as an earlier block.
    const std::vector<unsigned char> block(data, data + size),
        earlier(data + size / 2, data + size);
    BlockInfo fresh, reused;
    const bool read = fresh.Read(block);
    FUZZ_CHECK(read == fresh.IsOpen());
    const std::wstring described = Describe(fresh);
    reused.Read(earlier);
    Describe(reused);
    FUZZ_CHECK(reused.Read(block) == read);
    FUZZ_CHECK(Describe(reused) == described);
    return 0;
}
