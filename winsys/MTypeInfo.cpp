#include "MTypeInfo.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace {

void ReplaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

// The same text on every build: what the demangler writes depends on the standard library's
// inline namespaces and its version's bracket spacing.
std::string Normalise(std::string name) {
    ReplaceAll(name, "std::__cxx11::", "std::");
    ReplaceAll(name, "std::__1::", "std::");
    // "> > >" needs a second pass: each replacement consumes the bracket the next one needs.
    while (name.find("> >") != std::string::npos)
        ReplaceAll(name, "> >", ">>");
    static const char* const characters[][2] = {
        {"char", ""}, {"wchar_t", "w"}, {"char16_t", "u16"}, {"char32_t", "u32"}};
    for (const auto& [character, prefix] : characters) {
        const std::string traits = std::string("std::char_traits<") + character + ">";
        ReplaceAll(name,
                   "std::basic_string<" + std::string(character) + ", " + traits +
                       ", std::allocator<" + character + ">>",
                   "std::" + std::string(prefix) + "string");
        ReplaceAll(name, "std::basic_string_view<" + std::string(character) + ", " + traits + ">",
                   "std::" + std::string(prefix) + "string_view");
    }
    return name;
}

} // namespace

std::string MTypeInfo::Demangle(const char* mangled) {
    if (!mangled)
        return std::string();
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> demangled(
        abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    return Normalise(status == 0 && demangled ? demangled.get() : mangled);
}
