#include "MHardException.h"

namespace {

// The long descriptions keep the runs of blanks where their source lines were joined.
const MSeCodeText CodeTable[] = {
    {0xC0000005, L"EXCEPTION_ACCESS_VIOLATION\n",
     L"The thread tried to read from or write to a virtual address for which it does not have "
     L"the appropriate access.\n"},
    {0xC000008C, L"EXCEPTION_ARRAY_BOUNDS_EXCEEDED\n",
     L"The thread tried to access an array element that is out of bounds and the underlying "
     L"hardware supports bounds checking.\n"},
    {0x80000003, L"EXCEPTION_BREAKPOINT\n", L"A breakpoint was encountered.\n"},
    {0x80000002, L"EXCEPTION_DATATYPE_MISALIGNMENT\n",
     L"The thread tried to read or write data that is misaligned on hardware that does not "
     L"provide alignment.           For example, 16-bit values must be aligned on 2-byte "
     L"boundaries; 32-bit values on 4-byte boundaries, and so on.\n"},
    {0xC000008D, L"EXCEPTION_FLT_DENORMAL_OPERAND\n",
     L"One of the operands in a floating-point operation is denormal.           A denormal "
     L"value is one that is too small to represent as a standard floating-point value.\n"},
    {0xC000008E, L"EXCEPTION_FLT_DIVIDE_BY_ZERO\n",
     L"The thread tried to divide a floating-point value by a floating-point divisor of "
     L"zero.\n"},
    {0xC000008F, L"EXCEPTION_FLT_INEXACT_RESULT\n",
     L"The result of a floating-point operation cannot be represented exactly as a decimal "
     L"fraction.\n"},
    {0xC0000090, L"EXCEPTION_FLT_INVALID_OPERATION\n",
     L"This exception represents any floating-point exception not included in this list.\n"},
    {0xC0000091, L"EXCEPTION_FLT_OVERFLOW\n",
     L"The exponent of a floating-point operation is greater than the magnitude allowed by the "
     L"corresponding type.\n"},
    {0xC0000092, L"EXCEPTION_FLT_STACK_CHECK\n",
     L"The stack overflowed or underflowed as the result of a floating-point operation.\n"},
    {0xC0000093, L"EXCEPTION_FLT_UNDERFLOW\n",
     L"The exponent of a floating-point operation is less than the magnitude allowed by the "
     L"corresponding type.\n"},
    {0xC000001D, L"EXCEPTION_ILLEGAL_INSTRUCTION\n",
     L"The thread tried to execute an invalid instruction.\n"},
    {0xC0000006, L"EXCEPTION_IN_PAGE_ERROR\n",
     L"The thread tried to access a page that was not present, and the system was unable to "
     L"load the page.           For example, this exception might occur if a network "
     L"connection is lost while running a program over the network.\n"},
    {0xC0000094, L"EXCEPTION_INT_DIVIDE_BY_ZERO\n",
     L"The thread tried to divide an integer value by an integer divisor of zero.\n"},
    {0xC0000095, L"EXCEPTION_INT_OVERFLOW\n",
     L"The result of an integer operation caused a carry out of the most significant bit of "
     L"the result.\n"},
    {0xC0000026, L"EXCEPTION_INVALID_DISPOSITION\n",
     L"An exception handler returned an invalid disposition to the exception dispatcher.     "
     L"      Programmers using a high-level language such as C should never encounter this "
     L"exception.\n"},
    {0xC0000025, L"EXCEPTION_NONCONTINUABLE_EXCEPTION\n",
     L"The thread tried to continue execution after a noncontinuable exception occurred.\n"},
    {0xC0000096, L"EXCEPTION_PRIV_INSTRUCTION\n",
     L"The thread tried to execute an instruction whose operation is not allowed in the "
     L"current machine mode.\n"},
    {0x80000004, L"EXCEPTION_SINGLE_STEP\n",
     L"A trace trap or other single-instruction mechanism signaled that one instruction has "
     L"been executed.\n"},
    {0xC00000FD, L"EXCEPTION_STACK_OVERFLOW\n", L"The thread used up its stack.\n"},
};
const int CodeCount = sizeof CodeTable / sizeof CodeTable[0];

const MSeCodeText& RowOf(DWORD code) {
    static const MSeCodeText none = {0, L"", L""};
    const MSeCodeText* row = MHardException::FindCode(code);
    return row ? *row : none;
}

} // namespace

MHardException::MHardException(DWORD code)
    : MException(RowOf(code).description), m_code(code), m_text(RowOf(code)) {}

const MSeCodeText* MHardException::FindCode(DWORD code) {
    for (const MSeCodeText& row : CodeTable)
        if (row.code == code)
            return &row;
    return nullptr;
}

const MSeCodeText* MHardException::GetCodeTable(int& count) {
    count = CodeCount;
    return CodeTable;
}

const wchar_t* MHardException::GetName() const {
    return L"MHardException";
}

const wchar_t* MMException::GetName() const {
    return L"MMException";
}

const wchar_t* MMFltException::GetName() const {
    return L"MMFltException";
}

const wchar_t* MMIntException::GetName() const {
    return L"MMIntException";
}

void MMExceptionTranslator::Translate(unsigned int code, _EXCEPTION_POINTERS*) {
    switch (code) {
    case 0xC000008C: // array bounds exceeded
    case 0xC00000FD: // stack overflow
        throw MMException(code);
    case 0xC000008D: // the floating-point faults
    case 0xC000008E:
    case 0xC000008F:
    case 0xC0000090:
    case 0xC0000091:
    case 0xC0000092:
    case 0xC0000093:
        throw MMFltException(code);
    case 0xC0000094: // integer division by zero
    case 0xC0000095: // integer overflow
        throw MMIntException(code);
    }
    if (MHardException::FindCode(code))
        throw MHardException(code);
}
