#include <stdexcept>

#include <gtest/gtest.h>

#include "CByteArray.h"
#include "CStringArray.h"

namespace {

CString Joined(const CStringArray& array) {
    CString text;
    for (INT_PTR i = 0; i < array.GetSize(); ++i) {
        text += array[i];
        text += L'|';
    }
    return text;
}

TEST(CArrayTest, StringArrayInsertsRemovesAndResizes) {
    CStringArray names;
    EXPECT_TRUE(names.IsEmpty());
    EXPECT_EQ(0, names.Add(L"a"));
    EXPECT_EQ(1, names.Add(CString(L"c")));
    names.InsertAt(1, L"b");
    names.InsertAt(0, L"z", 2);
    EXPECT_TRUE(Joined(names) == L"z|z|a|b|c|");

    names.RemoveAt(0, 2);
    EXPECT_TRUE(Joined(names) == L"a|b|c|");
    names.RemoveAt(2);
    EXPECT_TRUE(Joined(names) == L"a|b|");
    EXPECT_THROW(names.RemoveAt(1, 2), std::out_of_range);

    // Inserting beyond the end pads with empty strings first.
    names.InsertAt(4, L"e");
    EXPECT_TRUE(Joined(names) == L"a|b|||e|");
    names.SetSize(1);
    EXPECT_EQ(1, names.GetCount());
    names.SetAtGrow(2, L"g");
    EXPECT_TRUE(Joined(names) == L"a||g|");

    names.SetAt(1, L"m");
    names[0] = L"n";
    EXPECT_TRUE(names.GetAt(1) == L"m");
    EXPECT_TRUE(Joined(names) == L"n|m|g|");
    EXPECT_THROW(names.GetAt(3), std::out_of_range);
    EXPECT_THROW(names.SetAt(-1, L"x"), std::out_of_range);

    names.RemoveAll();
    EXPECT_EQ(0, names.GetSize());
}

TEST(CArrayTest, ByteArrayDataIsContiguousAndCopies) {
    CByteArray bytes;
    for (BYTE b = 0; b < 5; ++b) {
        bytes.Add(static_cast<BYTE>(b * 3));
    }
    ASSERT_EQ(5, bytes.GetSize());
    const BYTE* data = bytes.GetData();
    EXPECT_EQ(12, data[4]);

    CByteArray more;
    more.Add(200);
    EXPECT_EQ(5, bytes.Append(more));
    EXPECT_EQ(200, bytes[5]);

    CByteArray copy;
    copy.Copy(bytes);
    copy.SetAt(0, 99);
    EXPECT_EQ(6, copy.GetSize());
    EXPECT_EQ(0, bytes[0]);
    EXPECT_EQ(99, copy[0]);

    copy.InsertAt(1, &more);
    EXPECT_EQ(200, copy[1]);
    EXPECT_EQ(3, copy[2]);
}

} // namespace
