#pragma once
/// @file
/// Base of the kit's exceptions.
#include <exception>
#include <string>

#include "SharedExport.h"

namespace KelSDK::Common {

/// Base of the kit's exceptions: a wide message and a class name that derived classes report.
class KELSHR_API MException : public std::exception {
public:
    /// An exception with an empty message.
    MException();
    /// An exception with `message`.
    explicit MException(const std::wstring& message);
    ~MException() override;

    /// The name of the most derived class, e.g. L"MException".
    virtual const wchar_t* GetName() const;

    /// The message.
    // Inline on purpose: <windows.h> renames GetMessage to GetMessageW in some files only.
    const std::wstring& GetMessage() const { return m_message; }

    /// The message in the active code page.
    const char* what() const noexcept override;

private:
    std::wstring m_message;
    std::string m_narrow;
};

} // namespace KelSDK::Common
