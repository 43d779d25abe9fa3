// Type names: the same expected text on every build.
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "MTypeInfo.h"

namespace kel_names {

struct Base {
    virtual ~Base() = default;
};
struct Derived : Base {};
struct Plain {};
struct PlainChild : Plain {};
template <class T> struct Box {};
enum class Colour { Red };

} // namespace kel_names

namespace {

struct Hidden {};

} // namespace

TEST(MTypeInfo, NamesOfTypesReadAlikeOnEveryBuild) {
    using namespace kel_names;
    EXPECT_EQ(MTypeInfo::Name<int>(), "int");
    EXPECT_EQ(MTypeInfo::Name<wchar_t>(), "wchar_t");
    EXPECT_EQ(MTypeInfo::Name<const int*>(), "int const*");
    EXPECT_EQ(MTypeInfo::Name<int (*)(double)>(), "int (*)(double)");
    // Top-level const and references are not part of the name, as with typeid.
    EXPECT_EQ(MTypeInfo::Name<const Derived&>(), "kel_names::Derived");

    EXPECT_EQ(MTypeInfo::Name<Colour>(), "kel_names::Colour");
    EXPECT_EQ(MTypeInfo::Name<Hidden>(), "(anonymous namespace)::Hidden");
    EXPECT_EQ(MTypeInfo::Name<Box<Box<Box<int>>>>(),
              "kel_names::Box<kel_names::Box<kel_names::Box<int>>>");

    EXPECT_EQ(MTypeInfo::Name<std::string>(), "std::string");
    EXPECT_EQ(MTypeInfo::Name<std::wstring_view>(), "std::wstring_view");
    using Map = std::map<std::wstring, int>;
    EXPECT_EQ(MTypeInfo::Name<Map>(), "std::map<std::wstring, int, std::less<std::wstring>, "
                                      "std::allocator<std::pair<std::wstring const, int>>>");
    EXPECT_EQ(MTypeInfo::Name<std::unique_ptr<Box<std::string>>>(),
              "std::unique_ptr<kel_names::Box<std::string>, "
              "std::default_delete<kel_names::Box<std::string>>>");
}

TEST(MTypeInfo, ObjectsGiveTheirDynamicType) {
    using namespace kel_names;
    Derived derived;
    const Base& base = derived;
    EXPECT_EQ(MTypeInfo::Name(base), "kel_names::Derived");
    // A class without virtual functions has no dynamic type: the static one is named.
    PlainChild child;
    const Plain& plain = child;
    EXPECT_EQ(MTypeInfo::Name(plain), "kel_names::Plain");
    // A pointer is an object of pointer type.
    const Base* pointer = &derived;
    EXPECT_EQ(MTypeInfo::Name(pointer), "kel_names::Base const*");
    EXPECT_EQ(MTypeInfo::Name(*pointer), "kel_names::Derived");
    EXPECT_EQ(MTypeInfo::Name(std::wstring(L"text")), "std::wstring");
}

TEST(MTypeInfo, DemangleTakesAnyText) {
    EXPECT_EQ(MTypeInfo::Demangle(typeid(kel_names::Box<double>).name()), "kel_names::Box<double>");
    EXPECT_EQ(MTypeInfo::Demangle(nullptr), "");
    EXPECT_EQ(MTypeInfo::Demangle("not a mangled name"), "not a mangled name");
    EXPECT_EQ(MTypeInfo::Demangle("St6vectorIiSaIiEE"), "std::vector<int, std::allocator<int>>");
}
