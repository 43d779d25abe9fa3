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
    for (POSITION position = map.GetStartPosition(); position != nullptr;) {
        map.GetNextAssoc(position, key, value);
        keys.push_back(key);
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

// Any spelling reaches the one entry of a key, which keeps the spelling it was added with.
template <class Map, class Value> void CheckOneEntryPerKey(Value first, Value second) {
    Map map;
    map[L"Alpha"] = first;
    map[L"ALPHA"] = second;
    map.SetAt(L"Beta", first);
    map.SetAt(L"bEtA", second);
    EXPECT_EQ(SortedKeys<Value>(map), (std::vector<CString>{L"Alpha", L"Beta"}));

    Value value = first;
    EXPECT_FALSE(map.Lookup(L"Gamma", value));
    EXPECT_EQ(value, first);
    EXPECT_TRUE(map.Lookup(L"alpha", value));
    EXPECT_EQ(value, second);
    EXPECT_TRUE(map.Lookup(L"Beta", value));
    EXPECT_EQ(value, second);

    EXPECT_TRUE(map.RemoveKey(L"BETA"));
    EXPECT_FALSE(map.RemoveKey(L"beta"));
    EXPECT_EQ(SortedKeys<Value>(map), std::vector<CString>{L"Alpha"});
}

// Counts its own destruction, so the tests see exactly which objects the map deleted.
class Counted : public CObject {
public:
    explicit Counted(int& deaths) : m_deaths(deaths) {}
    ~Counted() override { ++m_deaths; }

private:
    int& m_deaths;
};

} // namespace

TEST(CMapStringI, AnySpellingReachesTheOneEntryOfAKey) {
    int a = 1, b = 2;
    CheckOneEntryPerKey<CMapStringIToPtr, void*>(&a, &b);
    CheckOneEntryPerKey<CMapStringIToString, CString>(L"one", L"two");
}

TEST(CMapStringIToPtr, ExactSpellingIsTriedFirst) {
    int upper = 1, lower = 2;
    CMapStringIToPtr map;
    // Only the framework base can store two spellings of one key.
    CMapStringToPtr& exact = map;
    exact[L"KEY"] = &upper;
    exact[L"key"] = &lower;

    void* value = nullptr;
    EXPECT_TRUE(map.Lookup(L"key", value));
    EXPECT_EQ(value, &lower);
    EXPECT_TRUE(map.Lookup(L"KEY", value));
    EXPECT_EQ(value, &upper);
    EXPECT_TRUE(map.RemoveKey(L"key"));
    EXPECT_EQ(SortedKeys<void*>(map), std::vector<CString>{L"KEY"});
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
    Counted* third = new Counted(deaths);
    (*map)[L"SHAPE"] = third;
    EXPECT_EQ(map->RemoveKey2(L"missing"), nullptr);
    EXPECT_EQ(map->RemoveKey2(L"shape"), third);
    EXPECT_EQ(map->GetCount(), 0);
    EXPECT_EQ(deaths, 1);
    delete second;
    delete third;

    map->Set(L"a", new Counted(deaths));
    map->Set(L"b", new Counted(deaths));
    map->Set(L"c", new Counted(deaths));
    EXPECT_TRUE(map->RemoveKey(L"A"));
    EXPECT_FALSE(map->RemoveKey(L"A"));
    EXPECT_EQ(deaths, 4);
    map->RemoveAll();
    EXPECT_EQ(deaths, 6);
    EXPECT_EQ(map->GetCount(), 0);
    map->Set(L"d", new Counted(deaths));
    map.reset();
    EXPECT_EQ(deaths, 7);
}
