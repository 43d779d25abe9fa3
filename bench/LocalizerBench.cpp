// ProgressLocalizer::Localize against the plain first-match scan of the same table (length
// first, then contents) and against a std::unordered_map, over every key of the table and as
// many unknown keys. Each lookup returns the message as a new std::wstring, as Localize does.
#include <cstdio>
#include <string>
#include <unordered_map>
#include <vector>

#include "BenchTiming.h"
#include "ProgressLocalizer.h"
#include "ProgressLocalizerTable.h"

namespace {

using KelBase::ProgressLocalizerTable::entries;

std::wstring Scan(const std::string& key) {
    for (const auto& entry : entries) {
        if (entry.key.size() == key.size() && entry.key == key)
            return std::wstring(entry.message);
    }
    return std::wstring();
}

// Keys with their text in place, so that a lookup builds no key.
std::vector<std::string> Keys(bool known) {
    std::vector<std::string> keys;
    for (const auto& entry : entries)
        keys.push_back(std::string(entry.key) + (known ? "" : ".9"));
    return keys;
}

template <class Lookup> double Time(const std::vector<std::string>& keys, Lookup&& lookup) {
    std::size_t length = 0;
    const double ns = KelBench::NsPerCall(
        [&](std::size_t i) { length += lookup(keys[i % keys.size()]).size(); }, 2000000);
    KelBench::Barrier();
    return length == static_cast<std::size_t>(-1) ? 0.0 : ns; // keeps the results alive
}

} // namespace

int main() {
    std::unordered_map<std::string, std::wstring> map;
    for (const auto& entry : entries)
        map.emplace(entry.key, entry.message);
    auto hashed = [&map](const std::string& key) {
        const auto found = map.find(key);
        return found == map.end() ? std::wstring() : found->second;
    };
    for (const bool known : {true, false}) {
        const std::vector<std::string> keys = Keys(known);
        std::printf("%s keys:\n", known ? "table" : "unknown");
        const double scanNs = Time(keys, Scan);
        std::printf("%-52s %9.2f ns/call\n", "first-match scan (reference)", scanNs);
        KelBench::Report("std::unordered_map", Time(keys, hashed), scanNs);
        KelBench::Report("ProgressLocalizer::Localize",
                         Time(keys, KelBase::ProgressLocalizer::Localize), scanNs);
    }
    return 0;
}
