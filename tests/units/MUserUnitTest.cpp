#include <gtest/gtest.h>

#include <cwchar>
#include <memory>
#include <string>

#include "KelResource.h"
#include "MInternalUnits.h"
#include "MUserUnit.h"

using KelSDK::Common::MInternalUnits;

namespace {

// Counts its notifications; an optional action runs inside the notification.
class Counter : public IUserUnitDependent {
public:
    void OnUserUnitChanged() override {
        ++calls;
        if (action)
            action();
    }
    int calls = 0;
    void (*action)() = nullptr;
};

// Registered while this test module starts, after the library's start-up objects: it is
// notified only if the process-wide unit existed before it and kept its registration.
Counter g_registeredAtStartUp;
const MUserUnit::UNIT_TYPE g_unitAtStartUp = MUserUnit::GetInstance().GetUnit();

// The application's texts of the two units.
struct UnitTexts : IResStringWrapper {
    bool LoadStringEx(std::wstring& text, unsigned int id) override {
        static const wchar_t* const texts[] = {L"mm", L"Millimetres", L"in", L"Inches"};
        if (id < 672 || id > 675)
            return false;
        text = texts[id - 672];
        return true;
    }
    int LoadCharEx(wchar_t*, unsigned int, unsigned int) override { return 0; }
};

class UserUnitTest : public ::testing::Test {
protected:
    void SetUp() override { SetMResStringWrapper(&m_texts); }
    void TearDown() override {
        SetMResStringWrapper(nullptr);
        MUserUnit::GetInstance().SetUnit(MUserUnit::UNIT_MM);
        MInternalUnits::GetInstance().SetConversionFactor(1.0);
    }
    UnitTexts m_texts;
};

} // namespace

TEST_F(UserUnitTest, StartUpInstanceServesDependentsOfOtherModules) {
    EXPECT_EQ(g_unitAtStartUp, MUserUnit::UNIT_MM);
    const int before = g_registeredAtStartUp.calls;
    MUserUnit::GetInstance().SetUnit(MUserUnit::UNIT_INCH);
    EXPECT_EQ(g_registeredAtStartUp.calls, before + 1);
}

TEST_F(UserUnitTest, NotificationsOnlyOnChangeToRegisteredDependents) {
    MUserUnit& unit = MUserUnit::GetInstance();
    Counter a;
    auto b = std::make_unique<Counter>();
    Counter copy(a);
    unit.SetUnit(MUserUnit::UNIT_INCH);
    unit.SetUnit(MUserUnit::UNIT_INCH); // the same unit again: nobody is told
    EXPECT_EQ(a.calls, 1);
    EXPECT_EQ(b->calls, 1);
    EXPECT_EQ(copy.calls, 0); // a copy is not registered

    // Assignment leaves both registrations alone; a destroyed dependent is no longer called
    // (the sanitizers would see it).
    copy = a;
    b.reset();
    unit.SetUnit(MUserUnit::UNIT_MM);
    EXPECT_EQ(a.calls, 2);
    EXPECT_EQ(copy.calls, 1);

    // An unknown unit is stored, keeps the previous unit's factor and texts, and tells nobody;
    // leaving it for a valid unit is a change.
    unit.SetUnit(static_cast<MUserUnit::UNIT_TYPE>(7));
    EXPECT_EQ(unit.GetUnit(), 7);
    EXPECT_EQ(unit.ConvertFromUIToMm(2.0), 2.0);
    EXPECT_STREQ(unit.GetAbbreviation(), L"mm");
    EXPECT_EQ(a.calls, 2);
    unit.SetUnit(MUserUnit::UNIT_MM);
    EXPECT_EQ(a.calls, 3);
}

TEST_F(UserUnitTest, DependentsMayLeaveDuringANotification) {
    static std::unique_ptr<Counter> leaving[2];
    static int told;
    told = 0;
    for (auto& dependent : leaving)
        dependent = std::make_unique<Counter>();
    // Whichever is told first destroys both; the other is then not called.
    leaving[0]->action = leaving[1]->action = [] {
        ++told;
        for (auto& dependent : leaving)
            dependent.reset();
    };
    Counter stays;
    MUserUnit::GetInstance().SetUnit(MUserUnit::UNIT_INCH);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(stays.calls, 1);
}

TEST_F(UserUnitTest, TextsAndFactorFollowTheUnit) {
    MUserUnit& unit = MUserUnit::GetInstance();
    unit.SetUnit(MUserUnit::UNIT_INCH);
    EXPECT_STREQ(unit.GetName(), L"Inches");
    EXPECT_STREQ(unit.GetAbbreviation(), L"in");
    EXPECT_EQ(MInternalUnits::GetInstance().GetConversionFactor(), 25.4);

    // Only the process-wide unit sets the internal units' factor.
    MUserUnit separate(MUserUnit::UNIT_MM);
    EXPECT_STREQ(separate.GetName(), L"Millimetres");
    EXPECT_EQ(MInternalUnits::GetInstance().GetConversionFactor(), 25.4);
    separate.SetUnit(MUserUnit::UNIT_INCH);
    unit.SetUnit(MUserUnit::UNIT_MM);
    EXPECT_EQ(MInternalUnits::GetInstance().GetConversionFactor(), 1.0);

    // Without a hook the texts are empty; setting the same unit again reloads them.
    SetMResStringWrapper(nullptr);
    unit.SetUnit(MUserUnit::UNIT_MM);
    EXPECT_STREQ(unit.GetName(), L"");
    EXPECT_STREQ(unit.GetAbbreviation(), L"");
    EXPECT_STREQ(separate.GetAbbreviation(), L"in");
}

// One conversion per power of the factor, to and from the user unit by turns.
TEST_F(UserUnitTest, InchConversions) {
    const MUserUnit inch(MUserUnit::UNIT_INCH);
    EXPECT_DOUBLE_EQ(inch.ConvertFromMmToUI(50.8), 2.0);
    EXPECT_DOUBLE_EQ(inch.ConvertFromUIToMmSquare(1.0), 645.16);
    EXPECT_DOUBLE_EQ(inch.ConvertFromMmCubedToUI(16387.064), 1.0);

    // STL units at the default resolution of 10000 per millimetre.
    EXPECT_EQ(inch.ConvertFromUIToStlUnits(-0.5), -127000);
    EXPECT_EQ(inch.ConvertFromUIToStlUnits(1e6), 2147483647); // clamped to 32 bits
    EXPECT_DOUBLE_EQ(inch.ConvertFromStlUnitsSquareToUI(254000.0 * 254000.0), 1.0);
    EXPECT_DOUBLE_EQ(inch.ConvertFromUIToStlUnitsCubed(0.5), 0.5 * 254000.0 * 254000.0 * 254000.0);

    // The STL conversions follow the internal resolution.
    ASSERT_TRUE(MInternalUnits::GetInstance().Set(1000.0));
    EXPECT_EQ(inch.ConvertFromUIToStlUnits(1.0), 25400);
    EXPECT_DOUBLE_EQ(inch.ConvertFromStlUnitsToUI(25400), 1.0);
    ASSERT_TRUE(MInternalUnits::GetInstance().Set(MInternalUnits::DefaultResolution));
}

TEST_F(UserUnitTest, PrintingIsCutToTheBuffer) {
    const MUserUnit inch(MUserUnit::UNIT_INCH), mm(MUserUnit::UNIT_MM);
    struct Case {
        const MUserUnit& unit;
        bool stl;
        double value;
        bool withUnit;
        std::wstring text;
    } const cases[] = {
        {inch, false, 25.4, true, L"    1 in"},  {inch, false, 3.175, false, L"0.125"},
        {inch, true, 254000, true, L"    1 in"}, {mm, false, 1.24, true, L"  1.2 mm"},
        {mm, true, 12345, false, L"  1.2"},
    };
    inch.PrintMmInUI(nullptr, 8, 25.4, true); // no buffer: nothing written, no crash
    for (const Case& c : cases) {
        for (size_t size = 0; size <= c.text.size() + 2; ++size) {
            SCOPED_TRACE(c.text + L" in " + std::to_wstring(size) + L" characters");
            wchar_t buffer[16];
            std::wmemset(buffer, L'#', 16);
            if (c.stl)
                c.unit.PrintStlUnitsInUI(buffer, size, static_cast<long>(c.value), c.withUnit);
            else
                c.unit.PrintMmInUI(buffer, size, c.value, c.withUnit);
            EXPECT_EQ(buffer[size], L'#'); // nothing written past the buffer
            if (size > 0) {
                EXPECT_EQ(std::wstring(buffer), c.text.substr(0, size - 1));
            }
        }
    }
}
