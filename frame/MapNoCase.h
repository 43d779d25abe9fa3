#pragma once
// The two-step keyed access of the case-insensitive maps over a framework map whose keys
// compare exactly: the key as spelled first, then a scan in iteration order.
#include "CString.h"

namespace KelBase {

template <class Map, class Value> struct MapNoCase {
    // The first entry whose key equals `key` ignoring case.
    static bool Scan(const Map& map, const wchar_t* key, CString& stored, Value& value) {
        for (POSITION position = map.GetStartPosition(); position != nullptr;) {
            map.GetNextAssoc(position, stored, value);
            if (stored.CompareNoCase(key) == 0)
                return true;
        }
        return false;
    }

    // `value` is left as it was when nothing matches.
    static bool Lookup(const Map& map, const wchar_t* key, Value& value) {
        if (map.Lookup(key, value))
            return true;
        CString stored;
        Value found{};
        if (!Scan(map, key, stored, found))
            return false;
        value = found;
        return true;
    }

    static Value& At(Map& map, const wchar_t* key) {
        CString stored;
        Value found{};
        if (!map.Lookup(key, found) && Scan(map, key, stored, found))
            return map[stored];
        return map[key];
    }

    static bool Remove(Map& map, const wchar_t* key) {
        if (map.RemoveKey(key))
            return true;
        CString stored;
        Value found{};
        return Scan(map, key, stored, found) && map.RemoveKey(stored);
    }
};

} // namespace KelBase
