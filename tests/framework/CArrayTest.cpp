#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CByteArray.h"
#include "CStringArray.h"

namespace {

template <class ITEM, class ARRAY> std::vector<ITEM> Items(const ARRAY& array) {
    return {array.GetData(), array.GetData() + array.GetSize()};
}

TEST(CArrayTest, InsertRemoveAndGrowKeepTheOrder) {
    CStringArray names;
    EXPECT_EQ(0, names.Add(L"a"));
    names.Add(L"c");
    names.InsertAt(1, L"b");
    names.InsertAt(0, L"z", 2);
    names.RemoveAt(0, 2);
    names.InsertAt(4, L"e"); // beyond the end: padded with empty strings first
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"b", L"c", L"", L"e"}), Items<std::wstring>(names));
    EXPECT_THROW(names.RemoveAt(4, 2), std::out_of_range);
    names.SetSize(2);
    names.InsertAt(1, &names); // an array into itself
    names.SetAtGrow(5, L"g");
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"a", L"b", L"b", L"", L"g"}),
              Items<std::wstring>(names));
    EXPECT_THROW(names.GetAt(6), std::out_of_range);

    CByteArray bytes;
    CByteArray more;
    bytes.Add(1);
    more.Add(200);
    EXPECT_EQ(1, bytes.Append(more)); // the index of the first appended element
    EXPECT_EQ((std::vector<int>{1, 200}), Items<int>(bytes));
}

} // namespace
