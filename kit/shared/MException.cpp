#include "MException.h"

#include "StdBase.h"

namespace KelSDK::Common {

MException::MException() = default;

// The narrow form is made here: what() must not allocate or throw.
MException::MException(const std::wstring& message)
    : m_message(message), m_narrow(StdBase::ConvertUnicodeToAnsi(message)) {}

MException::~MException() = default;

const wchar_t* MException::GetName() const {
    return L"MException";
}

const char* MException::what() const noexcept {
    return m_narrow.c_str();
}

} // namespace KelSDK::Common
