// The per-thread translator and the vectored exception handler behind it.
//
// For a translated fault the handler changes the thread's context so that, when the system
// resumes it, the thread runs KelSeStub (below) with every register as at the fault except
// r11, which carries the faulting address plus one. The stub pushes that value, so the stack
// looks as if the faulting instruction had called KelSeThrow; KelSeThrow saves the volatile
// registers in its frame, described by its unwind data, and calls KelSeThrowPending, which
// throws the exception object. Unwinding then passes KelSeThrow (restoring the volatile
// registers, which code compiled with -fnon-call-exceptions may use in its landing pads) and
// continues in the faulting function at the faulting instruction. The handler itself writes
// nothing to the stack: the system keeps its own records below the faulting stack pointer
// until the thread resumes.
//
// KelSeThrow expects the 16-byte alignment of a called function; a fault where the stack
// pointer is 8 off that (in a function that has not set up its frame yet) goes through
// KelSeStubShifted and KelSeThrowShifted, whose frame is 8 bytes larger.
#include <windows.h>

#include <cstdint>
#include <exception>

#include "InitOrder.h"
#include "MHardException.h"

extern "C" {
void KelSeStub();
void KelSeStubShifted();
[[noreturn]] void KelSeThrowPending(DWORD64* r11Slot);
}

// Frame of KelSeThrow from its stack pointer after the prologue: 32 bytes of home space for
// the call, xmm0-xmm5 at 32..127, rcx, r8, r9, r10, r11 at 128..167; the return address
// follows at 168 (176 in the shifted frame).
#define KEL_SE_THROW(name, frame)                                                                  \
    "    .globl " #name "\n"                                                                       \
    "    .def " #name "; .scl 2; .type 32; .endef\n"                                               \
    "    .seh_proc " #name "\n" #name ":\n"                                                        \
    "    subq $" #frame ", %rsp\n"                                                                 \
    "    .seh_stackalloc " #frame "\n"                                                             \
    "    movaps %xmm0, 32(%rsp)\n"                                                                 \
    "    .seh_savexmm %xmm0, 32\n"                                                                 \
    "    movaps %xmm1, 48(%rsp)\n"                                                                 \
    "    .seh_savexmm %xmm1, 48\n"                                                                 \
    "    movaps %xmm2, 64(%rsp)\n"                                                                 \
    "    .seh_savexmm %xmm2, 64\n"                                                                 \
    "    movaps %xmm3, 80(%rsp)\n"                                                                 \
    "    .seh_savexmm %xmm3, 80\n"                                                                 \
    "    movaps %xmm4, 96(%rsp)\n"                                                                 \
    "    .seh_savexmm %xmm4, 96\n"                                                                 \
    "    movaps %xmm5, 112(%rsp)\n"                                                                \
    "    .seh_savexmm %xmm5, 112\n"                                                                \
    "    movq %rcx, 128(%rsp)\n"                                                                   \
    "    .seh_savereg %rcx, 128\n"                                                                 \
    "    movq %r8, 136(%rsp)\n"                                                                    \
    "    .seh_savereg %r8, 136\n"                                                                  \
    "    movq %r9, 144(%rsp)\n"                                                                    \
    "    .seh_savereg %r9, 144\n"                                                                  \
    "    movq %r10, 152(%rsp)\n"                                                                   \
    "    .seh_savereg %r10, 152\n"                                                                 \
    "    .seh_savereg %r11, 160\n"                                                                 \
    "    .seh_endprologue\n"                                                                       \
    "    leaq 160(%rsp), %rcx\n"                                                                   \
    "    call KelSeThrowPending\n"                                                                 \
    "    int3\n"                                                                                   \
    "    .seh_endproc\n"

asm("    .text\n"
    "    .globl KelSeStub\n"
    "KelSeStub:\n"
    "    pushq %r11\n"
    "    jmp KelSeThrow\n"
    "    .globl KelSeStubShifted\n"
    "KelSeStubShifted:\n"
    "    pushq %r11\n"
    "    jmp KelSeThrowShifted\n" KEL_SE_THROW(KelSeThrow, 168)
        KEL_SE_THROW(KelSeThrowShifted, 176));

namespace {

// Per-thread state in plain TLS slots, which the handler can read without allocating: the
// innermost translator, and the fault being turned into a throw (its code and the r11 the
// stub was given in place of the thread's own).
struct SeDispatch {
    SeDispatch();
    ~SeDispatch();

    DWORD translatorSlot = TLS_OUT_OF_INDEXES;
    DWORD codeSlot = TLS_OUT_OF_INDEXES;
    DWORD r11Slot = TLS_OUT_OF_INDEXES;
    PVOID handler = nullptr;
    wchar_t windowsFolder[MAX_PATH] = {};
    UINT windowsFolderLength = 0;
};

LONG CALLBACK Redirect(EXCEPTION_POINTERS* pointers);

// The handler and the slots are set up before the load-time translator below.
SeDispatch g_dispatch KEL_INIT_SE_TRANSLATOR;

SeDispatch::SeDispatch()
    : translatorSlot(TlsAlloc()), codeSlot(TlsAlloc()), r11Slot(TlsAlloc()),
      handler(AddVectoredExceptionHandler(1, Redirect)),
      windowsFolderLength(GetWindowsDirectoryW(windowsFolder, MAX_PATH)) {}

SeDispatch::~SeDispatch() {
    if (handler)
        RemoveVectoredExceptionHandler(handler);
    for (DWORD slot : {translatorSlot, codeSlot, r11Slot})
        if (slot != TLS_OUT_OF_INDEXES)
            TlsFree(slot);
}

bool Ready() {
    return g_dispatch.translatorSlot != TLS_OUT_OF_INDEXES &&
           g_dispatch.codeSlot != TLS_OUT_OF_INDEXES && g_dispatch.r11Slot != TLS_OUT_OF_INDEXES;
}

// Code of the system's own DLLs keeps its faults: it may catch them itself.
bool InSystemModule(DWORD64 address) {
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<LPCWSTR>(address), &module))
        return false;
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(module, path, MAX_PATH);
    const UINT folder = g_dispatch.windowsFolderLength;
    return folder && length > folder && path[folder] == L'\\' &&
           CompareStringOrdinal(path, static_cast<int>(folder), g_dispatch.windowsFolder,
                                static_cast<int>(folder), TRUE) == CSTR_EQUAL;
}

LONG CALLBACK Redirect(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD* record = pointers->ExceptionRecord;
    CONTEXT* context = pointers->ContextRecord;
    DWORD64 imageBase = 0;
    if (!Ready() || !TlsGetValue(g_dispatch.translatorSlot) ||
        !MHardException::FindCode(record->ExceptionCode) ||
        (record->ExceptionFlags & EXCEPTION_NONCONTINUABLE) ||
        // Without unwind data at the fault the throw could not leave the faulting function.
        !RtlLookupFunctionEntry(context->Rip, &imageBase, nullptr) || InSystemModule(context->Rip))
        return EXCEPTION_CONTINUE_SEARCH;
    TlsSetValue(g_dispatch.codeSlot,
                reinterpret_cast<void*>(static_cast<std::uintptr_t>(record->ExceptionCode)));
    TlsSetValue(g_dispatch.r11Slot, reinterpret_cast<void*>(context->R11));
    // The unwinder looks up the instruction before a return address: the faulting one.
    context->R11 = context->Rip + 1;
    context->Rip =
        reinterpret_cast<DWORD64>(context->Rsp % 16 == 0 ? &KelSeStub : &KelSeStubShifted);
    return EXCEPTION_CONTINUE_EXECUTION;
}

} // namespace

extern "C" void KelSeThrowPending(DWORD64* r11Slot) {
    *r11Slot = reinterpret_cast<DWORD64>(TlsGetValue(g_dispatch.r11Slot));
    const auto code = static_cast<unsigned int>(
        reinterpret_cast<std::uintptr_t>(TlsGetValue(g_dispatch.codeSlot)));
    MMExceptionTranslator::Translate(code, nullptr);
    // Only codes of the table come here, and each of them throws.
    std::terminate();
}

MMExceptionTranslator::MMExceptionTranslator() : m_previous(nullptr) {
    if (!Ready())
        return;
    m_previous = static_cast<MMExceptionTranslator*>(TlsGetValue(g_dispatch.translatorSlot));
    TlsSetValue(g_dispatch.translatorSlot, this);
}

MMExceptionTranslator::~MMExceptionTranslator() {
    // Only the innermost translator of this thread gives way.
    if (Ready() && TlsGetValue(g_dispatch.translatorSlot) == this)
        TlsSetValue(g_dispatch.translatorSlot, m_previous);
}

bool MMExceptionTranslator::IsActive() {
    return Ready() && TlsGetValue(g_dispatch.translatorSlot) != nullptr;
}

namespace {

// The loading thread translates for as long as the library is loaded.
MMExceptionTranslator g_loadTimeTranslator KEL_INIT_SE_TRANSLATOR;

} // namespace
