#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "CMapStringI.h"

namespace {

std::vector<CString> Keys(const CMapStringIToPtr& map) {
    std::vector<CString> keys;
    CString key;
    void* value;
    for (POSITION position = map.GetStartPosition(); position != nullptr;) {
        map.GetNextAssoc(position, key, value);
        keys.push_back(key);
    }
    return keys;
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

TEST(CMapStringIToPtr, AnySpellingFindsTheEntryAndTheFirstSpellingStays) {
    int a = 1, b = 2, c = 3;
    CMapStringIToPtr map;
    map[L"Alpha"] = &a;
    map[L"Beta"] = &b;

    void* value = nullptr;
    EXPECT_TRUE(map.Lookup(L"ALPHA", value));
    EXPECT_EQ(value, &a);
    EXPECT_TRUE(map.Lookup(L"Alpha", value));
    EXPECT_EQ(value, &a);

    value = &c;
    EXPECT_FALSE(map.Lookup(L"Gamma", value));
    EXPECT_EQ(value, &c);

    map[L"beta"] = &c;
    map.SetAt(L"ALPHA", &b);
    EXPECT_EQ(map.GetCount(), 2);
    std::vector<CString> keys = Keys(map);
    ASSERT_EQ(keys.size(), 2u);
    EXPECT_TRUE((keys[0] == L"Alpha" && keys[1] == L"Beta") ||
                (keys[0] == L"Beta" && keys[1] == L"Alpha"));
    EXPECT_TRUE(map.Lookup(L"BETA", value));
    EXPECT_EQ(value, &c);
    EXPECT_TRUE(map.Lookup(L"alpha", value));
    EXPECT_EQ(value, &b);

    EXPECT_TRUE(map.RemoveKey(L"bEtA"));
    EXPECT_FALSE(map.RemoveKey(L"beta"));
    EXPECT_EQ(map.GetCount(), 1);
    EXPECT_TRUE(map.RemoveKey(L"Alpha"));
    EXPECT_EQ(map.GetCount(), 0);
    EXPECT_FALSE(map.RemoveKey(L"alpha"));

    map[L"delta"] = &a;
    EXPECT_EQ(Keys(map), std::vector<CString>{L"delta"});
}

TEST(CMapStringIToPtr, TwoStoredSpellingsResolveInIterationOrder) {
    int upper = 1, lower = 2;
    CMapStringIToPtr map;
    // Only the framework base can store two spellings of one key.
    CMapStringToPtr& exact = map;
    exact[L"KEY"] = &upper;
    exact[L"key"] = &lower;

    const std::vector<CString> keys = Keys(map);
    ASSERT_EQ(keys.size(), 2u);
    void* first = keys[0] == L"KEY" ? &upper : &lower;

    void* value = nullptr;
    EXPECT_TRUE(map.Lookup(L"Key", value));
    EXPECT_EQ(value, first);
    EXPECT_TRUE(map.Lookup(L"key", value));
    EXPECT_EQ(value, &lower);

    EXPECT_TRUE(map.RemoveKey(L"Key"));
    EXPECT_EQ(Keys(map), std::vector<CString>{keys[1]});
}

TEST(CMapStringIToString, AnySpellingFindsTheEntryAndTheFirstSpellingStays) {
    CMapStringIToString map(4);
    map[L"Section"] = L"one";
    map[L"SECTION"] += L"+two";
    map.SetAt(L"other", L"three");
    EXPECT_EQ(map.GetCount(), 2);

    CString value = L"unchanged";
    EXPECT_FALSE(map.Lookup(L"missing", value));
    EXPECT_EQ(value, L"unchanged");
    EXPECT_TRUE(map.Lookup(L"section", value));
    EXPECT_EQ(value, L"one+two");
    EXPECT_TRUE(map.Lookup(L"OTHER", value));
    EXPECT_EQ(value, L"three");

    CString stored;
    for (POSITION position = map.GetStartPosition(); position != nullptr;) {
        CString key;
        map.GetNextAssoc(position, key, value);
        if (value == L"one+two")
            stored = key;
    }
    EXPECT_EQ(stored, L"Section");

    EXPECT_TRUE(map.RemoveKey(L"sEcTiOn"));
    EXPECT_FALSE(map.Lookup(L"Section", value));
    EXPECT_EQ(map.GetCount(), 1);
    map.RemoveAll();
    EXPECT_EQ(map.GetCount(), 0);
}

TEST(CMapStringIToObject, DeletesWhatItReplacesOrRemovesAndNothingItStillHolds) {
    int deaths = 0;
    Counted* first = new Counted(deaths);
    Counted* second = new Counted(deaths);
    auto map = std::make_unique<CMapStringIToObject>();

    EXPECT_FALSE(map->Set(L"Shape", first));
    // The same object again, under another spelling: nothing changes.
    EXPECT_TRUE(map->Set(L"SHAPE", first));
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(map->GetCount(), 1);

    EXPECT_TRUE(map->Set(L"shape", second));
    EXPECT_EQ(deaths, 1); // first
    CObject* found = nullptr;
    EXPECT_TRUE(map->Lookup(L"Shape", found));
    EXPECT_EQ(found, second);

    // Assigning through the slot deletes nothing: the caller keeps the old object.
    Counted* third = new Counted(deaths);
    map->operator[](L"SHAPE") = third;
    EXPECT_EQ(deaths, 1);
    EXPECT_EQ(map->GetCount(), 1);
    delete second;
    EXPECT_EQ(deaths, 2);

    // RemoveKey2 hands the object over.
    EXPECT_EQ(map->RemoveKey2(L"missing"), nullptr);
    EXPECT_EQ(map->RemoveKey2(L"shape"), third);
    EXPECT_EQ(map->GetCount(), 0);
    EXPECT_EQ(deaths, 2);
    delete third;
    EXPECT_EQ(deaths, 3);

    EXPECT_FALSE(map->Set(L"a", new Counted(deaths)));
    EXPECT_FALSE(map->Set(L"b", new Counted(deaths)));
    EXPECT_FALSE(map->Set(L"c", nullptr));
    EXPECT_FALSE(map->Set(L"d", new Counted(deaths)));
    EXPECT_TRUE(map->RemoveKey(L"A"));
    EXPECT_EQ(deaths, 4);
    EXPECT_FALSE(map->RemoveKey(L"A"));
    EXPECT_TRUE(map->RemoveKey(L"C"));
    EXPECT_EQ(map->GetCount(), 2);

    POSITION position = map->GetStartPosition();
    CString key;
    CObject* object = nullptr;
    int visited = 0;
    while (position != nullptr) {
        map->GetNextAssoc(position, key, object);
        EXPECT_TRUE(key == L"b" || key == L"d");
        EXPECT_NE(object, nullptr);
        ++visited;
    }
    EXPECT_EQ(visited, 2);

    map->RemoveAll();
    EXPECT_EQ(deaths, 6);
    EXPECT_EQ(map->GetCount(), 0);

    map->Set(L"e", new Counted(deaths));
    map.reset();
    EXPECT_EQ(deaths, 7);
}
