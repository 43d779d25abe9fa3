#pragma once
// keltool as a user runs it, for the tests of its commands: a child process whose standard
// output and error go to files of a scratch folder.
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

struct KeltoolResult {
    DWORD exitCode = 0xFFFFFFFF; // 0xFFFFFFFF: not started, or did not end in time
    std::string out;             // UTF-8, lines ending with CRLF
    std::string err;
};

class KeltoolProcess {
public:
    // Starts keltool.exe, or another program beside the test executable, with the arguments,
    // each quoted.
    KeltoolProcess(const std::vector<std::wstring>& arguments, const std::filesystem::path& scratch,
                   const wchar_t* program = L"keltool.exe");
    ~KeltoolProcess(); // kills the process if it still runs
    KeltoolProcess(const KeltoolProcess&) = delete;
    KeltoolProcess& operator=(const KeltoolProcess&) = delete;

    DWORD Id() const { return m_process.dwProcessId; }
    // Waits for the end (at most `milliseconds`) and collects the exit code and the output.
    KeltoolResult Finish(DWORD milliseconds = 120000);

private:
    PROCESS_INFORMATION m_process = {};
    std::filesystem::path m_out, m_err;
};

// Starts keltool and waits for its end.
KeltoolResult RunKeltool(const std::vector<std::wstring>& arguments,
                         const std::filesystem::path& scratch);

// The bytes of a file; empty when it cannot be read.
std::string ReadAll(const std::filesystem::path& path);

// The folder of the test executable (where keltool.exe and the DLLs are).
std::filesystem::path TestBinaryFolder();
