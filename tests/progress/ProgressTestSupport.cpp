#include "ProgressTestSupport.h"

bool Delivered::operator==(const Delivered& other) const {
    return window == other.window && message == other.message && wParam == other.wParam &&
           lParam == other.lParam && text == other.text && posted == other.posted;
}

void PrintTo(const Delivered& d, std::ostream* os) {
    *os << "{" << static_cast<const void*>(d.window) << " " << d.message << " w=" << d.wParam
        << " l=" << d.lParam << " \"" << std::string(d.text.begin(), d.text.end()) << "\""
        << (d.posted ? " posted" : "") << "}";
}

Delivered Sent(HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam,
               const std::wstring& text) {
    return Delivered{window, message, wParam, lParam, text, false};
}

std::vector<Delivered>& Recorded() {
    static std::vector<Delivered> recorded;
    return recorded;
}

void Record(HWND window, unsigned int message, std::uintptr_t wParam, std::intptr_t lParam,
            bool posted) {
    std::wstring text;
    if (message == MProgressManager::MessageText && !posted)
        text = reinterpret_cast<const wchar_t*>(lParam);
    Recorded().push_back(Delivered{window, message, wParam, lParam, text, posted});
}

std::vector<Delivered> RecordedFor(HWND window) {
    std::vector<Delivered> result;
    for (const Delivered& d : Recorded())
        if (d.window == window)
            result.push_back(d);
    return result;
}

std::vector<Delivered> WithoutLevelTextAddresses(std::vector<Delivered> messages,
                                                 std::intptr_t beginText) {
    for (Delivered& d : messages)
        if (d.message == MProgressManager::MessageText && d.lParam != beginText)
            d.lParam = 0;
    return messages;
}

const wchar_t* const FirstBeginText = L"first level text";

std::intptr_t EstablishBeginText(HWND window) {
    static const std::intptr_t address = [window] {
        ResetProgressState();
        {
            // Without a window a begin does not take the text.
            MProgress unseen(0, 10, false);
            unseen.SetText(L"never shown");
            unseen.Begin(0, 10);
        }
        MProgress::AttachUITarget(0, window);
        MProgress first(0, 10, false);
        first.SetText(FirstBeginText);
        first.Begin(0, 10);
        const std::intptr_t taken = Recorded().at(0).lParam;
        first.End();
        ResetProgressState();
        return taken;
    }();
    return address;
}

void ResetProgressState() {
    MProgress::ResetUITargets();
    MProgressManager::SetSink(nullptr);
    MProgress::ResetAbortFlag();
    MProgress::SetProcessOnlyCurrentThreadWindows(true);
    MProgressManager::vector_facade pointers = MProgress::GetProgressPointers();
    while (pointers.size() != 0)
        pointers.pop_back();
    Recorded().clear();
}

namespace {

std::intptr_t TextAddress(const MProgress& p) {
    return reinterpret_cast<std::intptr_t>(p.GetText().c_str());
}

} // namespace

std::vector<Delivered> RunNestedLevels(HWND a, HWND b) {
    const std::intptr_t beginText = EstablishBeginText(a);
    MProgress::AttachUITarget(0, a);
    MProgress::AttachUITarget(7, b); // the level argument is ignored
    using M = MProgressManager;

    MProgress outer(0, 10, false);
    outer.SetText(L"outer"); // no window yet: nothing is sent
    outer.SetAdjustByLowerLevels(true);
    outer.Begin(0, 10);
    MProgress middle;
    middle.SetAdjustByLowerLevels(true);
    middle.SetChildWeight(50);
    MProgress inner(0, 4);
    outer.SetCurrentPosition(3);
    // 25 % of the inner level is 12.5 -> 12 in the middle one, then (0.12 + 3) x 10 = 31.2 -> 31.
    inner.Increment();
    // 50 % -> 25 in the middle one -> 32.5, truncated to 32 in the outer one.
    inner.Increment();
    const std::intptr_t middleUntitled = TextAddress(middle);
    inner.End();
    middle.SetText(L"middle");
    middle.End();
    outer.End();

    return {
        Sent(a, M::MessageText, 0, beginText, FirstBeginText),
        Sent(a, M::MessageBegin, 0, 0),
        Sent(b, M::MessageText, 1, beginText, FirstBeginText),
        Sent(b, M::MessageBegin, 1, 0),
        Sent(a, M::MessagePercent, 0, 30),
        Sent(b, M::MessagePercent, 1, 12),
        Sent(a, M::MessagePercent, 0, 31),
        Sent(b, M::MessagePercent, 1, 25),
        Sent(a, M::MessagePercent, 0, 32),
        Sent(b, M::MessageText, 1, middleUntitled, L""), // the inner level ended
        Sent(b, M::MessageText, 1, TextAddress(middle), L"middle"),
        Sent(b, M::MessageEnd, 1, 0),
        Sent(a, M::MessageText, 0, TextAddress(outer), L"outer"),
        Sent(a, M::MessageEnd, 0, 0),
    };
}

std::vector<Delivered> RunOuterEndsFirst(HWND a, HWND b) {
    const std::intptr_t beginText = EstablishBeginText(a);
    MProgress::AttachUITarget(0, a);
    MProgress::AttachUITarget(1, b);
    using M = MProgressManager;

    MProgress outer;
    MProgress inner(0, 10);
    outer.End();       // first in the list: no parent text
    inner.Increment(); // keeps index 1
    outer.End();       // not listed any more
    // The list holds one level now, so a new one gets index 1 as well.
    MProgress late;
    late.End();
    inner.End();
    inner.End();

    return {
        Sent(a, M::MessageText, 0, beginText, FirstBeginText),
        Sent(a, M::MessageBegin, 0, 0),
        Sent(b, M::MessageText, 1, beginText, FirstBeginText),
        Sent(b, M::MessageBegin, 1, 0),
        Sent(a, M::MessageEnd, 0, 0),
        Sent(b, M::MessagePercent, 1, 10),
        Sent(b, M::MessageText, 1, beginText, FirstBeginText),
        Sent(b, M::MessageBegin, 1, 0),
        Sent(b, M::MessageEnd, 1, 0),
        Sent(b, M::MessageText, 1, TextAddress(inner), L""), // the parent of `late` is `inner`
        Sent(b, M::MessageEnd, 1, 0),
    };
}

std::vector<Delivered> RunAbortButton(HWND a, HWND b) {
    using M = MProgressManager;
    MProgress::EnableAbortButton(true); // no window: nothing
    MProgress::AttachUITarget(0, a);
    MProgress::AttachUITarget(1, b);
    MProgress::EnableAbortButton(true);
    MProgressManager::EnableAbortButton(false);
    return {
        Sent(a, M::MessageAbortButton, 0, 1),
        Sent(a, M::MessageAbortButton, 0, 0),
    };
}
