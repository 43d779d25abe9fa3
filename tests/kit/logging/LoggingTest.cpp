#include "Logging.h"

#include <future>
#include <gtest/gtest.h>
#include <set>
#include <thread>

using namespace KelSDK::Common::Logging;

namespace {

using Texts = std::vector<std::wstring>;

// Logs a message of its own the first time it receives one, to prove sinks run unlocked.
class EchoSink : public ILogSink {
public:
    void Write(const std::string& logger, LogSeverity, const std::wstring& text) override {
        if (logger != "test.echo")
            LogMessage(GetLogger("test.echo"), LogSeverity::Info, L"echo " + text);
    }
};

} // namespace

TEST(Logging, NamedLoggersAreDistinctAndStable) {
    Logger& first = GetLogger("test.named.a");
    EXPECT_EQ(&first, &GetLogger("test.named.a"));
    EXPECT_EQ("test.named.a", first.GetName());
    Logger& second = GetLogger("test.named.b");
    EXPECT_NE(&first, &second);
    EXPECT_EQ("test.named.b", second.GetName());

    // Concurrent first lookups of one name all get the same object.
    std::vector<std::future<Logger*>> lookups;
    for (int i = 0; i < 8; ++i)
        lookups.push_back(std::async(std::launch::async, [] { return &GetLogger("test.race"); }));
    std::set<Logger*> seen;
    for (auto& lookup : lookups)
        seen.insert(lookup.get());
    EXPECT_EQ(1u, seen.size());
}

TEST(Logging, SinksReceiveExactTextsOfTheirLoggerOnly) {
    Logger& logger = GetLogger("test.exact");
    auto sink = std::make_shared<MemorySink>();
    logger.AddSink(sink);
    logger.AddSink(sink); // a second registration must not double the messages
    logger.AddSink(nullptr);

    LogMessage(logger, LogSeverity::Error, L"In MFoo::Bar() : failed (error code 5)");
    LogMessage(GetLogger("test.other"), LogSeverity::Error, L"elsewhere");
    logger.Log(LogSeverity::Trace, L"caf\x00E9\n\x4E2D");

    EXPECT_EQ((Texts{L"In MFoo::Bar() : failed (error code 5)", L"caf\x00E9\n\x4E2D"}),
              sink->GetTexts());
    const auto entries = sink->GetEntries();
    ASSERT_EQ(2u, entries.size());
    EXPECT_EQ("test.exact", entries[0].logger);
    EXPECT_EQ(LogSeverity::Error, entries[0].severity);
    EXPECT_EQ(LogSeverity::Trace, entries[1].severity);

    sink->Clear();
    EXPECT_TRUE(sink->GetTexts().empty());
    logger.RemoveSink(sink);
    LogMessage(logger, LogSeverity::Fatal, L"after removal");
    EXPECT_TRUE(sink->GetTexts().empty());
}

TEST(Logging, MinimumSeverityDropsLowerMessages) {
    Logger& logger = GetLogger("test.minimum");
    EXPECT_EQ(LogSeverity::Trace, logger.GetMinimumSeverity());
    auto sink = std::make_shared<MemorySink>();
    logger.AddSink(sink);
    logger.SetMinimumSeverity(LogSeverity::Warning);
    EXPECT_EQ(LogSeverity::Warning, logger.GetMinimumSeverity());
    LogMessage(logger, LogSeverity::Info, L"info");
    LogMessage(logger, LogSeverity::Warning, L"warning");
    LogMessage(logger, LogSeverity::Debug, L"debug");
    LogMessage(logger, LogSeverity::Fatal, L"fatal");
    EXPECT_EQ((Texts{L"warning", L"fatal"}), sink->GetTexts());
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

    EXPECT_EQ((Texts{L"one", L"echo one", L"two", L"echo two", L"own sink only"}),
              global->GetTexts());
    const auto entries = global->GetEntries();
    ASSERT_EQ(5u, entries.size());
    EXPECT_EQ("test.echo", entries[1].logger);
    EXPECT_EQ("test.global.other", entries[2].logger);
}

TEST(Logging, MemorySinkKeepsEveryMessageFromManyThreads) {
    Logger& logger = GetLogger("test.threads");
    auto sink = std::make_shared<MemorySink>();
    logger.AddSink(sink);
    constexpr int threads = 4;
    constexpr int messages = 500;
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back([&logger, t] {
            for (int i = 0; i < messages; ++i)
                logger.Log(LogSeverity::Info, std::to_wstring(t * messages + i));
        });
    for (auto& worker : workers)
        worker.join();
    logger.RemoveSink(sink);

    const Texts texts = sink->GetTexts();
    ASSERT_EQ(static_cast<size_t>(threads * messages), texts.size());
    std::set<std::wstring> distinct(texts.begin(), texts.end());
    EXPECT_EQ(texts.size(), distinct.size());
}
