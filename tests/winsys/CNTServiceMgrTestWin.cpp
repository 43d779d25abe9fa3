// CNTServiceMgr and CServiceStatus against the system's service control manager, with a small
// service program of the tests (kel_test_service.exe). Each test installs a service under a name
// of its own process and time, so a service left by a broken run never meets the next one.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "CNTServiceMgr.h"
#include "CServiceStatus.h"
#include "KeltoolProcess.h"
#include "TempFolder.h"
#include "TestingUtility.h"

namespace {

std::wstring UniqueServiceName() {
    static int counter = 0;
    return L"KelTestService" + std::to_wstring(GetCurrentProcessId()) + L"_" +
           std::to_wstring(GetTickCount()) + L"_" + std::to_wstring(++counter);
}

class ServiceTest : public TempFolderTest {
protected:
    ~ServiceTest() override {
        if (m_service.IsInstalled())
            m_service.Remove(10000);
    }

    const std::wstring m_name = UniqueServiceName();
    const std::wstring m_program =
        L"\"" + (TestBinaryFolder() / L"kel_test_service.exe").wstring() + L"\"";
    CNTServiceMgr m_service{m_name.c_str()};
    TestingUtility m_log;
};

TEST_F(ServiceTest, InstallConfigureStartQueryStopRemove) {
    EXPECT_FALSE(m_service.IsInstalled());
    // Display names are unique too.
    const std::wstring display = L"Kel test service " + m_name;
    ASSERT_EQ(1, m_service.Install(m_program.c_str(), display.c_str())) << m_service.GetLastError();
    EXPECT_TRUE(m_service.IsInstalled());

    CNTServiceMgr::Config config;
    ASSERT_EQ(1, m_service.QueryConfig(config));
    EXPECT_EQ(m_program, config.binaryPath.GetString());
    EXPECT_EQ(display, config.displayName.GetString());
    EXPECT_EQ(DWORD(SERVICE_WIN32_OWN_PROCESS), config.serviceType);
    EXPECT_EQ(DWORD(CNTServiceMgr::startDemand), config.startType);
    EXPECT_EQ(std::wstring(), config.description.GetString());

    // A second install of the same name is refused.
    CNTServiceMgr again(m_name.c_str());
    EXPECT_EQ(0, again.Install(m_program.c_str()));
    EXPECT_EQ(DWORD(ERROR_SERVICE_EXISTS), again.GetLastError());

    // Disabled, it does not start.
    ASSERT_EQ(1, m_service.Configure(CNTServiceMgr::startDisabled, nullptr,
                                     (L"Renamed " + m_name).c_str()));
    ASSERT_EQ(1, m_service.SetDescription(L"Runs until stopped"));
    ASSERT_EQ(1, m_service.QueryConfig(config));
    EXPECT_EQ(DWORD(CNTServiceMgr::startDisabled), config.startType);
    EXPECT_EQ(L"Renamed " + m_name, config.displayName.GetString());
    EXPECT_EQ(std::wstring(L"Runs until stopped"), config.description.GetString());
    EXPECT_EQ(m_program, config.binaryPath.GetString());
    EXPECT_EQ(0, m_service.Start());
    EXPECT_EQ(DWORD(ERROR_SERVICE_DISABLED), m_service.GetLastError());

    ASSERT_EQ(1, m_service.Configure(CNTServiceMgr::startDemand));
    ASSERT_EQ(1, m_service.Start()) << m_service.GetLastError();
    CNTServiceMgr::Status status;
    ASSERT_EQ(1, m_service.QueryStatus(status));
    EXPECT_EQ(DWORD(CNTServiceMgr::stateRunning), status.state);
    EXPECT_EQ(DWORD(CServiceStatus::acceptStop | CServiceStatus::acceptShutdown),
              status.controlsAccepted);
    EXPECT_EQ(0u, status.checkPoint);
    ASSERT_NE(0u, status.processId);
    // The process the manager names ends with the stop.
    HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, status.processId);
    ASSERT_NE(nullptr, process);

    ASSERT_EQ(1, m_service.Stop()) << m_service.GetLastError();
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process, 10000));
    CloseHandle(process);
    ASSERT_EQ(1, m_service.QueryStatus(status));
    EXPECT_EQ(DWORD(CNTServiceMgr::stateStopped), status.state);
    EXPECT_EQ(0u, status.win32ExitCode);
    EXPECT_EQ(0u, status.processId);
    // Stopping what has stopped is no failure.
    EXPECT_EQ(1, m_service.Stop());

    // Remove stops a running service first.
    ASSERT_EQ(1, m_service.Start());
    ASSERT_EQ(1, m_service.Remove()) << m_service.GetLastError();
    EXPECT_FALSE(m_service.IsInstalled());
    m_log.Clear();
    EXPECT_EQ(0, m_service.QueryStatus(status));
    EXPECT_EQ(DWORD(ERROR_SERVICE_DOES_NOT_EXIST), m_service.GetLastError());
    const std::vector<std::wstring> logged = m_log.GetTexts();
    ASSERT_EQ(1u, logged.size());
    EXPECT_EQ(L"In CNTServiceMgr::QueryStatus() : cannot open the service \"" + m_name +
                  L"\" (error code 1060)",
              logged[0]);
}

TEST_F(ServiceTest, PendingStartShowsCheckPointsAndWaitHint) {
    const std::wstring eventName = L"kel_test_service_hold_" + m_name;
    HANDLE hold = CreateEventW(nullptr, TRUE, FALSE, eventName.c_str());
    ASSERT_NE(nullptr, hold);
    ASSERT_EQ(1, m_service.Install(m_program.c_str()));
    const wchar_t* arguments[] = {L"hold", eventName.c_str()};
    // A timeout of 0 returns once the manager took the request.
    ASSERT_EQ(1, m_service.Start(2, arguments, 0)) << m_service.GetLastError();

    // The service reports its second check point before it waits for the event.
    CNTServiceMgr::Status status;
    for (int tries = 0; tries < 200 && m_service.QueryStatus(status) && status.checkPoint < 2;
         ++tries)
        Sleep(50);
    EXPECT_EQ(DWORD(CNTServiceMgr::stateStartPending), status.state);
    EXPECT_EQ(2u, status.checkPoint);
    EXPECT_EQ(5000u, status.waitHint);
    EXPECT_EQ(0u, status.controlsAccepted);
    // Waiting a little is a timeout while it holds.
    EXPECT_EQ(0, m_service.WaitForState(CNTServiceMgr::stateRunning, 300));
    EXPECT_EQ(DWORD(ERROR_SERVICE_REQUEST_TIMEOUT), m_service.GetLastError());

    SetEvent(hold);
    EXPECT_EQ(1, m_service.WaitForState(CNTServiceMgr::stateRunning, 10000));
    ASSERT_EQ(1, m_service.QueryStatus(status));
    EXPECT_EQ(DWORD(CNTServiceMgr::stateRunning), status.state);
    EXPECT_EQ(0u, status.waitHint);
    CloseHandle(hold);
    EXPECT_EQ(1, m_service.Remove());
}

TEST_F(ServiceTest, StartFailsWithTheExitCodeOfAServiceThatGaveUp) {
    ASSERT_EQ(1, m_service.Install(m_program.c_str()));
    const wchar_t* arguments[] = {L"fail", L"42"};
    EXPECT_EQ(0, m_service.Start(2, arguments));
    EXPECT_EQ(DWORD(ERROR_SERVICE_SPECIFIC_ERROR), m_service.GetLastError());
    CNTServiceMgr::Status status;
    ASSERT_EQ(1, m_service.QueryStatus(status));
    EXPECT_EQ(DWORD(CNTServiceMgr::stateStopped), status.state);
    EXPECT_EQ(DWORD(ERROR_SERVICE_SPECIFIC_ERROR), status.win32ExitCode);
    EXPECT_EQ(42u, status.serviceExitCode);
    EXPECT_EQ(1, m_service.Remove());
}

TEST_F(ServiceTest, MissingNamesAndServicesGiveTheirCodes) {
    CNTServiceMgr unnamed(nullptr);
    EXPECT_FALSE(unnamed.IsInstalled());
    EXPECT_EQ(0, unnamed.Start());
    EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), unnamed.GetLastError());
    EXPECT_EQ(0, m_service.Install(nullptr));
    EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), m_service.GetLastError());
    for (int operation = 0; operation < 4; ++operation) {
        SCOPED_TRACE(operation);
        CNTServiceMgr::Config config;
        const int result = operation == 0   ? m_service.Stop()
                           : operation == 1 ? m_service.Remove()
                           : operation == 2 ? m_service.QueryConfig(config)
                                            : m_service.Configure(CNTServiceMgr::startAuto);
        EXPECT_EQ(0, result);
        EXPECT_EQ(DWORD(ERROR_SERVICE_DOES_NOT_EXIST), m_service.GetLastError());
    }
}

TEST_F(ServiceTest, KeltoolInstallsStartsQueriesStopsAndRemoves) {
    const std::wstring program = (TestBinaryFolder() / L"kel_test_service.exe").wstring();
    const auto keltool = [&](std::vector<std::wstring> arguments) {
        arguments.insert(arguments.begin(), L"service");
        return RunKeltool(arguments, m_folder);
    };

    KeltoolResult result =
        keltool({L"install", L"--display=Kel tool service " + m_name, L"--description=From keltool",
                 m_name, program, L"plain", L"two words"});
    ASSERT_EQ(0u, result.exitCode) << result.err;
    CNTServiceMgr::Config config;
    ASSERT_EQ(1, m_service.QueryConfig(config));
    // Arguments with blanks are quoted.
    const std::wstring quotedProgram =
        program.find(L' ') == std::wstring::npos ? program : L"\"" + program + L"\"";
    EXPECT_EQ(quotedProgram + L" plain \"two words\"", config.binaryPath.GetString());
    EXPECT_EQ(L"Kel tool service " + m_name, config.displayName.GetString());
    EXPECT_EQ(std::wstring(L"From keltool"), config.description.GetString());
    EXPECT_EQ(DWORD(CNTServiceMgr::startDemand), config.startType);

    result = keltool({L"start", m_name});
    ASSERT_EQ(0u, result.exitCode) << result.err;
    CNTServiceMgr::Status status;
    ASSERT_EQ(1, m_service.QueryStatus(status));
    EXPECT_EQ(DWORD(CNTServiceMgr::stateRunning), status.state);

    result = keltool({L"query", m_name});
    ASSERT_EQ(0u, result.exitCode) << result.err;
    const std::string name(m_name.begin(), m_name.end());
    for (const std::string& line :
         {"SERVICE_NAME: " + name + "\r\n", std::string("STATE: 4 RUNNING\r\n"),
          "PID: " + std::to_string(status.processId) + "\r\n"})
        EXPECT_NE(std::string::npos, result.out.find(line)) << line << " in\n" << result.out;

    result = keltool({L"stop", m_name});
    EXPECT_EQ(0u, result.exitCode) << result.err;
    ASSERT_EQ(1, m_service.QueryStatus(status));
    EXPECT_EQ(DWORD(CNTServiceMgr::stateStopped), status.state);

    result = keltool({L"remove", m_name});
    EXPECT_EQ(0u, result.exitCode) << result.err;
    EXPECT_FALSE(m_service.IsInstalled());

    result = keltool({L"query", m_name});
    EXPECT_EQ(1u, result.exitCode);
    EXPECT_NE(std::string::npos, result.err.find("(error code 1060)")) << result.err;
    result = keltool({L"install", L"--start=sometimes", m_name, program});
    EXPECT_EQ(2u, result.exitCode);
    EXPECT_FALSE(m_service.IsInstalled());
}

TEST(CServiceStatus, OutsideAServiceNothingIsReported) {
    CServiceStatus status;
    EXPECT_EQ(0, status.ReportRunning());
    EXPECT_EQ(DWORD(ERROR_INVALID_HANDLE), status.GetLastError());
    EXPECT_EQ(0u, status.GetState());
    EXPECT_EQ(0, status.Register(nullptr));
    EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), status.GetLastError());
    EXPECT_EQ(0, status.ReportPending(CNTServiceMgr::stateRunning, 100));
    EXPECT_EQ(DWORD(ERROR_INVALID_PARAMETER), status.GetLastError());
    EXPECT_FALSE(status.StopRequested());
    EXPECT_STREQ(L"UNKNOWN", CNTServiceMgr::StateName(0));
}

} // namespace
