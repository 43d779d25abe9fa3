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

// Only the framework base can store a second spelling of a key (the map fuzzer holds the rest of
// the maps to a model): a lookup tries the exact spelling first.
template <class Map, class Base, class Value>
void CheckExactSpellingFirst(Value first, Value second) {
    Map map;
    map[L"Alpha"] = first;
    static_cast<Base&>(map)[L"ALPHA"] = second;
    Value value = first;
    EXPECT_TRUE(map.Lookup(L"ALPHA", value));
    EXPECT_EQ(value, second);
    EXPECT_TRUE(map.Lookup(L"Alpha", value));
    EXPECT_EQ(value, first);
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

TEST(CMapStringI, ExactSpellingIsTriedFirst) {
    int a = 1, b = 2;
    CheckExactSpellingFirst<CMapStringIToPtr, CMapStringToPtr, void*>(&a, &b);
    CheckExactSpellingFirst<CMapStringIToString, CMapStringToString, CString>(L"one", L"two");
}

// Assigning through the slot replaces without deleting; RemoveKey2 hands the object over.
TEST(CMapStringIToObject, SlotAssignmentDeletesNothing) {
    int deaths = 0;
    CMapStringIToObject map;
    std::unique_ptr<Counted> first(new Counted(deaths)), second(new Counted(deaths));
    EXPECT_FALSE(map.Set(L"Shape", first.get()));
    map[L"SHAPE"] = second.get();
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(map.RemoveKey2(L"shape"), second.get());
    EXPECT_EQ(map.GetCount(), 0);
    EXPECT_EQ(deaths, 0);
}
