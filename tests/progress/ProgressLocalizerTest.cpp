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
    // The loop would pass over an empty table.
    EXPECT_EQ(ProgressLocalizer::Localize("KelSDK.Triangles.Data.MStlBase.LoadCompressed.2"),
              L"Uncompressing");
}

// Whole keys only, byte for byte: no case folding, no prefixes, no fallback between a sub-step
// and its parent.
TEST(ProgressLocalizer, KeysMatchExactly) {
    const char* const unknown[] = {
        "KelSDK.Triangles.Data.MStlCloner.CloneSTL",
        // The table keeps the system's spelling ("Indentical").
        "KelSDK.Triangles.Data.MStlBaseFileUtilities.ReadAsciiAndRemoveIdenticalTriangles",
        "KelSDK.Triangles.Data.MStlCloner.CloneStl.1",
        "KelSDK.Triangles.Data.MStlCloner.CloneSt",
        "",
    };
    for (const char* key : unknown)
        EXPECT_EQ(ProgressLocalizer::Localize(key), L"") << '"' << key << '"';
    // A key with a NUL inside is not its prefix.
    const std::string withNul("KelSDK.Triangles.Data.MStlCloner.CloneStl\0x", 43);
    EXPECT_EQ(ProgressLocalizer::Localize(withNul), L"");
}
