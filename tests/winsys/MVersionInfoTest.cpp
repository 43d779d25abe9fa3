// Version blocks written byte by byte: the reader's view of a whole block and of damaged ones
// (any damage at all is the version block fuzzer's).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "MVersionInfo.h"

namespace {

using Bytes = std::string;

void Pad(Bytes& bytes) {
    while (bytes.size() % 4)
        bytes.push_back('\0');
}

Bytes Utf16(const std::u16string& text) {
    Bytes bytes;
    for (char16_t unit : text) {
        bytes.push_back(static_cast<char>(unit & 0xFF));
        bytes.push_back(static_cast<char>(unit >> 8));
    }
    return bytes;
}

Bytes Le(unsigned value, int size) {
    Bytes bytes;
    for (int i = 0; i < size; ++i)
        bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
    return bytes;
}

// A node as the resource compiler lays it out; `valueLength` counts characters for text.
Bytes Node(const std::u16string& key, bool text, const Bytes& value, size_t valueLength,
           const std::vector<Bytes>& children = {}) {
    Bytes bytes =
        Le(0, 2) + Le(static_cast<unsigned>(valueLength), 2) + Le(text, 2) + Utf16(key) + Le(0, 2);
    Pad(bytes);
    bytes += value;
    for (const Bytes& child : children) {
        Pad(bytes);
        bytes += child;
    }
    bytes.replace(0, 2, Le(static_cast<unsigned>(bytes.size()), 2));
    return bytes;
}

Bytes String(const std::u16string& name, const std::u16string& value) {
    return Node(name, true, Utf16(value) + Le(0, 2), value.size() + 1);
}

Bytes Fixed() {
    Bytes fixed = Le(0xFEEF04BD, 4) + Le(0x10000, 4);
    for (unsigned field : {0x00010002u, 0x00030004u, 0x00050006u, 0x00070008u, 0x3Fu, 0x2u,
                           0x40004u, 0x2u, 0x0u, 0x01D2u, 0x12345678u})
        fixed += Le(field, 4);
    return fixed;
}

Bytes WholeBlock() {
    const Bytes english = Node(u"040904B0", true, "", 0,
                               {String(u"CompanyName", u"Kel"),
                                String(u"FileDescription", u"\u00dcbersicht \u2713 \U0001F600"),
                                Node(u"Empty", true, "", 0),
                                // No terminator in the value.
                                Node(u"Cut", true, Utf16(u"abc"), 3)});
    const Bytes german = Node(u"040704e4", true, "", 0,
                              {String(u"CompanyName", u"Kel GmbH"), String(u"OnlyGerman", u"ja")});
    const Bytes notATable = Node(u"neutral!", true, "", 0, {String(u"CompanyName", u"x")});
    const Bytes strings = Node(u"StringFileInfo", true, "", 0, {english, notATable, german});
    const Bytes translations =
        Node(u"Translation", false, Le(0x04E40407, 4) + Le(0x04B00409, 4), 8);
    const Bytes vars = Node(u"VarFileInfo", true, "", 0, {translations});
    return Node(u"VS_VERSION_INFO", false, Fixed(), 52, {strings, vars});
}

// The reader fed with exactly the given bytes (a buffer of that size, for the sanitizers).
struct BlockInfo : MVersionInfo {
    bool Read(const Bytes& block) {
        std::vector<unsigned char> exact(block.begin(), block.end());
        return _Read(exact.data(), exact.size());
    }
};

const MVersionInfo::Translation English{0x0409, 0x04B0}, German{0x0407, 0x04E4};

std::vector<std::wstring> Names(const MVersionInfo& info, const MVersionInfo::Translation& table) {
    std::vector<std::wstring> names;
    for (const CString& name : info.GetStringNames(table))
        names.push_back(name.GetString());
    return names;
}

} // namespace

TEST(MVersionInfo, WholeBlockGivesEveryPart) {
    BlockInfo info;
    ASSERT_TRUE(info.Read(WholeBlock()));
    EXPECT_TRUE(info.IsOpen());
    EXPECT_EQ(info.GetLastError(), 0u);

    EXPECT_EQ(Bytes(reinterpret_cast<const char*>(&info.GetFixedFileInfo()),
                    sizeof(MVersionInfo::FixedFileInfo)),
              Fixed());
    EXPECT_EQ(info.GetFileVersion(), 0x0001000200030004ull);
    EXPECT_EQ(info.GetProductVersion(), 0x0005000600070008ull);
    EXPECT_STREQ(info.GetFileVersionText(), L"1.2.3.4");
    EXPECT_STREQ(info.GetProductVersionText(), L"5.6.7.8");
    EXPECT_STREQ(MVersionInfo::FormatVersion(~0ull), L"65535.65535.65535.65535");

    const std::vector<MVersionInfo::Translation> translations = info.GetTranslations();
    ASSERT_EQ(translations.size(), 2u);
    EXPECT_TRUE(translations[0] == German);
    EXPECT_TRUE(translations[1] == English);
    // The table whose name is no language and code page is not listed.
    const std::vector<MVersionInfo::Translation> tables = info.GetStringTables();
    ASSERT_EQ(tables.size(), 2u);
    EXPECT_STREQ(MVersionInfo::GetTableName(tables[0]), L"040904B0");
    EXPECT_STREQ(MVersionInfo::GetTableName(tables[1]), L"040704E4");

    EXPECT_EQ(Names(info, English),
              (std::vector<std::wstring>{L"CompanyName", L"FileDescription", L"Empty", L"Cut"}));
    EXPECT_EQ(Names(info, German), (std::vector<std::wstring>{L"CompanyName", L"OnlyGerman"}));
    EXPECT_TRUE(Names(info, {0x0409, 1252}).empty());

    CString value = L"before";
    EXPECT_TRUE(info.GetString(L"companyNAME", value, English));
    EXPECT_STREQ(value, L"Kel");
    EXPECT_TRUE(info.GetString(L"FileDescription", value, English));
    EXPECT_STREQ(value, L"\u00dcbersicht \u2713 \U0001F600");
    EXPECT_TRUE(info.GetString(L"Empty", value, English));
    EXPECT_STREQ(value, L"");
    EXPECT_TRUE(info.GetString(L"Cut", value, English));
    EXPECT_STREQ(value, L"abc");
    value = L"before";
    EXPECT_FALSE(info.GetString(L"OnlyGerman", value, English));
    EXPECT_FALSE(info.GetString(L"CompanyName", value, {0x0409, 1252}));
    EXPECT_FALSE(info.GetString(nullptr, value, English));
    EXPECT_STREQ(value, L"before");

    // Without a table: the translation list's order (German first), then the other tables.
    EXPECT_STREQ(info.GetString(L"CompanyName"), L"Kel GmbH");
    EXPECT_STREQ(info.GetString(L"FileDescription"), L"\u00dcbersicht \u2713 \U0001F600");
    EXPECT_STREQ(info.GetString(L"Missing"), L"");
    EXPECT_FALSE(info.GetString(L"Missing", value));

    info.Close();
    EXPECT_FALSE(info.IsOpen());
    EXPECT_TRUE(info.GetStringTables().empty());
    EXPECT_EQ(info.GetFileVersion(), 0u);
}

TEST(MVersionInfo, DamagedBlocksAreReadAsFarAsTheyAreWhole) {
    const Bytes whole = WholeBlock();
    BlockInfo info;
    // A cut block is no block: its length says more than there is.
    for (size_t size = 0; size < whole.size(); size += 7) {
        EXPECT_FALSE(info.Read(whole.substr(0, size))) << size;
        EXPECT_EQ(info.GetLastError(), MVersionInfo::InvalidData) << size;
        EXPECT_FALSE(info.IsOpen()) << size;
    }
    EXPECT_FALSE(info.Read(Node(u"VS_VERSION_INFX", false, Fixed(), 52)));
    EXPECT_EQ(info.GetLastError(), MVersionInfo::InvalidData);

    // A root without fixed information: zeros.
    ASSERT_TRUE(info.Read(Node(u"VS_VERSION_INFO", false, Fixed().substr(0, 48), 48)));
    EXPECT_EQ(info.GetFixedFileInfo().dwSignature, 0u);

    // A first table whose length reaches past its parent: nothing after it is read.
    Bytes damaged = whole;
    const size_t table = damaged.find(Utf16(u"040904B0")) - 6;
    damaged.replace(table, 2, Le(0xFFF0, 2));
    ASSERT_TRUE(info.Read(damaged));
    EXPECT_TRUE(info.GetStringTables().empty());
    EXPECT_EQ(info.GetTranslations().size(), 2u);
    // A child of length 0 ends its parent's list without hanging.
    damaged = whole;
    damaged.replace(table, 2, Le(0, 2));
    ASSERT_TRUE(info.Read(damaged));
    EXPECT_TRUE(info.GetStringTables().empty());
}
