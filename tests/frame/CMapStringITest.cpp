#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "CMapStringI.h"

namespace {

template <class Value, class Map> std::vector<CString> SortedKeys(const Map& map) {
    std::vector<CString> keys;
    CString key;
    Value value;
    for (POSITION position = map.GetStartPosition(); position != nullptr; keys.push_back(key))
        map.GetNextAssoc(position, key, value);
    std::sort(keys.begin(), keys.end());
    return keys;
}

// Any spelling reaches the one entry of a key, which keeps the spelling it was added with.
template <class Map, class Base, class Value> void CheckOneEntryPerKey(Value first, Value second) {
    Map map;
    map[L"Alpha"] = first;
    map[L"ALPHA"] = second;
    map.SetAt(L"Beta", first);
    map.SetAt(L"bEtA", second);
    EXPECT_EQ(SortedKeys<Value>(map), (std::vector<CString>{L"Alpha", L"Beta"}));

    Value value = first;
    EXPECT_FALSE(map.Lookup(L"Gamma", value));
    EXPECT_EQ(value, first); // a failed lookup leaves the value alone
    EXPECT_TRUE(map.Lookup(L"alpha", value));
    EXPECT_EQ(value, second);
    EXPECT_TRUE(map.Lookup(L"Beta", value));
    EXPECT_EQ(value, second);
    EXPECT_TRUE(map.RemoveKey(L"BETA"));
    EXPECT_FALSE(map.RemoveKey(L"beta"));

    // Only the framework base can store a second spelling; the exact one is tried first.
    static_cast<Base&>(map)[L"ALPHA"] = first;
    EXPECT_TRUE(map.Lookup(L"ALPHA", value));
    EXPECT_EQ(value, first);
    EXPECT_TRUE(map.Lookup(L"Alpha", value));
    EXPECT_EQ(value, second);
    EXPECT_TRUE(map.RemoveKey(L"ALPHA"));
    EXPECT_EQ(SortedKeys<Value>(map), std::vector<CString>{L"Alpha"});
}

// Counts its own destruction, so the tests see exactly which objects the map deleted.
struct Counted : CObject {
    explicit Counted(int& deaths) : deaths(deaths) {}
    ~Counted() override { ++deaths; }
    int& deaths;
};

} // namespace

TEST(CMapStringI, AnySpellingReachesTheOneEntryOfAKey) {
    int a = 1, b = 2;
    CheckOneEntryPerKey<CMapStringIToPtr, CMapStringToPtr, void*>(&a, &b);
    CheckOneEntryPerKey<CMapStringIToString, CMapStringToString, CString>(L"one", L"two");
}

TEST(CMapStringIToObject, DeletesWhatItReplacesOrRemovesAndNothingItStillHolds) {
    int deaths = 0;
    auto map = std::make_unique<CMapStringIToObject>();
    Counted* first = new Counted(deaths);
    EXPECT_FALSE(map->Set(L"Shape", first));
    // The same object again, under another spelling: nothing changes.
    EXPECT_TRUE(map->Set(L"SHAPE", first));
    EXPECT_EQ(deaths, 0);
    Counted* second = new Counted(deaths);
    EXPECT_TRUE(map->Set(L"shape", second));
    EXPECT_EQ(deaths, 1);
    CObject* found = nullptr;
    EXPECT_TRUE(map->Lookup(L"Shape", found));
    EXPECT_EQ(found, second);
    EXPECT_EQ(map->GetCount(), 1);

    // Assigning through the slot deletes nothing, and RemoveKey2 hands the object over.
    std::unique_ptr<Counted> third(new Counted(deaths)), kept(second);
    (*map)[L"SHAPE"] = third.get();
    EXPECT_EQ(map->RemoveKey2(L"missing"), nullptr);
    EXPECT_EQ(map->RemoveKey2(L"shape"), third.get());
    EXPECT_EQ(map->GetCount(), 0);
    EXPECT_EQ(deaths, 1);

    for (const wchar_t* key : {L"a", L"b", L"c"})
        map->Set(key, new Counted(deaths));
    EXPECT_TRUE(map->RemoveKey(L"A"));
    EXPECT_FALSE(map->RemoveKey(L"A"));
    EXPECT_EQ(deaths, 2);
    map->RemoveAll();
    EXPECT_EQ(deaths, 4);
    EXPECT_EQ(map->GetCount(), 0);
    map->Set(L"d", new Counted(deaths));
    map.reset();
    EXPECT_EQ(deaths, 5);
}
