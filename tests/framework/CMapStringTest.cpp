#include <map>
#include <string>

#include <gtest/gtest.h>

#include "CMapStringToPtr.h"
#include "CMapStringToString.h"

namespace {

std::wstring KeyOf(int i) {
    return L"key" + std::to_wstring(i);
}

// Every key the map yields, with the number of times it was yielded.
template <class VALUE, class ARG_VALUE>
std::map<std::wstring, int> Visits(const CMapStringToValue<VALUE, ARG_VALUE>& map) {
    std::map<std::wstring, int> visits;
    POSITION pos = map.GetStartPosition();
    while (pos != nullptr) {
        CString key;
        VALUE value{};
        map.GetNextAssoc(pos, key, value);
        ++visits[key.GetString()];
    }
    return visits;
}

TEST(CMapStringTest, IterationVisitsEveryEntryOnceAlsoAfterRemovals) {
    CMapStringToPtr map(3);
    const int count = 1000;
    for (int i = 0; i < count; ++i) {
        map.SetAt(KeyOf(i).c_str(), reinterpret_cast<void*>(static_cast<INT_PTR>(i + 1)));
    }
    ASSERT_EQ(count, map.GetCount());

    std::map<std::wstring, int> visits = Visits(map);
    ASSERT_EQ(static_cast<size_t>(count), visits.size());
    for (const auto& visit : visits) {
        EXPECT_EQ(1, visit.second) << visit.first;
    }

    for (int i = 0; i < count; i += 3) {
        EXPECT_TRUE(map.RemoveKey(KeyOf(i).c_str()));
    }
    EXPECT_FALSE(map.RemoveKey(KeyOf(0).c_str()));
    visits = Visits(map);
    EXPECT_EQ(static_cast<size_t>(map.GetCount()), visits.size());
    for (int i = 0; i < count; ++i) {
        const auto found = visits.find(KeyOf(i));
        if (i % 3 == 0) {
            EXPECT_TRUE(found == visits.end()) << i;
        } else {
            ASSERT_TRUE(found != visits.end()) << i;
            EXPECT_EQ(1, found->second);
        }
    }

    // Freed associations are reused for new keys without disturbing the others.
    map[L"again"] = nullptr;
    EXPECT_EQ(static_cast<size_t>(map.GetCount()), Visits(map).size());
}

TEST(CMapStringTest, KeysMatchExactlyAndIndexingCreatesEntries) {
    CMapStringToString map;
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_EQ(nullptr, map.GetStartPosition());

    map[L"Key"] += L"v";
    EXPECT_EQ(1, map.GetCount());
    map[L"Key"] += L"w";
    map.SetAt(L"other", L"x");
    map[L"empty"];
    EXPECT_EQ(3, map.GetSize());

    CString value;
    EXPECT_TRUE(map.Lookup(L"Key", value));
    EXPECT_TRUE(value == L"vw");
    EXPECT_FALSE(map.Lookup(L"key", value));
    EXPECT_TRUE(value == L"vw");
    EXPECT_TRUE(map.Lookup(L"empty", value));
    EXPECT_TRUE(value.IsEmpty());

    map.SetAt(L"other", L"y");
    EXPECT_TRUE(map.Lookup(L"other", value));
    EXPECT_TRUE(value == L"y");

    // A null key is the empty key.
    map.SetAt(nullptr, L"n");
    EXPECT_TRUE(map.Lookup(L"", value));
    EXPECT_TRUE(value == L"n");

    map.RemoveAll();
    EXPECT_EQ(0, map.GetCount());
    EXPECT_FALSE(map.Lookup(L"Key", value));
    EXPECT_FALSE(map.RemoveKey(L"Key"));
}

TEST(CMapStringTest, HashTableSizeAndHash) {
    // The framework's hash: h = h * 33 + c.
    EXPECT_EQ(97u * 33u + 98u, CMapStringToPtr::HashKey(L"ab"));
    EXPECT_EQ(0u, CMapStringToPtr::HashKey(L""));

    CMapStringToPtr map;
    EXPECT_EQ(17u, map.GetHashTableSize());
    map.InitHashTable(101);
    EXPECT_EQ(101u, map.GetHashTableSize());
    int values[20] = {};
    for (int i = 0; i < 20; ++i) {
        map[KeyOf(i).c_str()] = &values[i];
    }
    map.InitHashTable(7);
    EXPECT_EQ(7u, map.GetHashTableSize());
    EXPECT_EQ(20u, (Visits(map).size()));
    for (int i = 0; i < 20; ++i) {
        void* found = nullptr;
        ASSERT_TRUE(map.Lookup(KeyOf(i).c_str(), found)) << i;
        EXPECT_EQ(&values[i], found);
    }
    map.RemoveAll();
    EXPECT_EQ(7u, map.GetHashTableSize());
}

TEST(CMapStringTest, NextAssocReturnsValuesAndStopsAtTheEnd) {
    CMapStringToString map;
    map.SetAt(L"a", L"1");
    map.SetAt(L"b", L"2");
    std::map<std::wstring, std::wstring> seen;
    POSITION pos = map.GetStartPosition();
    while (pos != nullptr) {
        CString key;
        CString value;
        map.GetNextAssoc(pos, key, value);
        seen[key.GetString()] = value.GetString();
    }
    EXPECT_EQ((std::map<std::wstring, std::wstring>{{L"a", L"1"}, {L"b", L"2"}}), seen);

    CString key(L"unchanged");
    CString value;
    map.GetNextAssoc(pos, key, value);
    EXPECT_EQ(nullptr, pos);
    EXPECT_TRUE(key == L"unchanged");
}

} // namespace
