#include "MProgressManager.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string>

#include "MProgress.h"
#include "ProgressPlatform.h"

namespace {

MProgressManager::MessageDelivery g_delivery = &KelBase::DeliverProgressMessage;

const size_t NoLevel = static_cast<size_t>(-1);

} // namespace

size_t MProgressManager::vector_facade::size() const {
    return m_manager->_size();
}

MProgress* MProgressManager::vector_facade::back() const {
    return m_manager->_back();
}

void MProgressManager::vector_facade::push_back(MProgress* progress) {
    m_manager->_push_back(progress);
}

void MProgressManager::vector_facade::pop_back() {
    m_manager->_pop_back();
}

MProgressManager::MProgressManager()
    : m_abortFlag(false), m_sink(nullptr), m_processOnlyCurrentThreadWindows(true) {}

MProgressManager& MProgressManager::Instance() {
    static MProgressManager instance;
    return instance;
}

size_t MProgressManager::Begin(MProgress* progress) {
    return Instance()._Begin(progress);
}
size_t MProgressManager::End(MProgress* progress) {
    return Instance()._End(progress);
}
void MProgressManager::SetText(MProgress* progress) {
    Instance()._SetText(progress);
}
void MProgressManager::SendMessageUpdate(long percent, MProgress* progress) {
    Instance()._SendMessageUpdate(percent, progress);
}
void MProgressManager::NotifySink() {
    Instance()._NotifySink();
}
void MProgressManager::SetSink(IProgressSink* sink) {
    Instance()._SetSink(sink);
}
void MProgressManager::AttachUITarget(HWND window) {
    Instance()._AttachUITarget(window);
}
void MProgressManager::ResetUITargets() {
    Instance()._ResetUITargets();
}
void MProgressManager::EnableAbortButton(bool enable) {
    Instance()._EnableAbortButton(enable);
}
void MProgressManager::SetProcessOnlyCurrentThreadWindows(bool only) {
    Instance()._SetProcessOnlyCurrentThreadWindows(only);
}
void MProgressManager::SetAbortFlag(bool abort) {
    Instance()._SetAbortFlag(abort);
}
bool MProgressManager::GetAbortFlag() {
    return Instance()._GetAbortFlag();
}
void MProgressManager::ResetAbortFlag() {
    Instance()._ResetAbortFlag();
}
void MProgressManager::IncrementLast(double delta) {
    Instance()._IncrementLast(delta);
}
MProgressManager::vector_facade MProgressManager::GetProgressPointers() {
    return Instance()._GetProgressPointers();
}

MProgressManager::MessageDelivery MProgressManager::SetMessageDelivery(MessageDelivery delivery) {
    const MessageDelivery previous = g_delivery;
    g_delivery = delivery ? delivery : &KelBase::DeliverProgressMessage;
    return previous;
}

size_t MProgressManager::_Begin(MProgress* progress) {
    if (m_levels.size() >= m_levels.max_size())
        throw std::length_error("list<T> too long");
    m_levels.push_back(progress);
    const size_t index = m_levels.size() - 1;
    if (index < m_uiTargets.size()) {
        // Every begin message carries the text of the first level that ever reached a window,
        // deliberately; a level's own text reaches its window through the set-text step.
        static const std::wstring firstText = progress->m_text;
        _SendToLevel(index, MessageText, reinterpret_cast<std::intptr_t>(firstText.c_str()));
        _SendToLevel(index, MessageBegin, 0);
    }
    return index;
}

size_t MProgressManager::_End(MProgress* progress) {
    const auto found = std::find(m_levels.begin(), m_levels.end(), progress);
    if (found == m_levels.end())
        return NoLevel;
    _SendToLevel(progress->m_levelIndex, MessageEnd, 0);
    if (found != m_levels.begin()) {
        // The parent's window shows the parent's own text again.
        const MProgress* parent = *std::prev(found);
        _SendToLevel(parent->m_levelIndex, MessageText,
                     reinterpret_cast<std::intptr_t>(parent->m_text.c_str()));
    }
    // The remaining levels keep the indices they got at their begin.
    m_levels.erase(found);
    return NoLevel;
}

void MProgressManager::_SetText(MProgress* progress) {
    _NotifySink();
    _SendToLevel(progress->m_levelIndex, MessageText,
                 reinterpret_cast<std::intptr_t>(progress->m_text.c_str()));
}

void MProgressManager::_SendMessageUpdate(long percent, MProgress* progress) {
    _SendToLevel(progress->m_levelIndex, MessagePercent, percent);
    const auto found = std::find(m_levels.begin(), m_levels.end(), progress);
    if (found == m_levels.end() || found == m_levels.begin())
        return;
    MProgress* parent = *std::prev(found);
    if (!parent->m_adjustByLowerLevels)
        return;
    // The child's 0..100 maps onto the parent's pending step; truncated, not rounded.
    const double parentPercent =
        (percent * parent->m_step / 100.0 + parent->m_position) * parent->m_scale;
    parent->_SendMessageUpdate(static_cast<long>(parentPercent));
}

void MProgressManager::_NotifySink() {
    if (m_sink)
        m_sink->Notify();
}

void MProgressManager::_SetSink(IProgressSink* sink) {
    m_sink = sink;
}

void MProgressManager::_AttachUITarget(HWND window) {
    m_uiTargets.push_back(window);
}

void MProgressManager::_ResetUITargets() {
    m_uiTargets.clear();
}

void MProgressManager::_EnableAbortButton(bool enable) {
    if (!m_uiTargets.empty())
        _MProgressSendMessage(m_uiTargets.front(), MessageAbortButton, 0, enable ? 1 : 0);
}

void MProgressManager::_SetProcessOnlyCurrentThreadWindows(bool only) {
    m_processOnlyCurrentThreadWindows = only;
}

void MProgressManager::_SetAbortFlag(bool abort) {
    m_abortFlag = abort;
}

bool MProgressManager::_GetAbortFlag() const {
    return m_abortFlag;
}

void MProgressManager::_ResetAbortFlag() {
    m_abortFlag = false;
}

void MProgressManager::_IncrementLast(double delta) {
    if (!m_levels.empty())
        m_levels.back()->Increment(delta);
}

MProgressManager::vector_facade MProgressManager::_GetProgressPointers() {
    return vector_facade(this);
}

void MProgressManager::_push_back(MProgress* progress) {
    m_progressPointers.push_back(progress);
}

void MProgressManager::_pop_back() {
    m_progressPointers.pop_back();
}

MProgress* MProgressManager::_back() const {
    return m_progressPointers.back();
}

size_t MProgressManager::_size() const {
    return m_progressPointers.size();
}

void MProgressManager::_SendToLevel(size_t level, unsigned int message, std::intptr_t lParam) {
    if (level < m_uiTargets.size())
        _MProgressSendMessage(m_uiTargets[level], message, level, lParam);
}

void MProgressManager::_MProgressSendMessage(HWND window, unsigned int message,
                                             std::uintptr_t wParam, std::intptr_t lParam) {
    g_delivery(window, message, wParam, lParam, m_processOnlyCurrentThreadWindows);
}
