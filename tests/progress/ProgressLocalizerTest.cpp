#include <gtest/gtest.h>

#include <string>

#include "ProgressLocalizer.h"
#include "ProgressLocalizerTable.h"

using KelBase::ProgressLocalizer;

// Every key of the table reaches its own message through the lookup, silent keys included.
TEST(ProgressLocalizer, EveryKeyOfTheTable) {
    for (const auto& entry : KelBase::ProgressLocalizerTable::entries) {
        const std::string key(entry.key);
        EXPECT_EQ(ProgressLocalizer::Localize(key), std::wstring(entry.message)) << key;
    }
    // A message shown by several keys, a sub-step and its silent parent.
    EXPECT_EQ(ProgressLocalizer::Localize("KelSDK.Triangles.Data.MStlCompressor.Operate"),
              L"Compressing STL");
    EXPECT_EQ(ProgressLocalizer::Localize("KelSDK.Triangles.Data.MStlCompact.ConvertFromStlBase"),
              L"Compressing STL");
    EXPECT_EQ(ProgressLocalizer::Localize("KelStlCutting.MCutter.DIVIDE_DATA"), L"Dividing data");
    EXPECT_EQ(ProgressLocalizer::Localize("KelSDK.Triangles.Data.MStlBase.LoadCompressed.2"),
              L"Uncompressing");
    EXPECT_EQ(ProgressLocalizer::Localize("KelSDK.Triangles.Data.MStlBase.LoadCompressed"), L"");
    EXPECT_EQ(ProgressLocalizer::Localize("KelSDK.Triangles.Tooling.M2dField."
                                          "CalculatePartingPlanes.5"),
              L"Calculating parting lines (upper, undercuts)");
}

// Whole keys only, byte for byte: no case folding, no prefixes, no fallback between a sub-step
// and its parent.
TEST(ProgressLocalizer, KeysMatchExactly) {
    const char* const unknown[] = {
        "kelsdk.triangles.data.mstlcloner.clonestl",
        "KelSDK.Triangles.Data.MStlCloner.CloneSTL",
        "KelSDK.Triangles.Data.MStlBaseFileUtilities.ReadAsciiAndRemoveIdenticalTriangles",
        "KelSDK.Triangles.Data.MStlBase.LoadCompressed.3",
        "KelSDK.Triangles.Data.MStlCloner.CloneStl.1",
        "KelSDK.Triangles.Data.MStlCloner.CloneSt",
        "KelSDK.Triangles.Data.MStlCloner.CloneStl ",
        "Triangles.Data.MStlCloner.CloneStl",
        "",
    };
    for (const char* key : unknown)
        EXPECT_EQ(ProgressLocalizer::Localize(key), L"") << '"' << key << '"';
    // A key with a NUL inside is not its prefix.
    const std::string withNul("KelSDK.Triangles.Data.MStlCloner.CloneStl\0x", 43);
    EXPECT_EQ(ProgressLocalizer::Localize(withNul), L"");
}
