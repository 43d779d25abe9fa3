#include "Logging.h"

#include <future>
#include <gtest/gtest.h>
#include <set>

using namespace KelSDK::Common::Logging;

namespace {

using Texts = std::vector<std::wstring>;

// Logs a message of its own for every one it receives, to prove sinks run unlocked.
class EchoSink : public ILogSink {
public:
    void Write(const std::string& logger, LogSeverity, const std::wstring& text) override {
        if (logger != "test.echo")
            LogMessage(GetLogger("test.echo"), LogSeverity::Info, L"echo " + text);
    }
};

} // namespace

TEST(Logging, SinksReceiveExactTextsOfTheirLoggerOnly) {
    Logger& logger = GetLogger("test.exact");
    auto sink = std::make_shared<MemorySink>();
    logger.AddSink(sink);
    logger.AddSink(sink); // a second registration must not double the messages
    logger.AddSink(nullptr);
    LogMessage(logger, LogSeverity::Error, L"In MFoo::Bar() : failed (error code 5)");
    LogMessage(GetLogger("test.other"), LogSeverity::Error, L"elsewhere");
    logger.Log(LogSeverity::Trace, L"caf\x00E9\n\x4E2D");
    logger.SetMinimumSeverity(LogSeverity::Warning);
    LogMessage(logger, LogSeverity::Info, L"below the minimum");
    LogMessage(logger, LogSeverity::Warning, L"warning");

    ASSERT_EQ((Texts{L"In MFoo::Bar() : failed (error code 5)", L"caf\x00E9\n\x4E2D", L"warning"}),
              sink->GetTexts());
    const auto entries = sink->GetEntries();
    EXPECT_EQ("test.exact", entries[0].logger);
    EXPECT_EQ(LogSeverity::Error, entries[0].severity);

    sink->Clear();
    logger.RemoveSink(sink);
    LogMessage(logger, LogSeverity::Fatal, L"after removal");
    EXPECT_TRUE(sink->GetTexts().empty());
}

// Global sinks see every logger, the echo's too, and get each message once even when they are
// also the logger's own sinks.
TEST(Logging, ConcurrentUseFindsOneLoggerAndLosesNoMessage) {
    auto sink = std::make_shared<MemorySink>();
    auto echo = std::make_shared<EchoSink>();
    AddGlobalSink(sink);
    AddGlobalSink(echo);
    std::vector<std::future<Logger*>> workers;
    for (int t = 0; t < 4; ++t)
        workers.push_back(std::async(std::launch::async, [t, sink] {
            Logger& logger = GetLogger("test.race"); // the first lookup of this name
            logger.AddSink(sink);
            for (int i = 0; i < 500; ++i)
                logger.Log(LogSeverity::Info, std::to_wstring(t * 500 + i));
            return &logger;
        }));
    std::set<Logger*> loggers;
    for (auto& worker : workers)
        loggers.insert(worker.get());
    RemoveGlobalSink(echo);
    RemoveGlobalSink(sink);
    LogMessage(GetLogger("test.race.other"), LogSeverity::Info, L"unseen");
    GetLogger("test.race").RemoveSink(sink);
    ASSERT_EQ(1u, loggers.size());
    EXPECT_EQ("test.race", (*loggers.begin())->GetName());
    const Texts texts = sink->GetTexts(); // each message and its echo
    EXPECT_EQ(4000u, texts.size());
    EXPECT_EQ(4000u, std::set<std::wstring>(texts.begin(), texts.end()).size());
}
