#include "MStatusCallbackToMProgressImpl.h"

#include <string>

#include "KelResource.h"
#include "MProgress.h"
#include "MString.h"
#include "ProgressPlatform.h"

MStatusCallbackToMProgressImpl::MStatusCallbackToMProgressImpl(bool listen) {
    if (listen)
        StartListen();
}

MStatusCallbackToMProgressImpl::~MStatusCallbackToMProgressImpl() {
    mp_instance = nullptr;
}

void MStatusCallbackToMProgressImpl::StartListen() {
    mp_instance = this;
}

void MStatusCallbackToMProgressImpl::StopListen() {
    mp_instance = nullptr;
}

unsigned int MStatusCallbackToMProgressImpl::GetThreadId() const {
    return KelBase::CurrentThreadId();
}

std::vector<MProgress*>* MStatusCallbackToMProgressImpl::_CurrentLevels() {
    const auto found = m_levelsByThread.find(GetThreadId());
    return found == m_levelsByThread.end() ? nullptr : &found->second;
}

std::vector<MProgress*>& MStatusCallbackToMProgressImpl::_CurrentLevelsForBegin() {
    if (std::vector<MProgress*>* levels = _CurrentLevels())
        return *levels;
    return m_levelsByThread[GetThreadId()];
}

void MStatusCallbackToMProgressImpl::StatusBegin(double low, double high, const wchar_t* format,
                                                 va_list args) {
    std::vector<MProgress*>& levels = _CurrentLevelsForBegin();
    MProgress* level = new MProgress(low, high, false);
    levels.push_back(level);
    if (format) {
        MString text;
        text.VFORMAT(format, args);
        level->SetText(text.C_STR());
    } else if (levels.size() == 1) {
        // Only notifies the sink: the level has no window before it begins.
        level->SetText(L"");
    }
    // The text is set first, so the window gets it with the begin message.
    level->Begin(low, high);
}

void MStatusCallbackToMProgressImpl::StatusBegin(double low, double high, unsigned int id,
                                                 va_list args) {
    const std::wstring text = KelBase::LoadModuleString(id);
    STATUS_BEGINV(low, high, text.c_str(), args);
}

void MStatusCallbackToMProgressImpl::StatusEnd() {
    std::vector<MProgress*>* levels = _CurrentLevels();
    if (!levels || levels->empty())
        return;
    delete levels->back();
    levels->pop_back();
}

bool MStatusCallbackToMProgressImpl::StatusCount(double position) {
    std::vector<MProgress*>* levels = _CurrentLevels();
    if (!levels || levels->empty())
        return false;
    levels->back()->SetCurrentPosition(position);
    return true;
}

bool MStatusCallbackToMProgressImpl::StatusInc(double delta) {
    std::vector<MProgress*>* levels = _CurrentLevels();
    if (!levels || levels->empty())
        return false;
    levels->back()->Increment(delta);
    return true;
}

bool MStatusCallbackToMProgressImpl::StatusText(short, const wchar_t* format, va_list) {
    std::vector<MProgress*>* levels = _CurrentLevels();
    if (!levels || levels->size() != 1)
        return false;
    // Shown as given, not formatted.
    return levels->back()->SetText(format);
}

bool MStatusCallbackToMProgressImpl::StatusGetAbort() {
    return MProgress::GetAbortFlag();
}

HWND MStatusCallbackToMProgressImpl::StatusParent(HWND) {
    return nullptr;
}

bool MStatusCallbackToMProgressImpl::StatusTextInfo(const wchar_t*, va_list) {
    return false;
}

bool MStatusCallbackToMProgressImpl::StatusTextWarning(const wchar_t*, va_list) {
    return false;
}

bool MStatusCallbackToMProgressImpl::StatusTextError(const wchar_t*, va_list) {
    return false;
}

void MStatusCallbackToMProgressImpl::Status(unsigned int id, va_list) {
    KelBase::LoadModuleString(id);
}

void MStatusCallbackToMProgressImpl::StatusInit(const wchar_t* format, va_list args) {
    MString text;
    text.VFORMAT(format, args);
}

void MStatusCallbackToMProgressImpl::StatusInit(unsigned int id, va_list args) {
    const std::wstring text = KelBase::LoadModuleString(id);
    StatusInit(text.c_str(), args);
}

void MStatusCallbackToMProgressImpl::StatusInitKelResString(unsigned int id, va_list args) {
    std::wstring text;
    KelResLoadStringEx(text, id);
    StatusInit(text.c_str(), args);
}

void MStatusCallbackToMProgressImpl::Status(const wchar_t*, va_list) {}

void MStatusCallbackToMProgressImpl::StatusTemp(unsigned int, va_list) {}

void MStatusCallbackToMProgressImpl::StatusInitText(const wchar_t*) {}

void MStatusCallbackToMProgressImpl::StatusInitKelResString(const wchar_t*, va_list) {}

void MStatusCallbackToMProgressImpl::StatusMode(unsigned long, unsigned short, bool) {}

void MStatusCallbackToMProgressImpl::StatusStop() {}

void MStatusCallbackToMProgressImpl::StatusBeginKelResString(double, double, unsigned int,
                                                             va_list) {}

void MStatusCallbackToMProgressImpl::StatusTextMode(unsigned short, unsigned short) {}

void MStatusCallbackToMProgressImpl::TooltipText(const wchar_t*) {}

void MStatusCallbackToMProgressImpl::TooltipShow(bool) {}

void MStatusCallbackToMProgressImpl::StatusError(unsigned int, va_list) {}

void MStatusCallbackToMProgressImpl::StatusError(const wchar_t*, va_list) {}

void MStatusCallbackToMProgressImpl::StatusMessage(unsigned int, va_list) {}

void MStatusCallbackToMProgressImpl::StatusMessage(const wchar_t*, va_list) {}

void MStatusCallbackToMProgressImpl::StatusWarning(unsigned int, va_list) {}

void MStatusCallbackToMProgressImpl::StatusWarning(const wchar_t*, va_list) {}
