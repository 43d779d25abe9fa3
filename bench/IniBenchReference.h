#pragma once
// The lookup ini_bench measures MIniFile against: one value read from the file, which is read
// again for every lookup.
#include <string>

const char* ReferenceName();
std::wstring ReferenceLookup(const std::wstring& path, const std::wstring& section,
                             const std::wstring& key);
