#pragma once
// A settings file written by hand as people write them (odd spacing, repeated keys and sections,
// quotes, comments, keys before the first header, no line end at the end) and what the system's
// profile functions read from it: MIniFile must read the same, in every encoding.

// A key, and its value as written or as read.
struct IniEntry {
    const wchar_t* section;
    const wchar_t* key;
    const wchar_t* value;
};

struct IniInt {
    const wchar_t* key;
    int value;
};

inline constexpr wchar_t kMissing[] = L"<missing>";

inline constexpr wchar_t kHandWritten[] =
    L"top = outside\r\n"
    L"  [ Sp ]  trailing text\r\n"
    L"  Key  =  v a l  \r\n"
    L"key=second\r\n"
    L"; c = x\r\n"
    L"\tq\t=\t\"quoted\"\t\r\n"
    L"sq='single'\r\n"
    L"half=\"open\r\n"
    L"noeq\r\n"
    L"e=a=b ; not a comment\r\n"
    L"caf\u00e9=cr\u00e8me\r\n"
    L"[sp]\r\n"
    L"Key=in the second section\r\n"
    L"only=in the second section\r\n"
    L"[Unclosed\r\n"
    L"[Last]\n"
    L"lf=alone\n"
    L"n = 42 \r\n"
    L"hex=0x1F\r\noct=0o17\r\nbin=-0b101\r\nwrap=99999999999\r\ntail=42abc\r\n"
    L"end=final";

inline constexpr IniEntry kHandWrittenValues[] = {
    {L"Sp", L"key", L"v a l"},     // the first line of a key wins, in any case
    {L" SP ", L" KEY ", L"v a l"}, // names without their blanks
    {L"sp", L"q", L"quoted"},      // one pair of matching quotes removed
    {L"sp", L"sq", L"single"},
    {L"sp", L"half", L"\"open"},           // a lone quote stays
    {L"sp", L"e", L"a=b ; not a comment"}, // the first '=' splits, ';' belongs to the value
    {L"SP", L"caf\u00e9", L"cr\u00e8me"},
    {L"", L"top", L"outside"}, // keys before the first header
    {L"last", L"lf", L"alone"},
    {L"last", L"end", L"final"},   // no line end at the end of the file
    {L"Sp", L"only", kMissing},    // only the first section of a name counts
    {L"sp", L"noeq", kMissing},    // no '=', no key
    {L"Unclosed", L"x", kMissing}, // "[Unclosed" is no header
    {L"nosuch", L"key", kMissing},
};

// The integers of [Last]: blanks, prefixes for other bases, 32 bits kept of a larger number,
// digits up to the first other character.
inline constexpr IniInt kHandWrittenInts[] = {{L"n", 42},   {L"hex", 31},          {L"oct", 15},
                                              {L"bin", -5}, {L"wrap", 1215752191}, {L"tail", 42}};
