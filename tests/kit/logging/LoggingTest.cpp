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
    EXPECT_EQ(LogSeverity::Trace, entries[1].severity);

    sink->Clear();
    logger.RemoveSink(sink);
    LogMessage(logger, LogSeverity::Fatal, L"after removal");
    EXPECT_TRUE(sink->GetTexts().empty());
}

TEST(Logging, GlobalSinksSeeEveryLoggerOnce) {
    auto global = std::make_shared<MemorySink>();
    auto echo = std::make_shared<EchoSink>();
    AddGlobalSink(global);
    AddGlobalSink(echo);
    Logger& logger = GetLogger("test.global");
    logger.AddSink(global); // also the logger's own sink: still one copy per message

    LogMessage(logger, LogSeverity::Info, L"one");
    LogMessage(GetLogger("test.global.other"), LogSeverity::Warning, L"two");
    RemoveGlobalSink(echo);
    RemoveGlobalSink(global);
    LogMessage(GetLogger("test.global.other"), LogSeverity::Warning, L"unseen");
    LogMessage(logger, LogSeverity::Info, L"own sink only");
    logger.RemoveSink(global);

    ASSERT_EQ((Texts{L"one", L"echo one", L"two", L"echo two", L"own sink only"}),
              global->GetTexts());
    EXPECT_EQ("test.echo", global->GetEntries()[1].logger);
}

TEST(Logging, ConcurrentUseFindsOneLoggerAndLosesNoMessage) {
    auto sink = std::make_shared<MemorySink>();
    AddGlobalSink(sink);
    std::vector<std::future<Logger*>> workers;
    for (int t = 0; t < 4; ++t)
        workers.push_back(std::async(std::launch::async, [t] {
            Logger& logger = GetLogger("test.race"); // the first lookup of this name
            for (int i = 0; i < 500; ++i)
                logger.Log(LogSeverity::Info, std::to_wstring(t * 500 + i));
            return &logger;
        }));
    std::set<Logger*> loggers;
    for (auto& worker : workers)
        loggers.insert(worker.get());
    RemoveGlobalSink(sink);
    ASSERT_EQ(1u, loggers.size());
    EXPECT_EQ("test.race", (*loggers.begin())->GetName());
    EXPECT_NE(*loggers.begin(), &GetLogger("test.race.other"));
    const Texts texts = sink->GetTexts();
    EXPECT_EQ(2000u, texts.size());
    EXPECT_EQ(2000u, std::set<std::wstring>(texts.begin(), texts.end()).size());
}
