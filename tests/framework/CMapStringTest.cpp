#include <set>
#include <string>

#include <gtest/gtest.h>

#include "CMapStringToPtr.h"
#include "CMapStringToString.h"

namespace {

using Entries = std::multiset<std::wstring>;

std::wstring Text(void* value) {
    return std::to_wstring(reinterpret_cast<INT_PTR>(value));
}
std::wstring Text(const CString& value) {
    return value.GetString();
}

// Every "key=value" the iteration yields: an entry yielded twice appears twice.
template <class VALUE, class ARG_VALUE>
Entries Visited(const CMapStringToValue<VALUE, ARG_VALUE>& map) {
    Entries entries;
    for (POSITION pos = map.GetStartPosition(); pos != nullptr;) {
        CString key;
        VALUE value{};
        map.GetNextAssoc(pos, key, value);
        entries.insert(key.GetString() + (L"=" + Text(value)));
    }
    return entries;
}

TEST(CMapStringTest, IterationVisitsEveryEntryOnceAlsoAfterRemovals) {
    CMapStringToPtr map(3); // many blocks of three associations
    Entries expected;
    for (INT_PTR i = 1; i <= 1000; ++i) {
        map.SetAt((L"key" + std::to_wstring(i)).c_str(), reinterpret_cast<void*>(i));
        expected.insert(L"key" + std::to_wstring(i) + L"=" + std::to_wstring(i));
    }
    EXPECT_EQ(expected, Visited(map));

    for (int i = 3; i <= 1000; i += 3) {
        EXPECT_TRUE(map.RemoveKey((L"key" + std::to_wstring(i)).c_str()));
        expected.erase(L"key" + std::to_wstring(i) + L"=" + std::to_wstring(i));
    }
    EXPECT_FALSE(map.RemoveKey(L"key3"));
    EXPECT_EQ(static_cast<INT_PTR>(expected.size()), map.GetCount());
    EXPECT_EQ(expected, Visited(map));

    // Rehashing a filled map keeps every entry findable.
    map.InitHashTable(7);
    EXPECT_EQ(expected, Visited(map));
    void* found = nullptr;
    EXPECT_TRUE(map.Lookup(L"key500", found));
    EXPECT_EQ(reinterpret_cast<void*>(500), found);

    // Freed associations are reused for new keys without disturbing the others.
    map[L"again"] = nullptr;
    expected.insert(L"again=0");
    EXPECT_EQ(expected, Visited(map));
}

TEST(CMapStringTest, KeysMatchExactlyAndIndexingCreatesEntries) {
    CMapStringToString map;
    EXPECT_EQ(nullptr, map.GetStartPosition());
    map[L"Key"] += L"v";
    map[L"Key"] += L"w";
    map.SetAt(L"other", L"x");
    map.SetAt(L"other", L"y");
    map[L"empty"];
    map.SetAt(nullptr, L"n"); // a null key is the empty key
    EXPECT_EQ((Entries{L"=n", L"Key=vw", L"empty=", L"other=y"}), Visited(map));

    CString value(L"unchanged");
    EXPECT_FALSE(map.Lookup(L"key", value));
    EXPECT_STREQ(L"unchanged", value);
    map.RemoveAll();
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_FALSE(map.Lookup(L"Key", value));
}

} // namespace
