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

TEST(MSystemNames, ProductsServicePacksStarterEditionsAndUnlistedCodes) {
    // One product of each version and side; a code of one side is not read on the other.
    const std::vector<std::tuple<Facts, bool, std::wstring>> cases = {
        {MakeFacts(10, 0, 0, true, 42), true, L"Microsoft Hyper-V Server 2016 x64"},
        {MakeFacts(6, 3, 0, false, 103), true, L"Windows 8.1 Professional Edition x64"},
        {MakeFacts(6, 2, 0, true, 63), true, L"Windows Server 2012 Essentials Edition x64"},
        {MakeFacts(6, 0, 0, false, 28), true, L"Windows Vista Ultimate Edition x64"},
        {MakeFacts(6, 0, 0, true, 30), true, L"Windows Essential Business Server 2008 x64"},
        {MakeFacts(6, 0, 0, true, 28), false, L"Unknown"},
        {MakeFacts(6, 1, 1, false, 48), true,
         L"Windows 7 Professional Edition x64, Service Pack 1"},
        {MakeFacts(6, 1, 1, true, 7), true,
         L"Windows Server 2008 R2 Standard Edition x64, Service Pack 1"},
        // Vista's first service pack is not named.
        {MakeFacts(6, 0, 1, false, 6), true, L"Windows Vista Business Edition x64"},
        {MakeFacts(6, 0, 2, true, 18), true, L"Windows HPC Server 2008 x64, Service Pack 2"},
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
        {10, 0, true, L"Windows Server 2016"},
        {6, 1, false, L"Windows 7"},
        {5, 1, false, L"Unknown"},
        {6, 4, false, L"Windows 8.1"},
    };
    for (const auto& [major, minor, server, expected] : cases)
        EXPECT_EQ(expected, MSystemNames::ShortOsName(MakeFacts(major, minor, 0, server, 0)))
            << major << "." << minor << (server ? " server" : "");
}

TEST(MSystemNames, ProcessorFamilies) {
    using S = MSystemNames;
    const std::vector<std::tuple<WORD, const wchar_t*, WORD, WORD, std::wstring>> cases = {
        {0, L"GenuineIntel", 6, 23, L"Intel Core 2"},
        {0, L"AuthenticAMD", 5, 8, L"AMD K6"},
        {0, L"AuthenticAMD", 15, 4, L"AMD Unknown"},
        {0, L"CyrixInstead", 5, 4, L"Intel Unknown"},
        {9, L"AuthenticAMD", 15, 0x2F, L"Sempron 64"},
        {9, L"GenuineIntel", 15, 4, L"Intel64 Pentium D"},
        {9, L"HygonGenuine", 24, 0, L"Intel64 Unknown"},
        {6, L"GenuineIntel", 31, 0, L"Intel Itanium"},
        {2, L"", 21264, 0, L"Alpha Unknown"},
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
