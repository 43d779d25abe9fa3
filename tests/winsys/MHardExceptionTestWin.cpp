// Real processor faults turned into exceptions, in leaf and non-leaf functions built without
// and with optimisation, in the loading thread and in threads of their own.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <windows.h>

#include "Faults.h"
#include "MHardException.h"

namespace {

volatile int g_zero = 0;
volatile int g_seven = 7;
const int* volatile g_null = nullptr;

struct Fault {
    const char* name;
    std::function<int(int& destroyed)> run;
    bool integer;       // an integer division by zero, else an access violation
    int destructorRuns; // guards that the unwinding passes
};

// Every fault of the matrix: kind x leaf/guarded x -O0/-O2.
std::vector<Fault> Faults() {
    return {
        {"O0 divide leaf", [](int&) { return FaultsO0::Divide(g_seven, g_zero); }, true, 0},
        {"O2 divide leaf", [](int&) { return FaultsO2::Divide(g_seven, g_zero); }, true, 0},
        {"O0 divide guarded", [](int& d) { return FaultsO0::DivideGuarded(g_seven, g_zero, d); },
         true, 1},
        {"O2 divide guarded", [](int& d) { return FaultsO2::DivideGuarded(g_seven, g_zero, d); },
         true, 1},
        {"O0 read leaf", [](int&) { return FaultsO0::Read(g_null); }, false, 0},
        {"O2 read leaf", [](int&) { return FaultsO2::Read(g_null); }, false, 0},
        {"O0 read guarded", [](int& d) { return FaultsO0::ReadGuarded(g_null, d); }, false, 1},
        {"O2 read guarded", [](int& d) { return FaultsO2::ReadGuarded(g_null, d); }, false, 1},
    };
}

// Runs each fault and checks the class caught and the destructors run.
void ExpectEveryFaultTranslated() {
    for (const Fault& fault : Faults()) {
        SCOPED_TRACE(fault.name);
        int destroyed = 0;
        std::string caught = "nothing";
        DWORD code = 0;
        try {
            fault.run(destroyed);
        } catch (const MMIntException& e) {
            caught = "MMIntException";
            code = e.GetCode();
        } catch (const MMException&) {
            caught = "MMException";
        } catch (const MHardException& e) {
            caught = "MHardException";
            code = e.GetCode();
        }
        EXPECT_EQ(fault.integer ? "MMIntException" : "MHardException", caught);
        EXPECT_EQ(fault.integer ? 0xC0000094u : 0xC0000005u, code);
        EXPECT_EQ(fault.destructorRuns, destroyed);
    }
}

// A thread's fault that nothing translates ends the thread through this handler, which runs
// after the library's: the thread exits with the fault's code instead of ending the process.
std::atomic<DWORD> g_watchedThread{0};

[[noreturn]] void LeaveThread() {
    ExitThread(0xDEAD);
}

LONG CALLBACK LeaveOnFault(EXCEPTION_POINTERS* pointers) {
    const DWORD code = pointers->ExceptionRecord->ExceptionCode;
    if (GetCurrentThreadId() != g_watchedThread || (code != 0xC0000094 && code != 0xC0000005))
        return EXCEPTION_CONTINUE_SEARCH;
    pointers->ContextRecord->Rip = reinterpret_cast<DWORD64>(&LeaveThread);
    pointers->ContextRecord->Rsp = (pointers->ContextRecord->Rsp & ~DWORD64(15)) - 256 - 8;
    return EXCEPTION_CONTINUE_EXECUTION;
}

// Runs `body` on a new thread and returns its exit code (0xDEAD: a fault was not translated).
DWORD RunThread(void (*body)()) {
    struct Start {
        static DWORD WINAPI Run(void* body) {
            reinterpret_cast<void (*)()>(body)();
            return 0;
        }
    };
    HANDLE thread =
        CreateThread(nullptr, 0, &Start::Run, reinterpret_cast<void*>(body), 0, nullptr);
    EXPECT_NE(nullptr, thread);
    WaitForSingleObject(thread, 60000);
    DWORD exitCode = 0;
    GetExitCodeThread(thread, &exitCode);
    CloseHandle(thread);
    return exitCode;
}

class TranslatorTest : public ::testing::Test {
protected:
    TranslatorTest() : m_handler(AddVectoredExceptionHandler(0, LeaveOnFault)) {}
    ~TranslatorTest() override { RemoveVectoredExceptionHandler(m_handler); }

private:
    PVOID m_handler;
};

// The library translates for the thread that loaded it; C++ exceptions of any other kind pass
// the translator untouched.
TEST_F(TranslatorTest, TheLoadingThreadTranslatesFromTheStart) {
    EXPECT_TRUE(MMExceptionTranslator::IsActive());
    ExpectEveryFaultTranslated();
    {
        MMExceptionTranslator nested;
        ExpectEveryFaultTranslated();
        EXPECT_THROW(throw std::runtime_error("plain"), std::runtime_error);
    }
    EXPECT_TRUE(MMExceptionTranslator::IsActive());
    ExpectEveryFaultTranslated();
}

TEST_F(TranslatorTest, OtherThreadsTranslateWhileTheirTranslatorLives) {
    EXPECT_EQ(0u, RunThread([] {
                  EXPECT_FALSE(MMExceptionTranslator::IsActive());
                  MMExceptionTranslator outer;
                  ExpectEveryFaultTranslated();
                  {
                      MMExceptionTranslator inner;
                      EXPECT_TRUE(MMExceptionTranslator::IsActive());
                      ExpectEveryFaultTranslated();
                  }
                  // The outer one is back.
                  EXPECT_TRUE(MMExceptionTranslator::IsActive());
                  ExpectEveryFaultTranslated();
              }));
    // Without a translator, a fault stays a fault.
    for (const Fault& fault : Faults()) {
        static const Fault* current;
        current = &fault;
        EXPECT_EQ(0xDEADu, RunThread([] {
                      { MMExceptionTranslator gone; }
                      EXPECT_FALSE(MMExceptionTranslator::IsActive());
                      g_watchedThread = GetCurrentThreadId();
                      int destroyed = 0;
                      current->run(destroyed);
                  }))
            << fault.name;
        g_watchedThread = 0;
    }
}

} // namespace
