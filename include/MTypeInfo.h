#pragma once
/// @file
/// Readable names of C++ types at run time, the same text on every build of the library.
///
/// Names are demangled from the compiler's mangled form (the Itanium C++ ABI, used by every
/// build of the library) and then normalised, so that a log line or a message reads alike on
/// Windows and elsewhere:
/// - the library's inline ABI namespaces vanish (`std::__cxx11::basic_string` reads
///   `std::basic_string`);
/// - closing template brackets are written together (`std::vector<std::vector<int>>`);
/// - the standard string and string-view specialisations read as their usual names
///   (`std::string`, `std::wstring`, `std::u16string`, `std::u32string`, `std::string_view`,
///   ...), default arguments included; other default template arguments stay, as written by
///   the demangler (`std::vector<int, std::allocator<int>>`).
/// As with `typeid`, the name of a type drops its top-level `const` and references.
#include <string>
#include <typeinfo>

#include "KelBaseExport.h"

/// Readable run-time type names.
class KELBASE_API MTypeInfo {
public:
    /// The readable name of type `T`.
    template <class T> static std::string Name() { return Demangle(typeid(T).name()); }

    /// The readable name of the dynamic type of `object` when its type is polymorphic (the
    /// most derived class), else of its static type.
    template <class T> static std::string Name(const T& object) {
        return Demangle(typeid(object).name());
    }

    /// The readable form of a mangled type name as `std::type_info::name` gives it. A text that
    /// is no mangled name comes back as it is; null gives the empty string.
    static std::string Demangle(const char* mangled);
};
