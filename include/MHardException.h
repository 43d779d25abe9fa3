#pragma once
/// @file
/// Structured exceptions (processor faults) as C++ exceptions of the library's own classes, for
/// the threads that hold an MMExceptionTranslator:
/// - MHardException (derived from the kit's MException): every translated fault (access
///   violation, breakpoint, ...);
///   - MMException: array bounds and stack overflow, and:
///     - MMFltException: floating-point faults;
///     - MMIntException: integer division by zero and overflow.
///
/// The compiler in use has no per-thread translator hook, so the library keeps its own per
/// thread and dispatches from a vectored exception handler: for a code of the table, on a
/// thread whose translator is active, the faulting thread is sent into a small routine that
/// throws the exception object as if the faulting instruction had thrown it.
///
/// What callers must do: compile the code in which faults are to be caught, and every function
/// between the fault and the catch, with -fnon-call-exceptions. Without it the compiler assumes
/// that only calls throw, so a fault may skip catch clauses and destructors of the faulting
/// function (or terminate the program). Faults inside system DLLs are not translated: they may
/// have handlers of their own, and stay structured exceptions.
#include "AfxTypes.h"
#include "KelBaseExport.h"
#include "MException.h"

struct _EXCEPTION_POINTERS;

/// One row of the code table: the code, its name and its description, each text ending in a
/// line feed.
struct MSeCodeText {
    DWORD code;                 ///< The structured exception code.
    const wchar_t* name;        ///< Its name, e.g. "EXCEPTION_ACCESS_VIOLATION".
    const wchar_t* description; ///< What happened, in words.
};

/// A processor fault translated into a C++ exception; the base of the translated faults.
class KELBASE_API MHardException : public KelSDK::Common::MException {
public:
    /// The row of `code`; a code outside the table gets a row with empty texts.
    explicit MHardException(DWORD code);

    /// The class name, "MHardException" (each derived class returns its own).
    const wchar_t* GetName() const override;
    /// The structured exception code.
    DWORD GetCode() const { return m_code; }
    /// The table's row of the code.
    const MSeCodeText& GetCodeText() const { return m_text; }

    /// The table's row for `code`, or null.
    static const MSeCodeText* FindCode(DWORD code);
    /// All twenty rows and their count.
    static const MSeCodeText* GetCodeTable(int& count);

private:
    DWORD m_code;
    const MSeCodeText& m_text;
};

/// An array-bounds fault or a stack overflow; the base of the arithmetic faults.
class KELBASE_API MMException : public MHardException {
public:
    using MHardException::MHardException;
    /// "MMException".
    const wchar_t* GetName() const override;
};

/// A floating-point fault.
class KELBASE_API MMFltException : public MMException {
public:
    using MMException::MMException;
    /// "MMFltException".
    const wchar_t* GetName() const override;
};

/// An integer division by zero or overflow.
class KELBASE_API MMIntException : public MMException {
public:
    using MMException::MMException;
    /// "MMIntException".
    const wchar_t* GetName() const override;
};

/// While it lives, faults of the creating thread throw. Translators are per thread and nest:
/// the destructor puts back the one that was active before (on the same thread). The library
/// creates one at load for the loading thread.
/// Elsewhere than on Windows only Translate exists.
class KELBASE_API MMExceptionTranslator {
public:
    /// The library's translator: throws, by value, the class of the table's row for `code`;
    /// returns for a code outside the table. The pointers are not used (and may be null).
    static void Translate(unsigned int code, _EXCEPTION_POINTERS* pointers);

#ifdef _WIN32
    /// Makes this the active translator of the calling thread.
    MMExceptionTranslator();
    /// Puts back the translator active before, when this one is the innermost.
    ~MMExceptionTranslator();
    MMExceptionTranslator(const MMExceptionTranslator&) = delete;
    MMExceptionTranslator& operator=(const MMExceptionTranslator&) = delete;

    /// Whether a translator is active on the calling thread.
    static bool IsActive();

private:
    MMExceptionTranslator* m_previous;
#endif
};
