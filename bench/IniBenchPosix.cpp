// Natively there are no profile functions; the kit's reader reads the file for each lookup too.
#include "IniBenchReference.h"
#include "MString.h"

const char* ReferenceName() {
    return "MString::LOAD_INI_STRING";
}

std::wstring ReferenceLookup(const std::wstring& path, const std::wstring& section,
                             const std::wstring& key) {
    MString value;
    value.LOAD_INI_STRING(path.c_str(), section.c_str(), key.c_str());
    return value.str();
}
