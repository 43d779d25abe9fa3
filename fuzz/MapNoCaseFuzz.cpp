// The three case-insensitive maps as one sequence of operations decoded from the input, each
// applied to all of them, against a std::map keyed by the lowered key that remembers the
// spelling of the first insertion. After every step each map holds exactly the model's
// entries, and the object map's objects are alive exactly while an entry holds them.
#include <cstdint>
#include <cwctype>
#include <map>
#include <string>

#include "CMapStringI.h"
#include "FuzzSupport.h"

namespace {

class Counted : public CObject {
public:
    explicit Counted(int value) : value(value) { ++alive; }
    ~Counted() override { --alive; }
    const int value;
    static int alive;
};
int Counted::alive = 0;

// A value, or kNone for the empty one operator[] puts in a new entry.
constexpr int kNone = -1;

struct Entry {
    std::wstring spelling;
    int value;
};

std::wstring Lowered(std::wstring key) {
    for (wchar_t& c : key)
        c = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
    return key;
}

CString TextOf(int value) {
    return value == kNone ? CString() : CString(std::to_wstring(value).c_str());
}

void* PointerOf(int value) {
    return value == kNone ? nullptr : reinterpret_cast<void*>(static_cast<uintptr_t>(value) + 1);
}

using Model = std::map<std::wstring, Entry>;

// The map holds exactly the model's entries, spelled as first inserted, with the values that
// `valueOf` reads from its own.
template <class Value, class Map, class ValueOf>
void CheckEntries(const Map& map, const Model& model, ValueOf valueOf) {
    FUZZ_CHECK(map.GetCount() == static_cast<INT_PTR>(model.size()));
    CString key;
    Value value{};
    for (POSITION at = map.GetStartPosition(); at != nullptr;) {
        map.GetNextAssoc(at, key, value);
        const auto it = model.find(Lowered(key.GetString()));
        FUZZ_CHECK(it != model.end());
        FUZZ_CHECK(it->second.spelling == key.GetString());
        FUZZ_CHECK(valueOf(value) == it->second.value);
    }
}

struct Maps {
    CMapStringIToString strings;
    CMapStringIToPtr pointers;
    CMapStringIToObject objects;
    Model model;

    void Check() const {
        CheckEntries<CString>(strings, model, [](const CString& text) {
            return text.IsEmpty() ? kNone : std::stoi(text.GetString());
        });
        CheckEntries<void*>(pointers, model, [](void* pointer) {
            return pointer ? static_cast<int>(reinterpret_cast<uintptr_t>(pointer) - 1) : kNone;
        });
        CheckEntries<CObject*>(objects, model, [](CObject* object) {
            return object ? static_cast<Counted*>(object)->value : kNone;
        });
        int held = 0;
        for (const auto& entry : model)
            held += entry.second.value != kNone;
        FUZZ_CHECK(Counted::alive == held);
    }

    void Set(const std::wstring& key, int value) {
        strings.SetAt(key.c_str(), TextOf(value));
        pointers.SetAt(key.c_str(), PointerOf(value));
        const bool existed = objects.Set(key.c_str(), new Counted(value));
        const auto [it, added] = model.try_emplace(Lowered(key), Entry{key, value});
        it->second.value = value;
        FUZZ_CHECK(existed == !added);
    }

    void Lookup(const std::wstring& key) const {
        const auto it = model.find(Lowered(key));
        CString text = L"untouched";
        void* pointer = &text;
        CObject* object = nullptr;
        const bool found = it != model.end();
        FUZZ_CHECK(strings.Lookup(key.c_str(), text) == found);
        FUZZ_CHECK(pointers.Lookup(key.c_str(), pointer) == found);
        FUZZ_CHECK(objects.Lookup(key.c_str(), object) == found);
        FUZZ_CHECK(text == (found ? TextOf(it->second.value) : CString(L"untouched")));
        FUZZ_CHECK(pointer == (found ? PointerOf(it->second.value) : &text));
    }

    // Slot access: a missing key gets an entry with the empty value.
    void Touch(const std::wstring& key) {
        const CString text = strings[key.c_str()];
        void* const pointer = pointers[key.c_str()];
        CObject* const object = objects[key.c_str()];
        const auto [it, added] = model.try_emplace(Lowered(key), Entry{key, kNone});
        FUZZ_CHECK(text == TextOf(it->second.value));
        FUZZ_CHECK(pointer == PointerOf(it->second.value));
        FUZZ_CHECK((object == nullptr) == (it->second.value == kNone));
    }

    void Remove(const std::wstring& key, bool handOver) {
        const bool found = model.erase(Lowered(key)) != 0;
        FUZZ_CHECK(strings.RemoveKey(key.c_str()) == found);
        FUZZ_CHECK(pointers.RemoveKey(key.c_str()) == found);
        if (handOver)
            delete objects.RemoveKey2(key.c_str()); // null for a missing key or an empty entry
        else
            FUZZ_CHECK(objects.RemoveKey(key.c_str()) == found);
    }

    // Storing the object an entry already holds changes nothing.
    void SetAgain(const std::wstring& key) {
        CObject* object = nullptr;
        if (!objects.Lookup(key.c_str(), object) || object == nullptr)
            return;
        FUZZ_CHECK(objects.Set(key.c_str(), object));
    }

    void RemoveAll() {
        strings.RemoveAll();
        pointers.RemoveAll();
        objects.RemoveAll();
        model.clear();
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider input(data, size);
    {
        Maps maps;
        while (input.remaining_bytes() > 0) {
            const int operation = input.ConsumeIntegralInRange(0, 7);
            const std::wstring key = Fuzz::ConsumeText(input, L"aAbBcC\x00E9\x00C9", 3);
            switch (operation) {
            case 0:
            case 1:
                maps.Set(key, input.ConsumeIntegralInRange(0, 1000));
                break;
            case 2:
                maps.Lookup(key);
                break;
            case 3:
                maps.Touch(key);
                break;
            case 4:
            case 5:
                maps.Remove(key, operation == 5);
                break;
            case 6:
                maps.SetAgain(key);
                break;
            default:
                maps.RemoveAll();
                break;
            }
            maps.Check();
        }
    }
    FUZZ_CHECK(Counted::alive == 0); // the object map deleted what it still held
    return 0;
}
