// units: a length between millimetres, inches and STL units, through the library's user units.
#include <cmath>
#include <optional>

#include "Keltool.h"
#include "StdBase.h"

namespace Keltool {
namespace {

// The texts the SDK's resource module gives the user units; keltool is the application here.
struct UnitTexts : IResStringWrapper {
    bool LoadStringEx(std::wstring& text, unsigned int id) override {
        static const wchar_t* const texts[] = {L"mm", L"millimetres", L"in", L"inches"};
        if (id < 672 || id > 675)
            return false;
        text = texts[id - 672];
        return true;
    }
    // The user units load through the slot above only.
    int LoadCharEx(wchar_t*, unsigned int, unsigned int) override { return 0; }
};

enum class Unit { Mm, Inch, Stl };

const std::pair<const wchar_t*, Unit> UnitNames[] = {
    {L"mm", Unit::Mm}, {L"in", Unit::Inch}, {L"stl", Unit::Stl}};

// A finite number written in full, nothing after it.
std::optional<double> ParseNumber(const std::wstring& text) {
    wchar_t* end = nullptr;
    const double value = std::wcstod(text.c_str(), &end);
    if (text.empty() || *end || !std::isfinite(value))
        return std::nullopt;
    return value;
}

MUserUnit::UNIT_TYPE UserUnit(Unit unit) {
    return unit == Unit::Inch ? MUserUnit::UNIT_INCH : MUserUnit::UNIT_MM;
}

int Units(const Arguments& arguments) {
    const Parsed parsed = SplitOptions(arguments);
    bool display = false;
    for (const std::wstring& option : parsed.options) {
        if (option == L"--display")
            display = true;
        else if (option.compare(0, 13, L"--resolution=") == 0) {
            const std::optional<double> resolution = ParseNumber(option.substr(13));
            if (!resolution || !IInternalUnitsObserver::SetInternalUnits(*resolution))
                return UsageError(L"units", L"not a positive resolution: " + option.substr(13));
        } else
            return UnknownOption(L"units", option);
    }
    const Arguments& words = parsed.operands;
    if (words.size() != 3)
        return UsageError(L"units", L"use units VALUE FROM TO");
    const std::optional<double> value = ParseNumber(words[0]);
    const std::optional<Unit> from = Choose(UnitNames, words[1]), to = Choose(UnitNames, words[2]);
    if (!value)
        return UsageError(L"units", L"not a number: " + words[0]);
    if (!from || !to)
        return NotAChoice(L"units", L"units", UnitNames, from ? words[2] : words[1]);
    // STL units are 32-bit integers.
    if (*from == Unit::Stl && (*value != std::floor(*value) || std::fabs(*value) > 2147483647.0))
        return UsageError(L"units", L"STL units are whole numbers of 32 bits: " + words[0]);

    UnitTexts texts;
    SetMResStringWrapper(&texts);
    const MUserUnit source(UserUnit(*from)), target(UserUnit(*to));
    const double mm = *from == Unit::Stl ? source.ConvertFromStlUnitsToUI(static_cast<long>(*value))
                                         : source.ConvertFromUIToMm(*value);
    std::wstring line;
    if (*to == Unit::Stl)
        line = std::to_wstring(target.ConvertFromUIToStlUnits(mm)) + L" stl";
    else if (display) {
        wchar_t shown[64];
        target.PrintMmInUI(shown, 64, mm, true);
        line = shown;
    } else
        line = StdBase::FormatString(L"%.10g %s", target.ConvertFromMmToUI(mm),
                                     target.GetAbbreviation());
    SetMResStringWrapper(nullptr);
    Print(line + L"\n");
    return Success;
}

} // namespace

KELTOOL_COMMAND(units, L"units", L"units [--display] [--resolution=R] VALUE FROM TO",
                L"Converts a length from unit FROM to unit TO and prints it with the unit: mm\n"
                L"(millimetres), in (inches) or stl (STL units, the SDK's integer mesh units,\n"
                L"rounded to the nearest one and kept within 32 bits).\n"
                L"  --display        print a length in mm or in as the user interface shows it\n"
                L"                   (\"%5.2g\" in millimetres, \"%5.3g\" in inches).\n"
                L"  --resolution=R   STL units per millimetre (default 10000).\n",
                Units, OwnOptions);

} // namespace Keltool
