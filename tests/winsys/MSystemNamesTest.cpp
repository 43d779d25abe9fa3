// The naming decisions of MSystemInfo, driven with any input.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "MSystemNames.h"

namespace {

using Facts = MSystemNames::OsFacts;

Facts MakeFacts(DWORD major, DWORD minor, DWORD servicePack, bool server, DWORD product) {
    Facts facts;
    facts.major = major;
    facts.minor = minor;
    facts.servicePack = servicePack;
    facts.server = server;
    facts.productKnown = true;
    facts.productType = product;
    return facts;
}

// Rows of the product table, one or two a branch: (major, minor, server, codes, name).
struct Row {
    DWORD major, minor;
    bool server;
    std::vector<DWORD> codes;
    std::wstring name;
};
const std::vector<Row> Rows = {
    {10, 0, false, {4, 27, 70, 72, 84}, L"Windows 10 Enterprise"},
    {10, 0, true, {20, 21, 22, 23, 43, 44, 45, 46, 95, 96}, L"Windows Storage Server 2016"},
    {10, 0, true, {42}, L"Microsoft Hyper-V Server 2016"},
    {6, 3, false, {48, 49, 69, 103}, L"Windows 8.1 Professional Edition"},
    {6, 3, true, {33}, L"Windows Server 2012 R2 Foundation Edition"},
    {6, 2, false, {98, 99, 100, 101}, L"Windows 8"},
    {6, 2, true, {9, 25, 63}, L"Windows Server 2012 Essentials Edition"},
    {6, 1, false, {6, 16, 48, 49, 69}, L"Windows 7 Professional Edition"},
    {6, 1, true, {10, 14, 38, 41}, L"Windows Server 2008 R2 Enterprise Edition"},
    {6, 0, false, {1, 28}, L"Windows Vista Ultimate Edition"},
    {6, 0, true, {9, 24, 25}, L"Windows Small Business Server 2008"},
    {6, 0, true, {30, 31, 32}, L"Windows Essential Business Server 2008"},
};

TEST(MSystemNames, ProductCodesOfEachBranch) {
    for (const Row& row : Rows) {
        for (DWORD code : row.codes) {
            SCOPED_TRACE(row.name + L" " + std::to_wstring(code));
            std::wstring name;
            EXPECT_TRUE(MSystemNames::DescribeOs(
                MakeFacts(row.major, row.minor, 0, row.server, code), name));
            EXPECT_EQ(row.name + L" x64", name);
        }
        // The same code on the other side of the branch names something else, or nothing.
        std::wstring other;
        MSystemNames::DescribeOs(MakeFacts(row.major, row.minor, 0, !row.server, row.codes[0]),
                                 other);
        EXPECT_NE(row.name + L" x64", other) << std::string(row.name.begin(), row.name.end());
    }
}

TEST(MSystemNames, ServicePacksStarterEditionsAndUnlistedCodes) {
    const std::vector<std::tuple<Facts, bool, std::wstring>> cases = {
        {MakeFacts(6, 1, 1, false, 48), true,
         L"Windows 7 Professional Edition x64, Service Pack 1"},
        {MakeFacts(6, 1, 1, true, 7), true,
         L"Windows Server 2008 R2 Standard Edition x64, Service Pack 1"},
        {MakeFacts(6, 0, 1, false, 6), true, L"Windows Vista Business Edition x64"},
        {MakeFacts(6, 0, 2, false, 6), true, L"Windows Vista Business Edition x64, Service Pack 2"},
        {MakeFacts(6, 0, 2, true, 18), true, L"Windows HPC Server 2008 x64, Service Pack 2"},
        {MakeFacts(10, 0, 0, false, 48), true, L"Windows 10 Pro x64"},
        // Later versions are named as the newest one known; no service pack there.
        {MakeFacts(10, 0, 3, false, 101), true, L"Windows 10 Home x64"},
        {MakeFacts(11, 2, 0, false, 4), true, L"Windows 10 Enterprise x64"},
        // A Windows 10 workstation with an unlisted code is still Windows 10.
        {MakeFacts(10, 0, 0, false, 0x79), true, L"Windows 10 x64"},
        // Starter editions are named but not reported as recognised, without bitness.
        {MakeFacts(6, 1, 1, false, 47), false, L"Windows 7 Starter Edition"},
        {MakeFacts(6, 0, 2, false, 11), false, L"Windows Vista Starter Edition"},
        // An unlisted code elsewhere leaves "Unknown".
        {MakeFacts(10, 0, 0, true, 48), false, L"Unknown"},
        {MakeFacts(6, 1, 0, false, 98), false, L"Unknown"},
        // Before Vista, or without a product type, nothing is recognised but the bitness.
        {MakeFacts(5, 2, 2, false, 48), true, L"Unknown x64"},
    };
    for (const auto& [facts, recognised, expected] : cases) {
        SCOPED_TRACE(expected);
        std::wstring name;
        EXPECT_EQ(recognised, MSystemNames::DescribeOs(facts, name));
        EXPECT_EQ(expected, name);
    }
    Facts unknownProduct = MakeFacts(10, 0, 0, false, 48);
    unknownProduct.productKnown = false;
    std::wstring name;
    EXPECT_TRUE(MSystemNames::DescribeOs(unknownProduct, name));
    EXPECT_EQ(L"Unknown x64", name);
}

TEST(MSystemNames, ShortNamesFromTheVersionAlone) {
    const std::vector<std::tuple<DWORD, DWORD, bool, std::wstring>> cases = {
        {10, 0, false, L"Windows 10"},   {10, 0, true, L"Windows Server 2016"},
        {6, 3, false, L"Windows 8.1"},   {6, 3, true, L"Windows Server 2012 R2"},
        {6, 2, false, L"Windows 8"},     {6, 2, true, L"Windows Server 2012"},
        {6, 1, false, L"Windows 7"},     {6, 1, true, L"Windows Server 2008 R2"},
        {6, 0, false, L"Windows Vista"}, {6, 0, true, L"Windows Server 2008"},
        {5, 1, false, L"Unknown"},       {6, 4, false, L"Windows 8.1"},
    };
    for (const auto& [major, minor, server, expected] : cases)
        EXPECT_EQ(expected, MSystemNames::ShortOsName(MakeFacts(major, minor, 0, server, 0)))
            << major << "." << minor << (server ? " server" : "");
}

TEST(MSystemNames, ProcessorFamilies) {
    using S = MSystemNames;
    const std::vector<std::tuple<WORD, const wchar_t*, WORD, WORD, std::wstring>> cases = {
        {0, L"GenuineIntel", 3, 0, L"Intel 386"},
        {0, L"GenuineIntel", 6, 23, L"Intel Core 2"},
        {0, L"GenuineIntel", 15, 2, L"Pentium 4"},
        {0, L"GenuineIntel", 7, 0, L"Intel Unknown"},
        {0, L"AuthenticAMD", 5, 8, L"AMD K6"},
        {0, L"AuthenticAMD", 15, 4, L"AMD Unknown"},
        {0, L"CyrixInstead", 5, 4, L"Intel Unknown"},
        {9, L"AuthenticAMD", 15, 0x2F, L"Sempron 64"},
        {9, L"AuthenticAMD", 25, 33, L"AMD64 Unknown"},
        {9, L"GenuineIntel", 15, 4, L"Intel64 Pentium D"},
        {9, L"GenuineIntel", 6, 14, L"Intel64 Unknown"},
        {9, L"HygonGenuine", 24, 0, L"Intel64 Unknown"},
        {6, L"GenuineIntel", 31, 0, L"Intel Itanium"},
        {1, L"", 4, 0, L"R4000"},
        {2, L"", 21264, 0, L"Alpha Unknown"},
        {3, L"", 9, 0, L"604+"},
        {12, L"ARM", 8, 0, L"Unknown"},
    };
    for (const auto& [architecture, vendor, family, model, expected] : cases) {
        SCOPED_TRACE(expected);
        const WORD processor = S::ProcessorCode(architecture);
        EXPECT_EQ(expected, S::ProcessorLevelText(
                                processor, S::ProcessorLevel(processor, vendor, family, model)));
    }
    EXPECT_EQ(std::wstring(L"Itanium Unknown"), S::ProcessorLevelText(S::ArchItanium, 1));
}

} // namespace
