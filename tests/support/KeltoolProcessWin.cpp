#include "KeltoolProcess.h"

#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

std::string ReadAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

fs::path TestBinaryFolder() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return fs::path(path).parent_path();
}

KeltoolProcess::KeltoolProcess(const std::vector<std::wstring>& arguments, const fs::path& scratch,
                               const wchar_t* program) {
    std::wstring commandLine = L"\"" + (TestBinaryFolder() / program).wstring() + L"\"";
    for (const std::wstring& argument : arguments)
        commandLine += L" \"" + argument + L"\"";
    // New files each run: under Wine, a later run did not always replace an earlier run's
    // error file, and a test read its stale text.
    static int runs = 0;
    const std::wstring run =
        std::to_wstring(GetCurrentProcessId()) + L"_" + std::to_wstring(++runs);
    fs::create_directories(scratch);
    m_out = scratch / (L"keltool_out" + run);
    m_err = scratch / (L"keltool_err" + run);
    SECURITY_ATTRIBUTES inherit = {sizeof inherit, nullptr, TRUE};
    auto create = [&inherit](const fs::path& path) {
        return CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit, CREATE_ALWAYS, 0,
                           nullptr);
    };
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = create(m_out);
    startup.hStdError = create(m_err);
    if (!CreateProcessW(nullptr, &commandLine[0], nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                        &startup, &m_process))
        m_process = {};
    CloseHandle(startup.hStdOutput);
    CloseHandle(startup.hStdError);
}

KeltoolProcess::~KeltoolProcess() {
    if (!m_process.hProcess)
        return;
    if (WaitForSingleObject(m_process.hProcess, 0) == WAIT_TIMEOUT)
        TerminateProcess(m_process.hProcess, 0xFFFFFFFF);
    CloseHandle(m_process.hThread);
    CloseHandle(m_process.hProcess);
    std::error_code ignored;
    fs::remove(m_out, ignored);
    fs::remove(m_err, ignored);
}

KeltoolResult KeltoolProcess::Finish(DWORD milliseconds) {
    KeltoolResult result;
    if (m_process.hProcess &&
        WaitForSingleObject(m_process.hProcess, milliseconds) == WAIT_OBJECT_0)
        GetExitCodeProcess(m_process.hProcess, &result.exitCode);
    result.out = ReadAll(m_out);
    result.err = ReadAll(m_err);
    return result;
}

KeltoolResult RunKeltool(const std::vector<std::wstring>& arguments, const fs::path& scratch) {
    return KeltoolProcess(arguments, scratch).Finish();
}
