#include <cstring>
#include <stdexcept>

#include <gtest/gtest.h>

#include "CByteArray.h"
#include "CStringArray.h"

namespace {

CString Joined(const CStringArray& array) {
    CString text;
    for (INT_PTR i = 0; i < array.GetSize(); ++i) {
        text += array[i] + L'|';
    }
    return text;
}

TEST(CArrayTest, InsertRemoveAndGrowKeepTheOrder) {
    CStringArray names;
    EXPECT_EQ(0, names.Add(L"a"));
    EXPECT_EQ(1, names.Add(CString(L"c")));
    names.InsertAt(1, L"b");
    names.InsertAt(0, L"z", 2);
    EXPECT_STREQ(L"z|z|a|b|c|", Joined(names));
    names.RemoveAt(0, 2);
    EXPECT_THROW(names.RemoveAt(2, 2), std::out_of_range);
    names.InsertAt(4, L"e"); // beyond the end: padded with empty strings first
    EXPECT_STREQ(L"a|b|c||e|", Joined(names));
    names.SetSize(1);
    names.SetAtGrow(2, L"g");
    names[1] = L"m";
    EXPECT_STREQ(L"a|m|g|", Joined(names));
    EXPECT_THROW(names.GetAt(3), std::out_of_range);
    EXPECT_THROW(names.SetAt(-1, L"x"), std::out_of_range);

    CByteArray bytes;
    bytes.Add(1);
    CByteArray more;
    more.Add(200);
    more.Add(201);
    EXPECT_EQ(1, bytes.Append(more)); // the index of the first appended element
    bytes.InsertAt(1, &more);
    const BYTE expected[] = {1, 200, 201, 200, 201};
    ASSERT_EQ(5, bytes.GetSize());
    EXPECT_EQ(0, std::memcmp(expected, bytes.GetData(), sizeof expected));
}

} // namespace
